#pragma once

// What an engine shares between its owner, its loop thread and its model-call tasks: the fixed
// setup, the callbacks, and the transcript, summary, shown cards, switches, known terms and seen
// events behind the one lock. Tasks hold it by shared pointer, so a model call that answers after
// its engine is gone still finds what it needs. Every operation is safe from any thread; none
// holds the lock while calling out.

#include "ai/AIProvider.h"
#include "engine/EngineCallbacks.h"
#include "engine/LectureScript.h"
#include "engine/Prompts.h"
#include "engine/Switches.h"
#include "engine/VocabularyTerm.h"
#include "settings/Config.h"
#include "text/Clock.h"

#include <QHash>
#include <QSet>
#include <QStringList>

#include <atomic>
#include <memory>
#include <mutex>

class EngineState final
{
public:
    EngineState(Config config, std::shared_ptr<const AIProvider> provider,
                std::shared_ptr<const AIProvider> fast, std::shared_ptr<Text::Clock> clock);

    const Config config;
    // The main provider: it only sets the size of the context window.
    const std::shared_ptr<const AIProvider> provider;
    // The provider of every live model call: the fast one given, else the main one; may be none.
    const std::shared_ptr<const AIProvider> fast;
    const std::shared_ptr<Text::Clock> clock;
    const LectureScript script;
    const Text::Clock::Duration started;
    const QString systemPrompt;
    // The lecture and answer language ids, merged into every live prompt but the events one.
    const Prompts::Variables languages;
    // Set by the engine before its loop starts; read-only from then on.
    EngineCallbacks callbacks;
    // A summary / vocabulary call is running; at most one of each is in flight.
    std::atomic<bool> summaryBusy{false};
    std::atomic<bool> vocabularyBusy{false};

    void append(const QStringList &lines);
    qsizetype lineCount() const;
    // The lines from index on, joined with "\n", cut to their last chars characters.
    QString linesFrom(qsizetype index, qsizetype chars) const;
    QString fullTranscript(qsizetype chars) const;
    QString recentTranscript(qsizetype chars, qsizetype lines) const;
    // The last 40 lines, cut to the main provider's context budget (6000 without one).
    QString contextWindow() const;

    QString summary() const;
    void setSummary(const QString &summary);
    Switches switches() const;
    void setSwitches(Switches switches);

    // The cards of the kind shown so far, for the model not to repeat them.
    QString shown(const QString &kind) const;
    void remember(const QString &kind, const QString &text);

    // The last count known terms joined with ", "; empty when there are none.
    QString knownTerms(qsizetype count) const;
    // Keeps and returns the terms not yet known, letter case aside.
    QList<VocabularyTerm> addFreshTerms(const QList<VocabularyTerm> &terms);
    // True the first time an event key is seen.
    bool markSeen(const QString &eventKey);

private:
    QStringList lines() const;

    mutable std::mutex lock_;
    QStringList transcript_;
    QString summary_;
    QHash<QString, QStringList> recent_;
    Switches switches_;
    QStringList knownTerms_;
    QSet<QString> knownLowered_;
    QSet<QString> seenEvents_;
};
