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

// Every callback of an engine, from whichever thread it came.
class Recorder
{
public:
    struct Result
    {
        QString kind;
        QString text;
        QString time;
    };

    void wire(Engine &engine);

    QStringList statuses() const;
    QStringList captions() const;
    QStringList lines() const;
    QList<Result> results() const;
    QStringList summaries() const;
    QList<QList<VocabularyTerm>> terms() const;
    QList<ClassEvent> events() const;
    int classEnds() const;
    // Waits (really, at most a few seconds) until the condition holds.
    bool waitFor(const std::function<bool()> &condition) const;

private:
    template<typename Change>
    void record(Change change);

    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    QStringList statuses_;
    QStringList captions_;
    QStringList lines_;
    QList<Result> results_;
    QStringList summaries_;
    QList<QList<VocabularyTerm>> terms_;
    QList<ClassEvent> events_;
    int classEnds_ = 0;
};

class EngineTest : public ::testing::Test
{
protected:
    using Duration = std::chrono::milliseconds;

    static Config micConfig();
    // A Korean class read from another application's caption window.
    static Config windowConfig();

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
