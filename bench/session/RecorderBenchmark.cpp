// What recording costs: the processor time, over all threads, that the recorder spends on an
// hour of microphone sound (mixing down on the audio thread, encoding and writing on its own).

#include "session/AudioRecorder.h"

#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cmath>
#include <ctime>
#include <vector>

namespace {

double processSeconds()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) + double(now.tv_nsec) / 1e9;
}

void recordAnHour(benchmark::State &state)
{
    constexpr int rate = 48'000;
    constexpr int channels = 2;
    constexpr qsizetype frames = 4'096;
    // Under the recorder's queue bound, so nothing is dropped however fast it is fed.
    constexpr double seconds = 50;
    std::vector<float> buffer(size_t(frames * channels));
    for (size_t i = 0; i < buffer.size(); ++i)
        buffer[i] = 0.3f * float(std::sin(double(i / channels) * 0.0576));

    QTemporaryDir folder;
    // Sound goes in through append(), as the listener would hand it on.
    AudioRecorder recorder({[] { return rate; }, [](AudioRecorder::Listener) { return QUuid::createUuid(); },
                            [](const QUuid &) {}});
    double cpu = 0;
    for (auto _ : state) {
        const double before = processSeconds();
        recorder.start(folder.filePath(QStringLiteral("录音.m4a")));
        for (qsizetype fed = 0; fed < qsizetype(seconds * rate); fed += frames)
            recorder.append(buffer.data(), frames, rate, channels);
        recorder.stop();
        cpu += processSeconds() - before;
    }
    state.counters["cpu_seconds_per_audio_hour"] = cpu / double(state.iterations()) / seconds * 3'600;
}
BENCHMARK(recordAnHour)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
