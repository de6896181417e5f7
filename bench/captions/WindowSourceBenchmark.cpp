// What reading a caption window costs: one read() of a 1,600 × 300 window of another application
// with two lines of English and Korean in a 28-pixel font, captured at twice its size and read
// by Tesseract. Counters: the process's CPU time per read (Tesseract's own threads included) and
// what that makes in a minute of class, at one read per 1.5 seconds. Needs an X display
// (xvfb-run -a -s "-screen 0 1920x1080x24").

#include "captions/WindowSource.h"

#include <QApplication>
#include <QLabel>
#include <QTest>
#include <QVBoxLayout>
#include <QWidget>

#include <benchmark/benchmark.h>

#include <time.h>

namespace {

double processSeconds()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) + double(now.tv_nsec) / 1e9;
}

void readCaptionWindow(benchmark::State &state)
{
    WindowSource source(QStringLiteral("quillet"), {QStringLiteral("en-US"), QStringLiteral("ko-KR")}, WindowSource::x11());
    if (const auto problem = source.start()) {
        state.SkipWithError(problem->toStdString().c_str());
        return;
    }
    // This program's own window stands in for the other application's.
    QWidget window;
    window.setAutoFillBackground(true);
    window.setPalette(QPalette(Qt::black, Qt::white));
    auto *layout = new QVBoxLayout(&window);
    for (const QString &line : {QStringLiteral("The exam covers chapters three to five, and the lab report is due on Friday."),
                                QStringLiteral(u"시험 범위는 3장부터 5장까지이고, 실험 보고서는 금요일까지 제출합니다.")}) {
        auto *label = new QLabel(line, &window);
        QFont font(QStringLiteral("Noto Sans CJK KR"));
        font.setPixelSize(28);
        label->setFont(font);
        layout->addWidget(label);
    }
    window.setFixedSize(1'600, 300);
    window.show();
    if (!QTest::qWaitForWindowExposed(&window)) {
        state.SkipWithError("the window wasn't shown");
        return;
    }
    QTest::qWait(100);
    double cpu = 0;
    qsizetype lines = 0;
    for (auto _ : state) {
        const double start = processSeconds();
        const QString text = source.read();
        cpu += processSeconds() - start;
        lines = text.split(u'\n', Qt::SkipEmptyParts).size();
    }
    state.counters["lines"] = double(lines);
    state.counters["cpu_s_per_read"] = cpu / double(state.iterations());
    state.counters["cpu_s_per_class_minute"] = cpu / double(state.iterations()) * 60 / 1.5;
}
BENCHMARK(readCaptionWindow)->Iterations(10)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char *argv[])
{
    QApplication::setApplicationName(QStringLiteral("quillet-bench"));
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
