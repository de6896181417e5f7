#pragma once

// What the engine's loop makes of the new text: the end of the class, questions to the class and
// notices about exams and dates, and when a model is asked for answers, notices, events, the
// running summary and vocabulary. Owned by the loop and used on its thread only; the model calls
// themselves run as tasks (ModelCalls), so nothing here waits for a model.

#include "engine/Batch.h"
#include "engine/EngineState.h"

#include <QSet>
#include <QStringList>

#include <atomic>
#include <memory>
#include <optional>

class Triggers final
{
public:
    explicit Triggers(std::shared_ptr<EngineState> state);

    // A changed draft: a question in it joins the question batch.
    void draftChanged(const QString &draft);
    // The accepted lines of a pass. Only when publish holds do candidates join the batches;
    // their keys are remembered either way.
    void examine(const QStringList &lines, bool publish);
    // Sends the question and notice batches that are ready, emptying those switched off. Also on
    // a pass without lines, so an answer comes while the room is silent after a question and a
    // notice said last is not left waiting for the teacher's next line.
    void sendReadyCards();
    // Sends the summary and vocabulary calls that are due; on a pass with accepted lines only,
    // so their cadence follows the lines.
    void sendDue();

    using Duration = Text::Clock::Duration;

    struct BatchTiming
    {
        Duration settle;   // since the newest sentence
        Duration maxWait;  // since the first
    };

private:
    // The pace of the running summary or of the vocabulary: a call after enough new lines, or
    // after some lines once the wait is over.
    struct Cadence
    {
        qsizetype enough;
        qsizetype some;
        Duration wait;
        qsizetype chars;  // of the new lines that go into the prompt
        std::atomic<bool> &busy;
        qsizetype count = 0;  // transcript length at the last call
        Duration time{};      // moment of the last call
    };

    // A sentence, trimmed and with "？" made "?".
    void consider(const QString &sentence, bool publish);
    // Asks for a card of the kind when the batch is ready; gives the sentences it sent.
    std::optional<QStringList> sendCards(Batch &batch, const BatchTiming &timing, const QString &kind,
                                         const QString &prompt);
    void sendSummary(qsizetype lineCount, bool on);
    void sendVocabulary(qsizetype lineCount, bool on);
    // The new lines when a call is due (the cadence then counts from now), else nothing.
    std::optional<QString> due(Cadence &cadence, qsizetype lineCount, bool on);
    // The template filled with the variables and the lecture and answer languages.
    QString filled(const QString &prompt, Prompts::Variables variables) const;
    Duration now() const;

    std::shared_ptr<EngineState> state_;
    QSet<QString> askedKeys_;
    QSet<QString> noticeKeys_;
    Batch questions_;
    Batch notices_;
    Cadence summary_;
    Cadence vocabulary_;
    bool ended_ = false;
};
