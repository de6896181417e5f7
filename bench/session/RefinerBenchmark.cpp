// How fast the second recognition of a class goes and what memory it takes: flite's lecture
// repeated to 2 and to 10 minutes, as AAC in a fragmented .m4a like the recorder's, recognised
// in US English. Counters: the real-time factor in wall time and in processor time (seconds of
// work per second of recording; the second leaves out what a busy machine's other work adds),
// the lines found with the time of the last one against the recording's length, and the most
// the heap grew during the run (sampled every 50 ms), which should not follow that length.

#include "platform/PocketSphinxFileRecognizer.h"
#include "session/Refiner.h"

#include "AudioFiles.h"
#include "SpeechAudio.h"

#include <QProcess>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <atomic>
#include <thread>

#include <malloc.h>
#include <time.h>

namespace {

double processSeconds()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) + double(now.tv_nsec) / 1e9;
}

qint64 heapInUse()
{
    const struct mallinfo2 heap = mallinfo2();
    return qint64(heap.uordblks + heap.hblkhd);
}

// The lecture repeated to about `minutes`, as .m4a, and its length; empty when a tool failed.
std::pair<QString, double> recording(const QTemporaryDir &folder, int minutes)
{
    const auto speech = SpeechAudio::make(folder.path(), {SpeechAudio::lecture()});
    if (!speech)
        return {};
    const int repeats = int(minutes * 60 / speech->seconds);
    const QString name = QStringLiteral("class%1").arg(minutes);
    const QString wav = soxFile(folder.path(), name + u".wav", {speech->path}, {},
                                {QStringLiteral("repeat"), QString::number(repeats - 1)});
    const QString m4a = folder.filePath(name + u".m4a");
    const int status = QProcess::execute(
        QStringLiteral("ffmpeg"), {QStringLiteral("-v"), QStringLiteral("quiet"), QStringLiteral("-y"), QStringLiteral("-i"), wav,
                                   QStringLiteral("-ar"), QStringLiteral("48000"), QStringLiteral("-c:a"), QStringLiteral("aac"),
                                   QStringLiteral("-b:a"), QStringLiteral("64k"), QStringLiteral("-movflags"),
                                   QStringLiteral("+frag_keyframe+empty_moov"), m4a});
    if (wav.isEmpty() || status != 0)
        return {};
    return {m4a, repeats * speech->seconds};
}

void refineRecording(benchmark::State &state)
{
    const int minutes = int(state.range(0));
    QTemporaryDir folder;
    const auto [path, seconds] = recording(folder, minutes);
    if (path.isEmpty()) {
        state.SkipWithError("flite, sox or ffmpeg failed");
        return;
    }
    qsizetype lines = 0;
    double lastTime = 0, processor = 0;
    qint64 heapGrowth = 0;
    for (auto _ : state) {
        const double started = processSeconds();
        const qint64 before = heapInUse();
        std::atomic<bool> done = false;
        std::atomic<qint64> most = 0;
        std::jthread sampler([&] {
            while (!done) {
                most = std::max(most.load(), heapInUse() - before);
                std::this_thread::sleep_for(std::chrono::milliseconds(50));
            }
        });
        const auto result = Refiner::transcribe(path, {QStringLiteral("en-US")}, PocketSphinxFileRecognizer::factory());
        processor += processSeconds() - started;
        done = true;
        sampler.join();
        lines = result ? result->size() : -1;
        lastTime = result && !result->isEmpty() ? result->last().t : -1;
        heapGrowth = most;
    }
    state.counters["lines"] = double(lines);
    state.counters["last_line_s"] = lastTime;
    state.counters["audio_s"] = seconds;
    state.counters["heap_growth_MB"] = double(heapGrowth) / 1e6;
    state.counters["rtf"] = benchmark::Counter(seconds, benchmark::Counter::kIsIterationInvariantRate
                                                            | benchmark::Counter::kInvert);
    state.counters["cpu_rtf"] = processor / double(state.iterations()) / seconds;
}
BENCHMARK(refineRecording)->Arg(2)->Arg(10)->Iterations(1)->Unit(benchmark::kSecond)->UseRealTime();

} // namespace

BENCHMARK_MAIN();
