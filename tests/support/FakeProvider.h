#pragma once

// A chat provider for tests: records every call (system text and turns) and answers as scripted,
// queued replies first, then the handler. While held, every call blocks until released, so a
// test can add work while a call is known to be running. Safe to call from any thread.

#include "ai/AIProvider.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

class FakeProvider final : public AIProvider
{
public:
    struct Call
    {
        QString system;
        QList<Turn> turns;

        // The content of the last turn: the prompt of a one-turn call.
        QString prompt() const { return turns.isEmpty() ? QString() : turns.last().content; }
    };

    using Handler = std::function<std::optional<QString>(const Call &)>;

    FakeProvider() = default;

    // Answers the next call with this reply (absent = a refusal), in the order queued.
    void enqueue(std::optional<QString> reply);
    // Answers every call the queue does not; by default an empty reply.
    void setHandler(Handler handler);
    void hold();
    void release();

    QList<Call> calls() const;
    // The calls whose prompt contains the text.
    QList<Call> callsContaining(const QString &text) const;
    // Waits (really) until at least count calls have arrived; false on time-out.
    bool waitForCalls(int count, std::chrono::milliseconds timeout = std::chrono::seconds(10)) const;

    QString displayName() const override { return QStringLiteral("Fake"); }
    int contextChars() const override { return 6000; }
    std::optional<QString> chat(const QString &system, const QList<Turn> &turns) const override;

private:
    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    mutable QList<Call> calls_;
    mutable std::deque<std::optional<QString>> queue_;
    Handler handler_;
    bool held_ = false;
};
