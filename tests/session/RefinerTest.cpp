#include "session/Refiner.h"

#include "platform/PocketSphinxFileRecognizer.h"
#include "platform/WavFile.h"
#include "session/AudioRecorder.h"

#include "AudioFiles.h"
#include "SessionFixture.h"
#include "SpeechAudio.h"

#include <QDir>
#include <QScopeGuard>
#include <QStandardPaths>

using namespace Qt::StringLiterals;
using Refiner::Line;

namespace Refiner {
void PrintTo(const Line &line, std::ostream *out)
{
    *out << line.t << " " << line.text.toStdString();
}
} // namespace Refiner

namespace {

using TimedRun = FileRecognizer::Run;

// A word of a hand-made result: its text, confidence and start (its end a tenth of a second later);
// a negative start makes an untimed run.
TimedRun word(const QString &text, double start, double confidence = 0.9)
{
    TimedRun run{{text, confidence}, std::nullopt};
    if (start >= 0)
        run.time = FileRecognizer::TimeRange{start, start + 0.1};
    return run;
}

TEST(RefinerTest, SentencesAreTimedByTheirFirstWordsFromTheCursorOn)
{
    struct Case
    {
        const char *name;
        QList<TimedRun> runs;
        Refiner::Entry entry;
        QList<Line> lines;
    };
    const Refiner::Entry english{u"en-US"_s, true};
    const QList<Case> cases{
        {"each sentence at its heads",
         {word(u"Good"_s, 1.0), word(u" morning."_s, 1.2), word(u" Open"_s, 2.0), word(u" your"_s, 2.3),
          word(u" books."_s, 2.6)},
         english,
         {{1.0, u"Good morning."_s}, {2.0, u"Open your books."_s}}},
        {"a word dropped by cleaning is skipped; a changed opening keeps the time at the cursor",
         {word(u"Well"_s, 1.0, 0.1), word(u" open"_s, 1.5), word(u" books."_s, 1.8), word(u" Chapter"_s, 3.0),
          word(u" 3.5"_s, 3.3), word(u" starts."_s, 3.6)},
         english,
         {{1.5, u"open books."_s}, {1.8, u"Chapter 3."_s}, {1.8, u"5 starts."_s}}},
        {"the second head must follow, unless the first is the last word",
         {word(u"so"_s, 0.5), word(u" it"_s, 0.7), word(u" goes."_s, 0.9), word(u" So"_s, 2.0), word(u" it"_s, 2.2),
          word(u" is."_s, 2.4), word(u" Yes."_s, 4.0)},
         english,
         {{0.5, u"so it goes."_s}, {2.0, u"So it is."_s}, {4.0, u"Yes."_s}}},
        {"past the timed words the result's start stands",
         {word(u"Done."_s, 5.0), word(u" Thanks."_s, -1)},
         english,
         {{5.0, u"Done."_s}, {5.0, u"Thanks."_s}}},
        {"a language that isn't primary keeps only three sure words in a row in its language",
         {word(u"The"_s, 1.0), word(u" cell"_s, 1.2), word(u" divides."_s, 1.4), word(u" Ja."_s, 2.0, 0.5)},
         {u"en-GB"_s, false},
         {{1.0, u"The cell divides."_s}}},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        const FileRecognizer::Result result{c.runs, {c.runs.front().time->start, c.runs.back().time.value_or(FileRecognizer::TimeRange{9, 9}).end}};
        EXPECT_EQ(Refiner::linesOf(result, c.entry, true), c.lines);
    }
}

class RefinerSpeechTest : public SessionFixture
{
protected:
    // The lecture said by flite, recorded through the real recorder at 48 kHz.
    void SetUp() override
    {
        SessionFixture::SetUp();
        const auto made = SpeechAudio::make(documents_.path(), {SpeechAudio::lecture()});
        ASSERT_TRUE(made);
        speech_ = *made;
        recording_ = record(u"录音.m4a"_s, speech_.path);
    }

    QString record(const QString &name, const QString &wav)
    {
        const QString resampled = soxFile(documents_.path(), u"48k-"_s + name + u".wav"_s, {wav}, {u"-r48000"_s});
        WavFile file(resampled);
        EXPECT_EQ(file.open(), std::nullopt);
        input_->delivered = file.format();
        AudioRecorder recorder(hub_);
        const QString path = documents_.filePath(name);
        EXPECT_EQ(recorder.start(path), std::nullopt);
        std::vector<float> block;
        while (file.read(4'800, block))
            input_->play(block, 4'800);
        recorder.stop();
        return path;
    }

    std::optional<QList<Line>> transcribe(const QStringList &locales, const QString &path = {})
    {
        return Refiner::transcribe(path.isEmpty() ? recording_ : path, locales, PocketSphinxFileRecognizer::factory());
    }

    // Whether the lines hear each sentence of the lecture once, about when it was said. A word the
    // recogniser isn't sure of may be missing.
    void expectLecture(const QList<Line> &lines)
    {
        const QStringList keys{u"chapter seven"_s, u"chemical energy"_s, u"exam will cover"_s};
        ASSERT_EQ(lines.size(), keys.size()) << ::testing::PrintToString(lines);
        for (qsizetype i = 0; i < keys.size(); ++i) {
            EXPECT_TRUE(lines[i].text.contains(keys[i])) << lines[i].text;
            EXPECT_NEAR(lines[i].t, speech_.sentenceStarts[i], 0.4) << lines[i].text;
        }
    }

    SpeechAudio speech_;
    QString recording_;
};

TEST_F(RefinerSpeechTest, RecognisesTheRecordingInEachLanguageWithAModel)
{
    const auto lectureOnly = transcribe({u"en-US"_s, u"fr-FR"_s});
    ASSERT_TRUE(lectureOnly);
    expectLecture(*lectureOnly);

    // With the lecture language missing no entry is primary: only runs of three sure words in their
    // language stay, a part of what the lecture language heard.
    const auto noPrimary = transcribe({u"fr-FR"_s, u"en-US"_s});
    ASSERT_TRUE(noPrimary);
    EXPECT_FALSE(noPrimary->isEmpty());
    // Word by word: a run may leave out a word it wasn't sure of between two it keeps.
    QStringList heard;
    for (const Line &line : *lectureOnly)
        heard << line.text.toLower().split(u' ', Qt::SkipEmptyParts);
    for (const Line &line : *noPrimary) {
        for (const QString &word : line.text.toLower().split(u' ', Qt::SkipEmptyParts))
            EXPECT_TRUE(heard.contains(word)) << word.toStdString() << " in " << line.text.toStdString();
    }

    // A second English model beside the first: both languages' lines stay, in time order, the
    // lecture language's first where they tie.
    const QString british = QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation) + u"/models/en-GB"_s;
    ASSERT_TRUE(QDir().mkpath(QFileInfo(british).path()));
    // Only the link goes afterwards, never what it points to.
    const auto cleanUp = qScopeGuard([&] { QFile::remove(british); });
    ASSERT_TRUE(QFile::link(PocketSphinxRecognizer::modelFolder(u"en-US"_s).value(), british));
    QList<Line> expected = *lectureOnly + *noPrimary;
    std::stable_sort(expected.begin(), expected.end(), [](const Line &a, const Line &b) { return a.t < b.t; });
    EXPECT_EQ(transcribe({u"en-US"_s, u"en-GB"_s}), expected);
}

TEST_F(RefinerSpeechTest, GivesNoValueOrNothingForWhatCannotBeRecognised)
{
    EXPECT_EQ(transcribe({u"fr-FR"_s}), std::nullopt) << "no model for any language";
    std::stop_source quitting;
    quitting.request_stop();
    EXPECT_EQ(Refiner::transcribe(recording_, {u"en-US"_s}, PocketSphinxFileRecognizer::factory(), quitting.get_token()),
              std::nullopt)
        << "a run stopped is dropped";
    EXPECT_EQ(transcribe({u"en-US"_s}, documents_.filePath(u"missing.m4a"_s)), std::nullopt);
    writeFile(documents_.filePath(u"notes.m4a"_s), "not sound");
    EXPECT_EQ(transcribe({u"en-US"_s}, documents_.filePath(u"notes.m4a"_s)), std::nullopt);

    const QByteArray whole = readFile(recording_);
    writeFile(documents_.filePath(u"cut.m4a"_s), whole.left(whole.size() / 2));
    const auto cut = transcribe({u"en-US"_s}, documents_.filePath(u"cut.m4a"_s));
    ASSERT_TRUE(cut) << "a recording cut off by a crash gives what it holds";
    EXPECT_GE(cut->size(), 1);
    EXPECT_LE(cut->size(), 2);

    const QString quiet = soxFile(documents_.path(), u"quiet.wav"_s, {u"-n"_s}, {u"-r16000"_s, u"-c1"_s},
                                  {u"trim"_s, u"0"_s, u"20"_s});
    EXPECT_EQ(transcribe({u"en-US"_s}, record(u"quiet.m4a"_s, quiet)), QList<Line>());
    const QString noise = soxFile(documents_.path(), u"noise.wav"_s, {u"-n"_s}, {u"-r16000"_s, u"-c1"_s},
                                  {u"synth"_s, u"20"_s, u"pinknoise"_s, u"vol"_s, u"0.3"_s});
    const auto heardInNoise = transcribe({u"en-US"_s}, record(u"noise.m4a"_s, noise));
    ASSERT_TRUE(heardInNoise);
    EXPECT_LE(heardInNoise->size(), 2) << "noise makes few believable sentences";
}

} // namespace
