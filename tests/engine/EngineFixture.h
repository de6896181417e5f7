#pragma once

// A running Engine on a manual clock, fed by a scripted source, asking a fake provider, with
// every callback recorded. pass() lets the loop make exactly one pass; model calls still run on
// the network pool, so checks of their results wait for them.

#include "FakeProvider.h"
#include "ManualClock.h"
#include "QtPrinters.h"
#include "ScriptedSource.h"
#include "engine/Engine.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>

// A class in the language, heard ("mic") or read from Zoom's caption window ("window").
Config classConfig(const QString &sourceType, const QString &language);

// What an engine reported.
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

// Every callback of an engine, from whichever thread it came.
class Recorder
{
public:
    void wire(Engine &engine);
    // What was reported so far.
    Seen operator()() const;
    // Waits (really, at most a few seconds) until the condition holds.
    bool waitFor(const std::function<bool(const Seen &)> &condition) const;

private:
    template<typename Change>
    void record(Change change);

    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    Seen seen_;
};

class EngineTest : public ::testing::Test
{
protected:
    using Duration = std::chrono::milliseconds;

    static Config micConfig() { return classConfig(QStringLiteral("mic"), QStringLiteral("English")); }
    static Config windowConfig() { return classConfig(QStringLiteral("window"), QStringLiteral("Korean")); }

    void TearDown() override;

    // Builds the engine with the given providers (either may be null).
    void make(const Config &config, std::shared_ptr<const AIProvider> provider,
              std::shared_ptr<const AIProvider> fastProvider);
    // make() with the fixture's fake as fast provider, start, and wait for the first pass.
    void startWith(const Config &config);
    void start();
    // Feeds the lines, lets time go on by the step and waits until the loop's pass is done.
    void pass(const QStringList &lines = {}, Duration step = Duration(400));
    // Waits until every model call started so far has finished.
    void settle();
    QList<FakeProvider::Call> callsContaining(const QString &text) const;

    std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
    std::shared_ptr<FakeProvider> fake = std::make_shared<FakeProvider>();
    ScriptedSource *source = nullptr;  // owned by engine
    std::unique_ptr<Engine> engine;
    Recorder seen;
};
