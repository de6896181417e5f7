// The coordinator's work for each line and each draft the engine reports, in a class that has
// already shown 10,000 rows: neither may scan the rows it has.

#include "app/RowPipeline.h"
#include "translation/Translator.h"

#include <QCoreApplication>
#include <QSettings>

#include <benchmark/benchmark.h>

namespace {

class NoSurface final : public TranscriptSurface
{
public:
    void clear(const QString &) override {}
    void addLine(int, const QString &) override {}
    void setText(int, const QString &) override {}
    void setTranslation(int, const QString &) override {}
    void setDrafts(const Drafts &drafts) override { benchmark::DoNotOptimize(drafts.size()); }
};

struct Class
{
    Class()
    {
        // Nothing answers here: translations stay under way, as they would on a slow server.
        QSettings().setValue(QStringLiteral("translate.url"), QStringLiteral("http://127.0.0.1:9"));
        translator.setLanguages({QStringLiteral("en-US")}, QStringLiteral("zh-Hans"));
        for (int i = 0; i < 10'000; ++i)
            rows.showLine(QStringLiteral("Line number %1 of the lecture.").arg(i));
    }

    Translator translator;
    Text::SystemClock clock;
    NoSurface panel;
    NoSurface bar;
    RowPipeline rows{panel, bar, translator, clock, [](std::chrono::milliseconds, std::function<void()>) {}};
};

void showLine(benchmark::State &state)
{
    Class lecture;
    int i = 0;
    for (auto _ : state)
        lecture.rows.showLine(QStringLiteral("Another finished sentence %1.").arg(++i));
}
BENCHMARK(showLine)->Unit(benchmark::kMicrosecond);

void showDraft(benchmark::State &state)
{
    Class lecture;
    int i = 0;
    for (auto _ : state)
        lecture.rows.showDraft(QStringLiteral("This part is done. And this one is still going on %1").arg(++i));
}
BENCHMARK(showDraft)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Quillet Benchmarks"));
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
