// How fast the second recognition of a class goes and what memory it takes: flite's lecture
// repeated to 2 and to 10 minutes, as AAC in a fragmented .m4a like the recorder's, recognised
// in US English. Counters: the real-time factor (seconds of work per second of recording), the
// lines found, and the most the heap grew during the run (sampled every 50 ms), which should not
// follow the length of the recording.

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

namespace {

qint64 heapInUse()
{
    const struct mallinfo2 heap = mallinfo2();
    return qint64(heap.uordblks + heap.hblkhd);
}

// The lecture repeated to about `minutes`, as .m4a; empty when a tool failed.
QString recording(const QTemporaryDir &folder, int minutes)
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
    return wav.isEmpty() || status != 0 ? QString() : m4a;
}

void refineRecording(benchmark::State &state)
{
    const int minutes = int(state.range(0));
    QTemporaryDir folder;
    const QString path = recording(folder, minutes);
    if (path.isEmpty()) {
        state.SkipWithError("flite, sox or ffmpeg failed");
        return;
    }
    qsizetype lines = 0;
    qint64 heapGrowth = 0;
    for (auto _ : state) {
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
        done = true;
        sampler.join();
        lines = result ? result->size() : -1;
        heapGrowth = most;
    }
    state.counters["lines"] = double(lines);
    state.counters["heap_growth_MB"] = double(heapGrowth) / 1e6;
    state.counters["rtf"] = benchmark::Counter(minutes * 60.0, benchmark::Counter::kIsIterationInvariantRate
                                                                   | benchmark::Counter::kInvert);
}
BENCHMARK(refineRecording)->Arg(2)->Arg(10)->Iterations(1)->Unit(benchmark::kSecond)->UseRealTime();

} // namespace

BENCHMARK_MAIN();
