// How quickly the microphone source follows speech: spoken sentences (flite) played in real time
// through the microphone hub into a US English source, as a 48 kHz stereo microphone would give
// them. Counters: from the end of each sentence's sound to its line in read() (the reference is
// the moment the buffer holding that end reached the hub), the gaps between changes of the
// draft while a sentence is said, and the audio callback (conversion and hand-off) in wall time
// (first call, mean, 99th percentile, worst) and its worst in CPU time, which leaves out what a
// busy machine's scheduler adds. Also the recogniser's real-time factor (seconds of work per
// second of sound) and the conversion of one 4096-frame buffer.

#include "captions/MicSource.h"
#include "platform/AudioConverter.h"
#include "platform/MicHub.h"
#include "platform/PocketSphinxRecognizer.h"
#include "platform/WavFile.h"
#include "platform/WavFileInput.h"

#include "AudioFiles.h"
#include "SpeechAudio.h"

#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <mutex>
#include <numeric>
#include <thread>

#include <time.h>

namespace {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

struct Lecture
{
    QTemporaryDir folder;
    SpeechAudio speech;
    QString microphone;   // the same sound at 48 kHz, stereo, as floats
};

const Lecture &spoken()
{
    static Lecture *made = [] {
        auto *lecture = new Lecture;
        const auto speech = SpeechAudio::make(lecture->folder.path(), {SpeechAudio::lecture()});
        if (!speech)
            return lecture;
        lecture->speech = *speech;
        lecture->microphone = soxFile(lecture->folder.path(), QStringLiteral("microphone.wav"), {speech->path},
                                      {QStringLiteral("-r48000"), QStringLiteral("-c2"), QStringLiteral("-efloating-point"),
                                       QStringLiteral("-b32")});
        return lecture;
    }();
    return *made;
}

// The CPU time this thread has used: unlike the wall clock, it leaves out the time the
// scheduler gave to other programs on a busy machine.
Seconds threadTime()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return Seconds(double(now.tv_sec) + double(now.tv_nsec) * 1e-9);
}

// Hands on what another input gives and times each call of the receiver: the audio callback.
class TimedInput final : public AudioInput
{
public:
    struct Times
    {
        std::optional<Clock::time_point> first;   // when the first buffer was handed over
        std::vector<double> wall;                 // seconds per call, in order
        std::vector<double> cpu;
    };

    explicit TimedInput(std::unique_ptr<AudioInput> input)
        : input_(std::move(input))
    {
    }

    AudioFormat format() override { return input_->format(); }
    void stop() override { input_->stop(); }
    std::optional<QString> start(Receiver receiver) override
    {
        return input_->start([this, receiver = std::move(receiver)](const AudioBuffer &buffer) {
            const auto begin = Clock::now();
            const Seconds cpuBegin = threadTime();
            receiver(buffer);
            const Seconds cpu = threadTime() - cpuBegin;
            const Seconds wall = Clock::now() - begin;
            std::scoped_lock lock(mutex_);
            times_.first = times_.first.value_or(begin);
            times_.wall.push_back(wall.count());
            times_.cpu.push_back(cpu.count());
        });
    }

    Times times() const
    {
        std::scoped_lock lock(mutex_);
        return times_;
    }

private:
    const std::unique_ptr<AudioInput> input_;
    mutable std::mutex mutex_;
    Times times_;
};

double mean(const std::vector<double> &values)
{
    return values.empty() ? 0 : std::accumulate(values.begin(), values.end(), 0.0) / double(values.size());
}

double largest(const std::vector<double> &values)
{
    return values.empty() ? 0 : *std::max_element(values.begin(), values.end());
}

double percentile99(std::vector<double> values)
{
    if (values.empty())
        return 0;
    const auto at = values.begin() + qsizetype(double(values.size() - 1) * 0.99);
    std::nth_element(values.begin(), at, values.end());
    return *at;
}

void sentenceToLine(benchmark::State &state)
{
    const Lecture &lecture = spoken();
    if (lecture.microphone.isEmpty()) {
        state.SkipWithError("flite or sox failed");
        return;
    }
    constexpr double bufferSeconds = 0.05;   // the file input's buffers
    std::vector<double> latencies, draftGaps, callbacks, callbackCpu;
    double firstCallback = 0;
    for (auto _ : state) {
        Text::SystemClock clock;
        auto timed = std::make_unique<TimedInput>(
            std::make_unique<WavFileInput>(lecture.microphone, WavFileInput::Pace::RealTime, clock));
        TimedInput &input = *timed;
        MicHub hub(std::move(timed));
        MicSource mic({QStringLiteral("en-US")}, hub, PocketSphinxRecognizer::factory());
        if (mic.start()) {
            state.SkipWithError("the source won't start");
            return;
        }
        QStringList lines;
        QString draft;
        std::optional<Clock::time_point> lastDraft;
        const auto deadline = Clock::now() + Seconds(lecture.speech.seconds + 10);
        while (lines.size() < lecture.speech.sentenceEnds.size() && Clock::now() < deadline) {
            const auto now = Clock::now();
            if (const QString current = mic.draft(); !current.isEmpty() && current != draft) {
                if (lastDraft)
                    draftGaps.push_back(Seconds(now - *lastDraft).count());
                lastDraft = now;
                draft = current;
            }
            for (const QString &line : mic.read().split(u'\n', Qt::SkipEmptyParts)) {
                const double end = lecture.speech.sentenceEnds.value(lines.size());
                const auto handed = *input.times().first + Seconds(std::floor(end / bufferSeconds) * bufferSeconds);
                latencies.push_back(Seconds(now - handed).count());
                lines << line;
                lastDraft.reset();
                draft.clear();
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        mic.stop();
        if (lines.size() != lecture.speech.sentenceEnds.size()) {
            state.SkipWithError(qPrintable(u"lines heard: " + lines.join(u" | ")));
            return;
        }
        const TimedInput::Times times = input.times();
        // The first call sets up the conversion; the rest are the steady state.
        firstCallback = std::max(firstCallback, times.wall.front());
        callbacks.insert(callbacks.end(), times.wall.begin() + 1, times.wall.end());
        callbackCpu.insert(callbackCpu.end(), times.cpu.begin() + 1, times.cpu.end());
    }
    state.counters["line_latency_max_s"] = largest(latencies);
    state.counters["line_latency_mean_s"] = mean(latencies);
    state.counters["draft_gap_max_s"] = largest(draftGaps);
    state.counters["draft_gap_mean_s"] = mean(draftGaps);
    state.counters["callback_first_us"] = firstCallback * 1e6;
    state.counters["callback_mean_us"] = mean(callbacks) * 1e6;
    state.counters["callback_p99_us"] = percentile99(callbacks) * 1e6;
    state.counters["callback_worst_us"] = largest(callbacks) * 1e6;
    state.counters["callback_worst_cpu_us"] = largest(callbackCpu) * 1e6;
}
BENCHMARK(sentenceToLine)->Iterations(2)->Unit(benchmark::kSecond)->UseRealTime();

void recognizerRealTimeFactor(benchmark::State &state)
{
    const Lecture &lecture = spoken();
    WavFile file(lecture.speech.path);
    if (lecture.speech.path.isEmpty() || file.open()) {
        state.SkipWithError("no speech file");
        return;
    }
    std::vector<float> sound, block;
    while (file.read(800, block))
        sound.insert(sound.end(), block.begin(), block.end());
    const auto converter = AudioConverter::create(file.format(), 16'000);
    const std::span<const qint16> samples = converter->convert({sound.data(), qsizetype(sound.size()), file.format()});
    const std::vector<qint16> kept(samples.begin(), samples.end());

    int finals = 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto made = PocketSphinxRecognizer::make(QStringLiteral("en-US"));
        auto recognizer = std::move(std::get<std::unique_ptr<SpeechRecognizer>>(made));
        state.ResumeTiming();
        for (size_t at = 0; at < kept.size(); at += 800)
            recognizer->feed(std::span(kept).subspan(at, std::min<size_t>(800, kept.size() - at)));
        recognizer->finish();
        while (const auto result = recognizer->next(std::stop_token()))
            finals += result->isFinal;
    }
    state.counters["finals"] = double(finals) / double(state.iterations());
    state.counters["audio_s"] = lecture.speech.seconds;
    state.counters["rtf"] = benchmark::Counter(lecture.speech.seconds, benchmark::Counter::kIsIterationInvariantRate
                                                                             | benchmark::Counter::kInvert);
}
BENCHMARK(recognizerRealTimeFactor)->Iterations(3)->Unit(benchmark::kSecond)->UseRealTime();

void convertMicrophoneBuffer(benchmark::State &state)
{
    const AudioFormat microphone{48'000, 2};
    const std::vector<float> sound(4'096 * 2, 0.25f);
    const auto converter = AudioConverter::create(microphone, 16'000);
    for (auto _ : state)
        benchmark::DoNotOptimize(converter->convert({sound.data(), 4'096, microphone}).size());
}
BENCHMARK(convertMicrophoneBuffer)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
