// The library's costs that grow with the classes: opening it on a thousand stored classes of two
// hundred lines (until the list is painted), and each keystroke of a search through all their text.

#include "session/SessionStore.h"
#include "ui/library/LibraryListing.h"
#include "ui/library/LibraryWindow.h"

#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QListView>
#include <QTemporaryDir>
#include <QTimeZone>

#include <benchmark/benchmark.h>

#include <memory>

namespace {

// Sees the list's first paint after a listing arrived.
class PaintWatch final : public QObject
{
public:
    bool armed = false;
    bool painted = false;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (armed && event->type() == QEvent::Paint)
            painted = true;
        return QObject::eventFilter(watched, event);
    }
};

// A thousand classes of 200 lines each, written once for all benchmarks.
const QTemporaryDir &library()
{
    static const QTemporaryDir documents = [] {
        QTemporaryDir made;
        SessionStore::useDocumentsFolder(made.path());
        QDateTime start(QDate(2026, 3, 2), QTime(9, 0), QTimeZone::utc());
        for (int c = 0; c < 1'000; ++c) {
            SessionData data = SessionData::make(QStringLiteral("ko"), QStringLiteral("zh"), start.addSecs(c * 3'600));
            data.title = QStringLiteral("열역학 %1강 · 第 %1 讲").arg(c);
            data.category = QStringLiteral("课程 %1").arg(c % 12);
            for (int i = 0; i < 200; ++i)
                data.lines.append({i * 9.0, QStringLiteral("오늘은 열역학 제2법칙과 엔트로피의 의미를 함께 살펴보겠습니다 %1-%2").arg(c).arg(i),
                                   QStringLiteral("今天我们一起来看热力学第二定律和熵的含义 %1-%2").arg(c).arg(i)});
            data.duration = 1'800;
            const QString folder = SessionStore::root() + u"/class " + QString::number(c);
            QDir().mkpath(folder);
            SessionStore::write(data, folder);
        }
        return made;
    }();
    return documents;
}

// The listing alone, on the pool; bench_session's listLibrary is the store reading one folder after
// another.
void readShelves(benchmark::State &state)
{
    library();
    for (auto _ : state)
        benchmark::DoNotOptimize(LibraryListing::read(SessionStore::root(), SessionStore::trashRoot()));
}
BENCHMARK(readShelves)->Unit(benchmark::kMillisecond)->UseRealTime();

// From show() to the first paint of the list holding every class. `listedBefore`: the window was
// made a while before it opens (as the application makes it at start-up) and holds the listing
// it started then; otherwise it opens right after it was made and waits for that listing.
void openToFirstPaintedList(benchmark::State &state, bool listedBefore)
{
    library();
    for (auto _ : state) {
        state.PauseTiming();
        auto window = std::make_unique<LibraryWindow>();
        auto *table = window->findChild<QListView *>(QStringLiteral("table"));
        PaintWatch watch;
        table->viewport()->installEventFilter(&watch);
        while (listedBefore && window->listing())
            QApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QObject::connect(window.get(), &LibraryWindow::listed, &watch, [&] { watch.armed = true; });
        watch.armed = listedBefore;
        state.ResumeTiming();

        window->show();
        while (!watch.painted)
            QApplication::processEvents(QEventLoop::WaitForMoreEvents);

        state.PauseTiming();
        if (table->model()->rowCount() != 1'000)
            state.SkipWithError("not every class was listed");
        while (window->listing())
            QApplication::processEvents(QEventLoop::WaitForMoreEvents);
        window.reset();
        QApplication::processEvents();
        state.ResumeTiming();
    }
}
BENCHMARK_CAPTURE(openToFirstPaintedList, made_at_start_up, true)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(5);
BENCHMARK_CAPTURE(openToFirstPaintedList, made_just_now, false)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(5);

// Typing a query letter by letter; each iteration is one keystroke, the worst of which is the first
// letter on a cleared field or a letter that leaves nothing found (every haystack read to its end).
void searchKeystroke(benchmark::State &state, const QString &query, bool pasted)
{
    library();
    LibraryWindow window;
    while (window.listing())
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    auto *search = window.findChild<QLineEdit *>(QStringLiteral("search"));
    auto *table = window.findChild<QListView *>(QStringLiteral("table"));
    qsizetype typed = 0;
    int found = 0;
    for (auto _ : state) {
        typed = typed % query.size() + 1;
        // A pasted query alternates with the empty field, so that each one is searched afresh.
        search->setText(pasted ? (search->text() == query ? QString() : query) : query.left(typed));
        found = table->model()->rowCount();
    }
    state.counters["last_rows"] = found;
}
BENCHMARK_CAPTURE(searchKeystroke, typed_found_in_one_class, QStringLiteral("第 517 讲"), false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(searchKeystroke, typed_in_a_translation, QStringLiteral("熵的含义 999-199"), false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(searchKeystroke, typed_found_nowhere, QStringLiteral("photosynthesis"), false)->Unit(benchmark::kMillisecond);
// The worst case: a query that no class holds but whose opening is everywhere, pasted whole, so
// every haystack is read to its end; every other iteration clears the field.
BENCHMARK_CAPTURE(searchKeystroke, pasted_nowhere, QStringLiteral("엔트로피의 의미가"), true)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    SessionStore::useDocumentsFolder({});
    return 0;
}
