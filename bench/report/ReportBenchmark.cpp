// How long the end of a class takes on the main thread: drawing the mind map, adding to a full
// inbox, rendering the mail.

#include "report/Inbox.h"
#include "report/MindMapImage.h"
#include "report/ReportMail.h"

#include <QGuiApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

using namespace Qt::StringLiterals;

namespace {

MindNode leaf(const QString &label)
{
    return {label, std::nullopt};
}

// 7 branches of 5 children; two children carry a third level of three.
MindNode classMap()
{
    QList<MindNode> branches;
    for (int b = 0; b < 7; ++b) {
        QList<MindNode> children;
        for (int c = 0; c < 5; ++c)
            children << leaf(u"要点 %1.%2 관련 개념"_s.arg(b + 1).arg(c + 1));
        if (b < 2)
            children[0].c = QList<MindNode>{leaf(u"例子"_s), leaf(u"공식"_s), leaf(u"常见错误"_s)};
        branches << MindNode{u"第 %1 部分：主题"_s.arg(b + 1), children};
    }
    return {u"热力学第二定律与熵"_s, branches};
}

void mindMapPng(benchmark::State &state)
{
    const MindNode map = classMap();
    qsizetype bytes = 0;
    for (auto _ : state)
        bytes = MindMapImage::png(map).value_or(QByteArray()).size();
    state.counters["png_bytes"] = double(bytes);
}
BENCHMARK(mindMapPng)->Unit(benchmark::kMillisecond);

InboxMessage messageWithNotes(qsizetype bytes)
{
    InboxMessage message;
    message.date = QDateTime::currentDateTimeUtc();
    message.title = u"热力学"_s;
    message.report.notes = QString(u"熵是系统无序程度的量度。"_s).repeated(bytes / 36);  // 3 bytes a character in UTF-8
    message.report.events = {{u"期中考试"_s, u"2026-12-01"_s, u"10:00"_s, u"第 1–5 章"_s}};
    message.report.mindmap = classMap();
    return message;
}

void inboxAddToAFullInbox(benchmark::State &state)
{
    const InboxMessage message = messageWithNotes(20 * 1024);
    for (int i = 0; i < Inbox::capacity; ++i)
        Inbox::add(message);
    for (auto _ : state)
        Inbox::add(message);
    state.counters["messages"] = double(Inbox::all().size());
}
BENCHMARK(inboxAddToAFullInbox)->Unit(benchmark::kMillisecond);

void mailHtml(benchmark::State &state)
{
    QStringList lines;
    for (int i = 0; lines.size() * 10 < 5'000; ++i) {
        if (i % 12 == 0)
            lines << u"## 第 %1 节"_s.arg(i / 12 + 1);
        lines << (i % 3 == 0 ? u"- **entropy** grows in a closed system, so the arrow of time < points one way"_s
                             : u"The second law says heat flows from hot to cold & never back by itself."_s);
    }
    const ClassReport report{lines.join(u'\n'), {{u"Quiz"_s, u"2026-12-01"_s, std::nullopt, u"ch. 4"_s}}, std::nullopt};
    const QDateTime date = QDateTime::currentDateTime();
    for (auto _ : state)
        benchmark::DoNotOptimize(ReportMail::html(u"Physics"_s, date, report, true));
}
BENCHMARK(mailHtml)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    QTemporaryDir home;
    qputenv("XDG_DATA_HOME", home.path().toLocal8Bit());
    qputenv("XDG_CONFIG_HOME", home.path().toLocal8Bit());
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    QCoreApplication::setApplicationName(u"QuilletBench"_s);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
