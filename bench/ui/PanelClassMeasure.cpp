// What the panel costs during a class: the time from building it to both pages ready, then, with
// 5,000 rows already shown, the CPU share and memory of the application and its page renderers
// while 10 rows and 10 draft updates arrive every second, and whether every row arrived in order.
// Run under a display (xvfb-run); an optional argument gives the measured seconds (30).

#include "ui/common/Rendering.h"
#include "ui/panel/Panel.h"
#include "ui/web/FeedView.h"
#include "ui/web/TranscriptView.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>
#include <QTimer>
#include <QWebEnginePage>
#include <QWebEngineView>

#include <unistd.h>

#include <cstdio>
#include <memory>
#include <optional>

namespace {

struct Usage
{
    double cpuSeconds = 0;
    double pssMegabytes = 0;
};

// Every process of our process group: this one and the web engine's helpers it started.
Usage groupUsage()
{
    Usage usage;
    const pid_t group = getpgrp();
    const long ticks = sysconf(_SC_CLK_TCK);
    for (const QString &entry : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
        bool number = false;
        entry.toInt(&number);
        if (!number)
            continue;
        QFile stat(u"/proc/" + entry + u"/stat");
        if (!stat.open(QIODevice::ReadOnly))
            continue;
        const QByteArray line = stat.readAll();
        const QList<QByteArray> fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
        if (fields.size() < 13 || fields[2].toInt() != group)
            continue;
        usage.cpuSeconds += double(fields[11].toLongLong() + fields[12].toLongLong()) / double(ticks);
        QFile rollup(u"/proc/" + entry + u"/smaps_rollup");
        if (rollup.open(QIODevice::ReadOnly)) {
            for (const QByteArray &row : rollup.readAll().split('\n')) {
                if (row.startsWith("Pss:"))
                    usage.pssMegabytes += row.mid(4).trimmed().split(' ').first().toDouble() / 1024.0;
            }
        }
    }
    return usage;
}

QVariant evaluate(QWebEngineView *web, const QString &script)
{
    auto result = std::make_shared<std::optional<QVariant>>();
    web->page()->runJavaScript(script, [result](const QVariant &value) { *result = value; });
    if (!QTest::qWaitFor([&] { return result->has_value(); }, 600000))
        std::printf("the page did not answer\n");
    return result->value_or(QVariant());
}

} // namespace

int main(int argc, char *argv[])
{
    setpgid(0, 0);
    Rendering::choose();
    QApplication application(argc, argv);
    const int seconds = argc > 1 ? std::atoi(argv[1]) : 30;

    QElapsedTimer opened;
    opened.start();
    Panel panel;
    panel.show();
    if (!QTest::qWaitFor([&] { return panel.transcriptView().ready() && panel.feed().ready(); }, 60000)) {
        std::printf("the pages did not load\n");
        return 1;
    }
    std::printf("panel built to both pages ready: %lld ms\n", opened.elapsed());

    TranscriptView &transcript = panel.transcriptView();
    int next = 0;
    const auto row = [&] {
        transcript.addLine(next, QStringLiteral("Line %1: marginal cost is the cost of one more unit.").arg(next));
        transcript.setTranslation(next, QStringLiteral("第 %1 句：边际成本是多生产一单位的成本。").arg(next));
        ++next;
    };
    for (int i = 0; i < 5000; ++i)
        row();
    QElapsedTimer filled;
    filled.start();
    evaluate(transcript.web(), QStringLiteral("document.querySelectorAll('#rows .row').length"));
    std::printf("5,000 rows shown in: %lld ms\n", filled.elapsed());

    int draft = 0;
    QTimer rows;
    QObject::connect(&rows, &QTimer::timeout, row);
    QTimer drafts;
    QObject::connect(&drafts, &QTimer::timeout, [&] {
        ++draft;
        transcript.setDrafts({{QStringLiteral("and so the firm keeps producing %1").arg(draft),
                               QStringLiteral("所以企业继续生产 %1").arg(draft)}});
    });
    const Usage before = groupUsage();
    QElapsedTimer measured;
    measured.start();
    rows.start(100);
    drafts.start(100);
    QTest::qWait(seconds * 1000);
    rows.stop();
    drafts.stop();
    const Usage after = groupUsage();
    const double share = (after.cpuSeconds - before.cpuSeconds) / (double(measured.elapsed()) / 1000.0);
    std::printf("during class: %.1f %% of one core, %.0f MB (PSS, application and renderers)\n", share * 100,
                after.pssMegabytes);

    const QJsonArray ids = QJsonDocument::fromJson(
        evaluate(transcript.web(), QStringLiteral("JSON.stringify([...document.querySelectorAll('#rows .row')]"
                                                  ".map(r => Number(r.dataset.id)))")).toString().toUtf8()).array();
    bool ordered = ids.size() == next;
    for (int i = 0; ordered && i < ids.size(); ++i)
        ordered = ids[i].toInt() == i;
    std::printf("rows shown %lld of %d, in order: %s\n", static_cast<long long>(ids.size()), next, ordered ? "yes" : "no");
    return ordered ? 0 : 1;
}
