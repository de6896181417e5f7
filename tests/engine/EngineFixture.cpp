#include "EngineFixture.h"

#include "ai/Http.h"

#include <QThreadPool>

Config classConfig(const QString &sourceType, const QString &language)
{
    Config config;
    config.sourceType = sourceType;
    config.app = QStringLiteral("Zoom");
    config.lectureLanguage = language;
    config.answerLanguage = QStringLiteral("Simplified Chinese");
    return config;
}

template<typename Change>
void Recorder::record(Change change)
{
    {
        std::scoped_lock lock(mutex_);
        change(seen_);
    }
    changed_.notify_all();
}

void Recorder::wire(Engine &engine)
{
    engine.onResult = [this](const QString &kind, const QString &text, const QString &time) {
        record([&](Seen &seen) { seen.results << Seen::Result{kind, text, time}; });
    };
    engine.onStatus = [this](const QString &text) { record([&](Seen &seen) { seen.statuses << text; }); };
    engine.onCaption = [this](const QString &draft) { record([&](Seen &seen) { seen.captions << draft; }); };
    engine.onLine = [this](const QString &line) { record([&](Seen &seen) { seen.lines << line; }); };
    engine.onSummary = [this](const QString &text) { record([&](Seen &seen) { seen.summaries << text; }); };
    engine.onTerms = [this](const QList<VocabularyTerm> &terms) {
        record([&](Seen &seen) { seen.terms << terms; });
    };
    engine.onClassEnd = [this] { record([](Seen &seen) { ++seen.classEnds; }); };
    engine.onEvent = [this](const ClassEvent &event) { record([&](Seen &seen) { seen.events << event; }); };
}

Seen Recorder::operator()() const
{
    std::scoped_lock lock(mutex_);
    return seen_;
}

bool Recorder::waitFor(const std::function<bool(const Seen &)> &condition) const
{
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, std::chrono::seconds(5), [&] { return condition(seen_); });
}

void EngineTest::TearDown()
{
    fake->release();
    engine.reset();
    settle();
}

void EngineTest::make(const Config &config, std::shared_ptr<const AIProvider> provider,
                      std::shared_ptr<const AIProvider> fastProvider)
{
    auto scripted = std::make_unique<ScriptedSource>();
    source = scripted.get();
    engine = std::make_unique<Engine>(config, std::move(scripted), std::move(provider), std::move(fastProvider),
                                      clock);
    seen.wire(*engine);
}

void EngineTest::startWith(const Config &config)
{
    make(config, nullptr, fake);
    start();
}

void EngineTest::start()
{
    engine->start();
    ASSERT_TRUE(source->waitForReads(1));
    ASSERT_TRUE(clock->waitForSleepers(1));
}

void EngineTest::pass(const QStringList &lines, Duration step)
{
    source->feed(lines);
    const int reads = source->reads();
    clock->advance(step);
    // The loop leaves its sleep before it reads, so once the read is counted, a sleeper is the
    // loop back asleep after its pass.
    ASSERT_TRUE(source->waitForReads(reads + 1));
    ASSERT_TRUE(clock->waitForSleepers(1));
}

void EngineTest::settle()
{
    Http::taskPool().waitForDone();
}

QList<FakeProvider::Call> EngineTest::callsContaining(const QString &text) const
{
    QList<FakeProvider::Call> found;
    for (const FakeProvider::Call &call : fake->calls()) {
        if (call.prompt().contains(text))
            found << call;
    }
    return found;
}
