// How long the slide window takes to show the first page of a 200-page deck, how long reading
// all its page texts takes on the worker, and what a question tick costs the main thread while
// the model is slow. Runs on its own settings folder (offscreen unless a display is there).

#include "ui/slides/SlideFollower.h"
#include "ui/slides/SlideTexts.h"
#include "ui/slides/SlidesWindow.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QPainter>
#include <QPdfView>
#include <QPdfWriter>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <condition_variable>
#include <mutex>

using namespace Qt::StringLiterals;

namespace {

QString deckOf200Pages(const QTemporaryDir &dir)
{
    const QString path = dir.filePath(u"deck.pdf"_s);
    QPdfWriter writer(path);
    writer.setPageSize(QPageSize(QSizeF(254, 190.5), QPageSize::Millimeter));
    writer.setResolution(72);
    QPainter painter(&writer);
    QFont font(u"DejaVu Sans"_s);
    font.setPixelSize(28);
    painter.setFont(font);
    for (int page = 1; page <= 200; ++page) {
        if (page > 1)
            writer.newPage();
        painter.fillRect(QRect(0, 0, 720, 60), QColor(0x2f, 0x6f, 0xd8));
        painter.drawText(QRect(40, 100, 640, 400), Qt::TextWordWrap,
                         u"Lecture page %1: marginal cost, supply curves and the firm's decision to "
                         "produce one more unit. 边际成本与供给曲线 한계 비용"_s.arg(page));
    }
    return path;
}

// The page on show has been drawn when the band across its top is blue.
bool firstPageDrawn(QPdfView *view)
{
    const QImage image = view->viewport()->grab().toImage();
    for (int y = 0; y < image.height() / 3; ++y)
        if (image.pixelColor(image.width() / 2, y) == QColor(0x2f, 0x6f, 0xd8))
            return true;
    return false;
}

void openToFirstPage(benchmark::State &state)
{
    QTemporaryDir dir;
    const QString deck = deckOf200Pages(dir);
    for (auto _ : state) {
        SlidesWindow window;
        window.show();
        QCoreApplication::processEvents();
        auto *view = window.findChild<QPdfView *>();
        QElapsedTimer timer;
        timer.start();
        window.open(deck);
        while (!firstPageDrawn(view))
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        state.SetIterationTime(double(timer.nsecsElapsed()) / 1e9);
    }
}
BENCHMARK(openToFirstPage)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(5);

void readAllPageTexts(benchmark::State &state)
{
    QTemporaryDir dir;
    const QString deck = deckOf200Pages(dir);
    for (auto _ : state)
        benchmark::DoNotOptimize(SlideTexts::read(deck));
}
BENCHMARK(readAllPageTexts)->Unit(benchmark::kMillisecond)->Iterations(5);

// A model that answers only when told to, so the tick is measured with the question in flight.
class SlowProvider final : public AIProvider
{
public:
    QString displayName() const override { return u"Slow"_s; }
    int contextChars() const override { return 6000; }
    std::optional<QString> chat(const QString &, const QList<Turn> &) const override
    {
        std::unique_lock lock(mutex_);
        answered_.wait(lock, [this] { return open_; });
        return u"{\"page\": 2, \"sure\": true}"_s;
    }
    void answer()
    {
        {
            std::scoped_lock lock(mutex_);
            open_ = true;
        }
        answered_.notify_all();
    }

private:
    mutable std::mutex mutex_;
    mutable std::condition_variable answered_;
    bool open_ = false;
};

void questionTick(benchmark::State &state)
{
    QStringList pages;
    for (int page = 1; page <= 200; ++page)
        pages.append(u"Lecture page %1: marginal cost and supply"_s.arg(page));
    for (auto _ : state) {
        std::function<void()> tick;
        SlideFollower follower([&](std::chrono::milliseconds, std::function<void()> task) { tick = std::move(task); });
        auto slow = std::make_shared<SlowProvider>();
        follower.makeProvider = [slow] { return slow; };
        follower.setPages(pages);
        for (int line = 0; line < 14; ++line)
            follower.heard(u"the firm produces one more unit when the price is above marginal cost"_s);
        QElapsedTimer timer;
        timer.start();
        tick();  // sends the question; returns while the model has not answered
        state.SetIterationTime(double(timer.nsecsElapsed()) / 1e9);
        slow->answer();
        while (follower.asking())
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    }
}
BENCHMARK(questionTick)->UseManualTime()->Unit(benchmark::kMicrosecond)->Iterations(20);

} // namespace

int main(int argc, char **argv)
{
    QTemporaryDir home;
    qputenv("XDG_CONFIG_HOME", home.path().toLocal8Bit());
    qputenv("XDG_DATA_HOME", home.path().toLocal8Bit());
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
