#pragma once

// The heart of a running class. One Engine exists per start of listening: it owns its caption
// source, polls it on a thread of its own every 0.4 s (sound) or 1.5 s (caption window), keeps
// the transcript, and reports lines, drafts, status, cards, summary, vocabulary, dated events and
// the end of the class through the callbacks it inherits. Model calls run as thread-pool tasks;
// the loop never waits for one. It owns no window and writes no file.
//
// Threads: construct, set the callbacks, start() and stop() from the owner's thread. Set the
// callbacks before start(): the loop and its tasks use them as they were then. The transcript
// readers and setSwitches() may be called from any thread. stop() (and the destructor) returns
// once the loop has ended: at once from a sleep, else when the source call in progress returns.
// From the moment stop() returns no callback runs any more, not even for a model call that
// answers later. A stopped Engine isn't started again.

#include "ai/AIProvider.h"
#include "captions/CaptionSource.h"
#include "engine/EngineCallbacks.h"
#include "engine/Switches.h"
#include "settings/Config.h"
#include "text/Clock.h"

#include <QString>

#include <memory>
#include <stop_token>
#include <thread>

class CallGate;
class EngineState;

class Engine final : public EngineCallbacks
{
public:
    // The kinds of card, shown as their titles.
    static inline const QString questionKind = QStringLiteral("可以这样回答");
    static inline const QString noticeKind = QStringLiteral("考试重点");
    static inline const QString keyPointKind = QStringLiteral("课堂重点");

    // fast serves every live model call and falls back on provider; provider only sets the size
    // of the context window. Either may be null.
    Engine(Config config, std::unique_ptr<CaptionSource> source, std::shared_ptr<const AIProvider> provider,
           std::shared_ptr<const AIProvider> fast,
           std::shared_ptr<Text::Clock> clock = std::make_shared<Text::SystemClock>());
    ~Engine();
    Engine(const Engine &) = delete;
    Engine &operator=(const Engine &) = delete;
    Engine(Engine &&) = delete;
    Engine &operator=(Engine &&) = delete;

    void start();
    // Ends the loop, then stops the source.
    void stop();

    // Takes effect on the next pass.
    void setSwitches(Switches switches);
    // The whole transcript, one line per line, cut to its last chars characters.
    QString fullTranscript(qsizetype chars) const;
    // The last lines lines, cut to their last chars characters.
    QString recentTranscript(qsizetype chars, qsizetype lines = 60) const;
    QString currentSummary() const;
    // Share of the text's letters that are in the lecture language; 0 without letters.
    double ratio(const QString &text) const;
    const Config &config() const;

private:
    void run(std::stop_token stop);

    std::shared_ptr<EngineState> state_;
    std::unique_ptr<CaptionSource> source_;
    std::shared_ptr<CallGate> gate_;
    bool started_ = false;
    // Written by the loop thread; read after it has been joined.
    bool sourceStopped_ = false;
    std::jthread loop_;
};
