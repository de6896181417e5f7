// What the segmenter costs the audio thread: one call of consume() on a buffer of 4096 frames,
// the size of the microphone hub's buffers, over a stream of speech and pauses that cuts a
// segment every few seconds.

#include "captions/Segmenter.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

namespace {

void consumeBuffer(benchmark::State &state)
{
    constexpr size_t frames = 4'096;
    // One buffer of speech-like sound, one of a pause: cuts come at the pause rule.
    std::vector<qint16> speech(frames);
    for (size_t i = 0; i < frames; ++i)
        speech[i] = qint16(3'000.0 * std::sin(double(i) * 0.07) * std::sin(double(i) * 0.003));
    const std::vector<qint16> pause(frames, 3);

    Segmenter segmenter;
    size_t cuts = 0;
    size_t calls = 0;
    for (auto _ : state) {
        const auto cut = segmenter.consume(++calls % 16 < 10 ? speech : pause);
        cuts += cut.has_value();
        benchmark::DoNotOptimize(cut);
    }
    state.counters["cuts"] = double(cuts);
}
BENCHMARK(consumeBuffer)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
