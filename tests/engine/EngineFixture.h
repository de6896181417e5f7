#pragma once

// A running Engine on a manual clock, fed by a scripted source, asking a fake provider, with
// every callback recorded. step() lets the loop make exactly one pass; pass() then also waits for
// the model calls the pass started on the network pool, and so for the callbacks they make.

#include "FakeProvider.h"
#include "ManualClock.h"
#include "QtPrinters.h"
#include "ScriptedSource.h"
#include "engine/Engine.h"
#include "platform/Http.h"

#include <QStringList>
#include <QThreadPool>

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <mutex>

// A class in the language, heard ("mic") or read from Zoom's caption window ("window").
inline Config classConfig(const QString &sourceType, const QString &language)
{
    Config config;
    config.sourceType = sourceType;
    config.app = QStringLiteral("Zoom");
    config.lectureLanguage = language;
    config.answerLanguage = QStringLiteral("Simplified Chinese");
    return config;
}

// What an engine reported, from whichever thread.
struct Seen
{
    struct Result
    {
        QString kind;
        QString text;
        QString time;
    };

    QStringList statuses;
    QStringList captions;
    QStringList lines;
    QList<Result> results;
    QStringList summaries;
    QList<QList<VocabularyTerm>> terms;
    QList<ClassEvent> events;
    int classEnds = 0;
};

class EngineTest : public ::testing::Test
{
protected:
    static Config micConfig() { return classConfig(QStringLiteral("mic"), QStringLiteral("English")); }
    static Config windowConfig() { return classConfig(QStringLiteral("window"), QStringLiteral("Korean")); }

    void TearDown() override
    {
        fake->release();
        engine.reset();
        settle();
    }

    // A callback that makes its change to what was seen under the lock.
    template<typename Change>
    auto record(Change change)
    {
        return [this, change](const auto &...arguments) {
            std::scoped_lock lock(mutex_);
            change(seen_, arguments...);
        };
    }

    // The engine with the given providers (either may be null), every callback recorded.
    void make(const Config &config, std::shared_ptr<const AIProvider> provider,
              std::shared_ptr<const AIProvider> fast)
    {
        auto scripted = std::make_unique<ScriptedSource>();
        source = scripted.get();
        engine = std::make_unique<Engine>(config, std::move(scripted), std::move(provider), std::move(fast), clock);
        engine->onResult = record([](Seen &seen, const QString &kind, const QString &text, const QString &time) {
            seen.results << Seen::Result{kind, text, time};
        });
        engine->onStatus = record([](Seen &seen, const QString &text) { seen.statuses << text; });
        engine->onCaption = record([](Seen &seen, const QString &draft) { seen.captions << draft; });
        engine->onLine = record([](Seen &seen, const QString &line) { seen.lines << line; });
        engine->onSummary = record([](Seen &seen, const QString &text) { seen.summaries << text; });
        engine->onTerms = record([](Seen &seen, const QList<VocabularyTerm> &terms) { seen.terms << terms; });
        engine->onClassEnd = record([](Seen &seen) { ++seen.classEnds; });
        engine->onEvent = record([](Seen &seen, const ClassEvent &event) { seen.events << event; });
    }

    // make() with the fake as fast provider, start, and wait for the first pass.
    void startWith(const Config &config)
    {
        make(config, nullptr, fake);
        start();
    }

    void start()
    {
        engine->start();
        ASSERT_TRUE(source->waitForReads(1));
        ASSERT_TRUE(clock->waitForSleepers(1));
    }

    // Feeds the lines, lets time go on by the step and waits until the loop's pass is done.
    void step(const QStringList &lines = {}, std::chrono::milliseconds by = std::chrono::milliseconds(400))
    {
        source->feed(lines);
        const int reads = source->reads();
        clock->advance(by);
        // The loop leaves its sleep before it reads, so once the read is counted, a sleeper is the
        // loop back asleep after its pass.
        ASSERT_TRUE(source->waitForReads(reads + 1));
        ASSERT_TRUE(clock->waitForSleepers(1));
    }

    // A step whose model calls have taken their replies and made their callbacks.
    void pass(const QStringList &lines = {}, std::chrono::milliseconds by = std::chrono::milliseconds(400))
    {
        step(lines, by);
        settle();
    }

    static void settle() { Http::taskPool().waitForDone(); }

    QList<FakeProvider::Call> callsContaining(const QString &text) const { return fake->callsContaining(text); }

    Seen seen() const
    {
        std::scoped_lock lock(mutex_);
        return seen_;
    }

    std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
    std::shared_ptr<FakeProvider> fake = std::make_shared<FakeProvider>();
    ScriptedSource *source = nullptr;  // owned by engine
    std::unique_ptr<Engine> engine;

private:
    mutable std::mutex mutex_;
    Seen seen_;
};
