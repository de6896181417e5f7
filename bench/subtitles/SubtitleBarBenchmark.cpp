// What the subtitle bar costs while a class runs: 30 seconds of drafts at ten a second (a
// sentence growing word by word, closed into a row every twelfth draft) on a shown bar, and 30
// seconds of the same bar left alone (argument 0) for comparison.
// Counters: the CPU share of one core taken by this process and by the web engine's helper
// processes (the page's renderer and its compositor), and both together. Needs an X display
// (xvfb-run -a -s "-screen 0 1920x1080x24") and QTWEBENGINE_DISABLE_SANDBOX=1 as root.

#include "ui/common/Rendering.h"
#include "ui/subtitles/SubtitleWindow.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QHash>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <benchmark/benchmark.h>

#include <optional>

#include <unistd.h>

namespace {

struct Usage
{
    double own = 0;
    double helpers = 0;
};

// user + system seconds and the parent of one process, from /proc/<pid>/stat.
std::optional<std::pair<double, qint64>> processTimes(const QString &pid)
{
    QFile file(u"/proc/" + pid + u"/stat");
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QByteArray stat = file.readAll();
    // Fields after the command name, which may hold blanks: state ppid ... utime(14) stime(15).
    const QList<QByteArray> fields = stat.mid(stat.lastIndexOf(')') + 2).split(' ');
    if (fields.size() < 13)
        return std::nullopt;
    const double ticks = double(sysconf(_SC_CLK_TCK));
    return std::pair{(fields[11].toDouble() + fields[12].toDouble()) / ticks, fields[1].toLongLong()};
}

// This process and every process started below it.
Usage usage()
{
    QHash<qint64, std::pair<double, qint64>> all;
    for (const QString &pid : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs))
        if (bool number = false; pid.toLongLong(&number), number)
            if (const auto times = processTimes(pid))
                all.insert(pid.toLongLong(), *times);
    const qint64 self = getpid();
    Usage result;
    for (auto it = all.cbegin(); it != all.cend(); ++it) {
        if (it.key() == self) {
            result.own = it->first;
            continue;
        }
        for (qint64 parent = it->second; parent > 1 && all.contains(parent); parent = all[parent].second)
            if (parent == self) {
                result.helpers += it->first;
                break;
            }
    }
    return result;
}

void draftsOnTheBar(benchmark::State &state)
{
    SubtitleWindow bar;
    bar.show();
    TranscriptView &view = bar.transcript();
    if (!QTest::qWaitFor([&] { return view.ready(); }, 30000)) {
        state.SkipWithError("the page didn't load");
        return;
    }
    const QStringList words = QStringLiteral("so if the price is above marginal cost the firm should produce more "
                                             "because each extra unit adds to its profit").split(u' ');
    int tick = 0;
    int row = 0;
    QTimer drafts;
    QObject::connect(&drafts, &QTimer::timeout, [&] {
        const int length = tick % 12 + 1;
        const QString sentence = words.mid(0, length).join(u' ');
        if (length == 12) {
            view.addLine(row, sentence);
            view.setTranslation(row++, QStringLiteral("如果价格高于边际成本，企业就应该多生产，因为每多一单位都会增加利润"));
            view.setDrafts({});
        } else {
            view.setDrafts({{sentence, QStringLiteral("如果价格高于边际成本").left(length)}});
        }
        ++tick;
    });
    QTest::qWait(1000);  // the first paint and font loads settle
    for (auto _ : state) {
        const Usage before = usage();
        QElapsedTimer wall;
        wall.start();
        if (state.range(0) > 0)
            drafts.start(1000 / int(state.range(0)));
        QTest::qWait(30000);
        drafts.stop();
        const Usage after = usage();
        const double seconds = double(wall.nsecsElapsed()) / 1e9;
        state.SetIterationTime(seconds);
        state.counters["drafts"] = tick;
        state.counters["own_cpu_pct"] = 100 * (after.own - before.own) / seconds;
        state.counters["helpers_cpu_pct"] = 100 * (after.helpers - before.helpers) / seconds;
        state.counters["total_cpu_pct"] = 100 * (after.own + after.helpers - before.own - before.helpers) / seconds;
    }
}
BENCHMARK(draftsOnTheBar)->Arg(0)->Arg(10)->Iterations(1)->UseManualTime()->Unit(benchmark::kSecond);

} // namespace

int main(int argc, char *argv[])
{
    // Settings of its own, so the bar's frame and sizes never touch the user's.
    QTemporaryDir home;
    qputenv("XDG_CONFIG_HOME", home.path().toLocal8Bit());
    QApplication::setApplicationName(QStringLiteral("quillet-bench"));
    Rendering::choose();
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
