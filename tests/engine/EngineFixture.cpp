#include "EngineFixture.h"

#include "ai/Http.h"

#include <QThreadPool>

template<typename Change>
void Recorder::record(Change change)
{
    {
        std::scoped_lock lock(mutex_);
        change();
    }
    changed_.notify_all();
}

void Recorder::wire(Engine &engine)
{
    engine.onResult = [this](const QString &kind, const QString &text, const QString &time) {
        record([&] { results_ << Result{kind, text, time}; });
    };
    engine.onStatus = [this](const QString &text) { record([&] { statuses_ << text; }); };
    engine.onCaption = [this](const QString &draft) { record([&] { captions_ << draft; }); };
    engine.onLine = [this](const QString &line) { record([&] { lines_ << line; }); };
    engine.onSummary = [this](const QString &text) { record([&] { summaries_ << text; }); };
    engine.onTerms = [this](const QList<VocabularyTerm> &terms) { record([&] { terms_ << terms; }); };
    engine.onClassEnd = [this] { record([&] { ++classEnds_; }); };
    engine.onEvent = [this](const ClassEvent &event) { record([&] { events_ << event; }); };
}

QStringList Recorder::statuses() const
{
    std::scoped_lock lock(mutex_);
    return statuses_;
}

QStringList Recorder::captions() const
{
    std::scoped_lock lock(mutex_);
    return captions_;
}

QStringList Recorder::lines() const
{
    std::scoped_lock lock(mutex_);
    return lines_;
}

QList<Recorder::Result> Recorder::results() const
{
    std::scoped_lock lock(mutex_);
    return results_;
}

QStringList Recorder::summaries() const
{
    std::scoped_lock lock(mutex_);
    return summaries_;
}

QList<QList<VocabularyTerm>> Recorder::terms() const
{
    std::scoped_lock lock(mutex_);
    return terms_;
}

QList<ClassEvent> Recorder::events() const
{
    std::scoped_lock lock(mutex_);
    return events_;
}

int Recorder::classEnds() const
{
    std::scoped_lock lock(mutex_);
    return classEnds_;
}

bool Recorder::waitFor(const std::function<bool()> &condition) const
{
    std::unique_lock lock(mutex_);
    // The condition reads through the locking getters, so it runs unlocked.
    return changed_.wait_for(lock, std::chrono::seconds(5), [&] {
        lock.unlock();
        const bool done = condition();
        lock.lock();
        return done;
    });
}

Config EngineTest::micConfig()
{
    Config config;
    config.sourceType = QStringLiteral("mic");
    config.lectureLanguage = QStringLiteral("English");
    config.answerLanguage = QStringLiteral("Simplified Chinese");
    return config;
}

Config EngineTest::windowConfig()
{
    Config config;
    config.sourceType = QStringLiteral("window");
    config.app = QStringLiteral("Zoom");
    config.lectureLanguage = QStringLiteral("Korean");
    config.answerLanguage = QStringLiteral("Simplified Chinese");
    return config;
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
