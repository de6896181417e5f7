// How well on-device recognition hears a known script, and what the confidence filter of the
// microphone source does to it: word error rate of the final lines as the recogniser gives them
// ("wer_recogniser") and after MicSource::cleaned() for the lecture language ("wer_filtered"),
// in percent of the script's words. Speakers: four flite voices and espeak-ng saying a lecture
// of some two minutes, and the real human recordings with transcripts of Debian's
// pocketsphinx-testdata (skipped when it is not installed).
//
// halfAnHourAsFastAsPossible: half an hour of lecture through the WAV microphone as fast as
// possible, every word accounted for, and the CPU time per minute of sound.
//
// With QUILLET_WORDS=<file>, every final word is written there as a line of "speaker, word,
// confidence, right (1) or misheard (0)", the material the confidence is calibrated on.

#include "captions/MicSource.h"
#include "platform/AudioConverter.h"
#include "platform/MicHub.h"
#include "platform/PocketSphinxRecognizer.h"
#include "platform/WavFile.h"
#include "platform/WavFileInput.h"

#include "AudioFiles.h"
#include "SpeechAudio.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTextStream>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <thread>
#include <vector>

#include <sys/resource.h>

namespace {

using Pieces = QList<SpeechRecognizer::Piece>;

QStringList lectureScript()
{
    return {
        QStringLiteral("Good morning everyone, let us get started."),
        QStringLiteral("Today we continue with the structure of the cell."),
        QStringLiteral("Last week we talked about the membrane and how it controls what enters the cell."),
        QStringLiteral("Can anyone tell me what the mitochondria do?"),
        QStringLiteral("They produce most of the energy the cell needs."),
        QStringLiteral("This process is called cellular respiration."),
        QStringLiteral("It uses oxygen and glucose and releases carbon dioxide and water."),
        QStringLiteral("Please write this down, because it will be on the exam."),
        QStringLiteral("The midterm exam is on the twelfth of March."),
        QStringLiteral("It covers chapters three to six of the textbook."),
        QStringLiteral("Now let us look at the nucleus."),
        QStringLiteral("The nucleus holds the genetic material of the cell."),
        QStringLiteral("Why do you think the cell keeps its genes inside a membrane?"),
        QStringLiteral("Think about it for a moment."),
        QStringLiteral("The membrane protects the genes from damage."),
        QStringLiteral("Plants have another structure that animal cells do not have."),
        QStringLiteral("The chloroplast turns light into chemical energy."),
        QStringLiteral("We call this photosynthesis."),
        QStringLiteral("The homework is due next Friday."),
        QStringLiteral("Read pages forty to fifty and answer the questions at the end."),
        QStringLiteral("Are there any questions so far?"),
        QStringLiteral("If not, we will move on to cell division."),
        QStringLiteral("A cell divides into two daughter cells."),
        QStringLiteral("Each of them gets a full copy of the genes."),
        QStringLiteral("This is how a body grows and repairs itself."),
        QStringLiteral("Remember that the lab report must be handed in before the deadline."),
        QStringLiteral("Late reports lose ten percent of their points."),
        QStringLiteral("That is all for today, see you next week."),
    };
}

// Lower case words of letters and apostrophes.
QStringList words(const QString &text)
{
    static const QRegularExpression other(QStringLiteral("[^a-z']+"));
    return text.toLower().split(other, Qt::SkipEmptyParts);
}

// For each heard word whether it is a right one, by the cheapest alignment with the said words;
// the errors (substitutions, deletions, insertions) in `errors`.
std::vector<bool> align(const QStringList &said, const QStringList &heard, qsizetype &errors)
{
    const qsizetype rows = said.size() + 1, columns = heard.size() + 1;
    std::vector<qsizetype> cost(size_t(rows * columns));
    const auto at = [&](qsizetype i, qsizetype j) -> qsizetype & { return cost[size_t(i * columns + j)]; };
    for (qsizetype i = 0; i < rows; ++i)
        at(i, 0) = i;
    for (qsizetype j = 0; j < columns; ++j)
        at(0, j) = j;
    for (qsizetype i = 1; i < rows; ++i) {
        for (qsizetype j = 1; j < columns; ++j)
            at(i, j) = std::min({at(i - 1, j) + 1, at(i, j - 1) + 1,
                                 at(i - 1, j - 1) + (said[i - 1] == heard[j - 1] ? 0 : 1)});
    }
    errors = at(rows - 1, columns - 1);
    std::vector<bool> right(size_t(heard.size()), false);
    for (qsizetype i = rows - 1, j = columns - 1; i > 0 && j > 0;) {
        const bool same = said[i - 1] == heard[j - 1];
        if (at(i, j) == at(i - 1, j - 1) + (same ? 0 : 1)) {
            right[size_t(j - 1)] = same;
            --i;
            --j;
        } else if (at(i, j) == at(i, j - 1) + 1) {
            --j;
        } else {
            --i;
        }
    }
    return right;
}

// The final results of a recogniser fed the whole file as fast as it takes it.
QList<Pieces> recognise(const QString &path)
{
    auto made = PocketSphinxRecognizer::make(QStringLiteral("en-US"));
    auto *recognizer = std::get_if<std::unique_ptr<SpeechRecognizer>>(&made);
    WavFile file(path);
    if (!recognizer || file.open())
        return {};
    const AudioFormat format = file.format();
    const auto converter = AudioConverter::create(format, (*recognizer)->sampleRate());
    QList<Pieces> finals;
    std::jthread reader([&](std::stop_token stop) {
        while (const auto result = (*recognizer)->next(stop)) {
            if (result->isFinal)
                finals << result->pieces;
        }
    });
    std::vector<float> block;
    while (file.read(format.sampleRate / 20, block)) {
        const AudioBuffer buffer{block.data(), qsizetype(block.size()) / format.channels, format};
        (*recognizer)->feed(converter->convert(buffer));
    }
    (*recognizer)->finish();
    reader.join();
    return finals;
}

struct Heard
{
    QStringList said;   // the transcript's words
    QList<Pieces> finals;
};

void writeWords(const QString &speaker, const Heard &heard)
{
    const QByteArray target = qgetenv("QUILLET_WORDS");
    if (target.isEmpty())
        return;
    QFile file(QString::fromLocal8Bit(target));
    if (!file.open(QIODevice::Append | QIODevice::Text))
        return;
    QTextStream out(&file);
    Pieces pieces;
    QStringList heardWords;
    for (const Pieces &final : heard.finals) {
        for (const SpeechRecognizer::Piece &piece : final) {
            pieces << piece;
            heardWords << words(piece.text).join(QString());
        }
    }
    qsizetype errors = 0;
    const std::vector<bool> right = align(heard.said, heardWords, errors);
    for (qsizetype i = 0; i < pieces.size(); ++i)
        out << speaker << ',' << heardWords[i] << ',' << pieces[i].confidence << ','
            << int(right[size_t(i)]) << '\n';
}

void report(benchmark::State &state, const QString &speaker, const Heard &heard)
{
    QStringList raw, filtered;
    for (const Pieces &final : heard.finals) {
        for (const SpeechRecognizer::Piece &piece : final)
            raw << words(piece.text);
        filtered << words(MicSource::cleaned(final, true, true));
    }
    qsizetype rawErrors = 0, filteredErrors = 0;
    align(heard.said, raw, rawErrors);
    align(heard.said, filtered, filteredErrors);
    const double said = double(std::max<qsizetype>(heard.said.size(), 1));
    state.counters["words"] = double(heard.said.size());
    state.counters["wer_recogniser"] = 100.0 * double(rawErrors) / said;
    state.counters["wer_filtered"] = 100.0 * double(filteredErrors) / said;
    writeWords(speaker, heard);
}

void spokenLecture(benchmark::State &state, const char *voice)
{
    QTemporaryDir folder;
    SpeechAudio::Script script{lectureScript()};
    script.voice = QString::fromLatin1(voice);
    const auto speech = SpeechAudio::make(folder.path(), script);
    if (!speech) {
        state.SkipWithError("the speech could not be made");
        return;
    }
    Heard heard{words(script.sentences.join(u' ')), {}};
    for (auto _ : state)
        heard.finals = recognise(speech->path);
    report(state, script.voice, heard);
}

// Debian's recordings of a human reader: "<s> words </s> (file id)" per line.
void humanReader(benchmark::State &state)
{
    const QString folder = QStringLiteral("/usr/share/pocketsphinx/test/data/librivox/");
    QFile transcription(folder + u"transcription");
    if (!transcription.open(QIODevice::ReadOnly | QIODevice::Text)) {
        state.SkipWithError("pocketsphinx-testdata is not installed");
        return;
    }
    static const QRegularExpression line(QStringLiteral("^<s> (.*) </s> \\((.*)\\)$"));
    QList<std::pair<QString, QStringList>> recordings;
    for (const QString &text : QString::fromUtf8(transcription.readAll()).split(u'\n', Qt::SkipEmptyParts)) {
        const auto match = line.match(text.trimmed());
        if (match.hasMatch())
            recordings.append({folder + match.captured(2) + u".wav", words(match.captured(1))});
    }
    Heard heard;
    for (auto _ : state) {
        heard = {};
        for (const auto &[path, said] : recordings) {
            heard.said << said;
            heard.finals << recognise(path);
        }
    }
    report(state, QStringLiteral("librivox"), heard);
}

double cpuSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec)
           + double(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

// Half an hour of lecture (the slt lecture fifteen times) through a WAV file standing in for the
// microphone as fast as possible: the recogniser holds the file back, so every word is accounted
// for ("wer" as of one lecture, not the 80 % of a recogniser that drops what is queued beyond
// its limit). Also the CPU time the whole path takes per minute of sound.
void halfAnHourAsFastAsPossible(benchmark::State &state)
{
    QTemporaryDir folder;
    const auto speech = SpeechAudio::make(folder.path(), {lectureScript()});
    if (!speech) {
        state.SkipWithError("the speech could not be made");
        return;
    }
    constexpr int copies = 15;
    const QString half =
        soxFile(folder.path(), QStringLiteral("half-an-hour.wav"), QStringList(copies, speech->path), {});
    QStringList said;
    for (int i = 0; i < copies; ++i)
        said << words(lectureScript().join(u' '));
    QStringList heard;
    double cpu = 0;
    for (auto _ : state) {
        const double before = cpuSeconds();
        Text::SystemClock clock;
        MicHub hub(std::make_unique<WavFileInput>(half, WavFileInput::Pace::AsFastAsPossible, clock));
        MicSource mic({QStringLiteral("en-US")}, hub, PocketSphinxRecognizer::factory());
        if (mic.start()) {
            state.SkipWithError("the source won't start");
            return;
        }
        // After the file the input plays silence in real time: the lecture is over once lines stop.
        auto lastLine = std::chrono::steady_clock::now();
        while (std::chrono::steady_clock::now() - lastLine < std::chrono::seconds(10)) {
            const QStringList lines = mic.takeFinals();
            if (!lines.isEmpty())
                lastLine = std::chrono::steady_clock::now();
            for (const QString &line : lines)
                heard << words(line);
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
        if (mic.problem())
            state.SkipWithError("sound was lost or recognition failed");
        mic.stop();
        cpu = cpuSeconds() - before;
    }
    qsizetype errors = 0;
    align(said, heard, errors);
    state.counters["words_said"] = double(said.size());
    state.counters["words_heard"] = double(heard.size());
    state.counters["wer"] = 100.0 * double(errors) / double(said.size());
    state.counters["cpu_s_per_audio_minute"] = cpu / (speech->seconds * copies / 60.0);
}

BENCHMARK_CAPTURE(spokenLecture, slt, "slt")->Iterations(1)->Unit(benchmark::kSecond)->UseRealTime();
BENCHMARK_CAPTURE(spokenLecture, kal16, "kal16")->Iterations(1)->Unit(benchmark::kSecond)->UseRealTime();
BENCHMARK_CAPTURE(spokenLecture, awb, "awb")->Iterations(1)->Unit(benchmark::kSecond)->UseRealTime();
BENCHMARK_CAPTURE(spokenLecture, rms, "rms")->Iterations(1)->Unit(benchmark::kSecond)->UseRealTime();
BENCHMARK_CAPTURE(spokenLecture, espeak, "espeak-ng")->Iterations(1)->Unit(benchmark::kSecond)->UseRealTime();
BENCHMARK(humanReader)->Iterations(1)->Unit(benchmark::kSecond)->UseRealTime();
BENCHMARK(halfAnHourAsFastAsPossible)->Iterations(1)->Unit(benchmark::kSecond)->UseRealTime();

} // namespace

BENCHMARK_MAIN();
