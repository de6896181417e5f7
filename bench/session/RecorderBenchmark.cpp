// What recording costs: the processor time, over all threads, that the recorder spends on an
// hour of microphone sound (mixing down on the audio thread, encoding and writing on its own).

#include "platform/MicHub.h"
#include "session/AudioRecorder.h"

#include "FakeAudioInput.h"

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
    std::vector<float> sound(size_t(seconds * rate * channels));
    for (size_t i = 0; i < sound.size(); ++i)
        sound[i] = 0.3f * float(std::sin(double(i / channels) * 0.0576));

    QTemporaryDir folder;
    auto owned = std::make_unique<FakeAudioInput>();
    FakeAudioInput &input = *owned;
    input.delivered = {rate, channels};
    MicHub hub(std::move(owned));
    AudioRecorder recorder(hub);
    double cpu = 0;
    for (auto _ : state) {
        const double before = processSeconds();
        recorder.start(folder.filePath(QStringLiteral("录音.m4a")));
        input.play(sound, frames);
        recorder.stop();
        cpu += processSeconds() - before;
    }
    state.counters["cpu_seconds_per_audio_hour"] = cpu / double(state.iterations()) / seconds * 3'600;
}
BENCHMARK(recordAnHour)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
