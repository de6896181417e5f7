// The engine's own work per pass and its transcript windows, on the transcript of a long class.

#include "captions/CaptionSource.h"
#include "engine/EngineState.h"
#include "engine/PassLoop.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <memory>
#include <optional>

namespace {

constexpr int transcriptLines = 10000;
constexpr int newLines = 20;

// A source that hands out the same lines on every read, as a busy teacher would.
class SteadySource final : public CaptionSource
{
public:
    explicit SteadySource(QString lines) : lines_(std::move(lines)) {}
    std::optional<QString> start() override { return std::nullopt; }
    QString read() override { return lines_; }
    QString draft() override { return QStringLiteral("and the next point is"); }

private:
    QString lines_;
};

Config classIn(const QString &language, const QString &sourceType)
{
    Config config;
    config.lectureLanguage = language;
    config.sourceType = sourceType;
    return config;
}

// Lines of about sixty characters, with questions and notices among them.
QStringList englishLines(int count, int from = 0)
{
    QStringList lines;
    for (int i = from; i < from + count; ++i) {
        switch (i % 5) {
        case 0: lines << QStringLiteral("What is the entropy of system number %1 after mixing?").arg(i); break;
        case 1: lines << QStringLiteral("The midterm exam on Oct. 12th covers chapter %1 and its proofs.").arg(i); break;
        default: lines << QStringLiteral("So the heat flows from the hot body %1 into the colder one here.").arg(i);
        }
    }
    return lines;
}

QStringList koreanLines(int count, int from = 0)
{
    QStringList lines;
    for (int i = from; i < from + count; ++i) {
        const QString word = QString(QChar(0xAC00 + i % 11172)) + QChar(0xAC00 + (i * 7) % 11172);
        switch (i % 5) {
        case 0: lines << QStringLiteral("그러면 이 시스템 %1의 엔트로피는 어떻게 변할까요?").arg(word); break;
        case 1: lines << QStringLiteral("중간고사 범위는 %1 단원까지이고 다음 주에 공지할게요.").arg(word); break;
        default: lines << QStringLiteral("열은 뜨거운 물체 %1에서 차가운 물체로 흘러갑니다 그렇죠.").arg(word);
        }
    }
    return lines;
}

// The system's clock, put forward once the class has begun: after five minutes every pass also
// listens for the closing words, as it does for the rest of a class.
class LateClock final : public Text::Clock
{
public:
    Duration elapsed() const override { return system_.elapsed() + ahead_; }
    QDateTime now() const override { return system_.now(); }
    bool sleep(Duration duration, std::stop_token stop) override { return system_.sleep(duration, stop); }
    void putForward() { ahead_ = std::chrono::minutes(6); }

private:
    Text::SystemClock system_;
    Duration ahead_{0};
};

std::shared_ptr<EngineState> stateWith(const Config &config, const QStringList &transcript,
                                       std::shared_ptr<Text::Clock> clock = std::make_shared<Text::SystemClock>())
{
    auto state = std::make_shared<EngineState>(config, nullptr, nullptr, std::move(clock));
    // Line by line, as in class, so the transcript has the spare room a growing list keeps.
    for (const QString &line : transcript)
        state->append({line});
    return state;
}

// One pass that brings 20 new lines onto a transcript of 10,000, detectors and batches included.
void runPass(benchmark::State &run, const Config &config, const QStringList &transcript, const QStringList &fresh)
{
    SteadySource source(fresh.join(u'\n'));
    std::shared_ptr<EngineState> state;
    std::optional<PassLoop> loop;
    for (auto _ : run) {
        // A fresh transcript each time, so that every pass brings new lines; made and dropped untimed.
        run.PauseTiming();
        loop.reset();
        const auto clock = std::make_shared<LateClock>();
        state = stateWith(config, transcript, clock);
        clock->putForward();
        loop.emplace(state, source);
        run.ResumeTiming();
        loop->pass();
    }
    run.counters["transcript"] = double(state->lineCount());
}

void PassOfTwentyEnglishLines(benchmark::State &run)
{
    runPass(run, classIn(QStringLiteral("English"), QStringLiteral("mic")), englishLines(transcriptLines),
            englishLines(newLines, transcriptLines));
}

void PassOfTwentyKoreanWindowLines(benchmark::State &run)
{
    runPass(run, classIn(QStringLiteral("Korean"), QStringLiteral("window")), koreanLines(transcriptLines),
            koreanLines(newLines, transcriptLines));
}

void FullTranscript(benchmark::State &run, const QStringList &transcript)
{
    const auto state = stateWith(classIn(QStringLiteral("Korean"), QStringLiteral("mic")), transcript);
    for (auto _ : run)
        benchmark::DoNotOptimize(state->fullTranscript(60000));
}

void ContextWindow(benchmark::State &run, const QStringList &transcript)
{
    const auto state = stateWith(classIn(QStringLiteral("Korean"), QStringLiteral("mic")), transcript);
    for (auto _ : run)
        benchmark::DoNotOptimize(state->contextWindow());
}

void FullTranscriptEnglish(benchmark::State &run) { FullTranscript(run, englishLines(transcriptLines)); }
void FullTranscriptKorean(benchmark::State &run) { FullTranscript(run, koreanLines(transcriptLines)); }
void ContextWindowEnglish(benchmark::State &run) { ContextWindow(run, englishLines(transcriptLines)); }
void ContextWindowKorean(benchmark::State &run) { ContextWindow(run, koreanLines(transcriptLines)); }

} // namespace

BENCHMARK(PassOfTwentyEnglishLines)->Unit(benchmark::kMicrosecond);
BENCHMARK(PassOfTwentyKoreanWindowLines)->Unit(benchmark::kMicrosecond);
BENCHMARK(FullTranscriptEnglish)->Unit(benchmark::kMicrosecond);
BENCHMARK(FullTranscriptKorean)->Unit(benchmark::kMicrosecond);
BENCHMARK(ContextWindowEnglish)->Unit(benchmark::kMicrosecond);
BENCHMARK(ContextWindowKorean)->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
