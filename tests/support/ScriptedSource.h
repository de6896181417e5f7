#pragma once

// A caption source the test writes: finished lines handed out once (as a sound source does) or a
// caption window that shows the same text on every read, a draft, problems. It counts the reads,
// so a test can tell when the engine's loop has made a pass. Test methods are safe from any
// thread; the CaptionSource side is called by the engine's loop.

#include "captions/CaptionSource.h"

#include <QString>
#include <QStringList>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>

class ScriptedSource final : public CaptionSource
{
public:
    // Lines the next read hands out, once.
    void feed(const QStringList &lines);
    // Text every read returns from now on, as another application's caption window would.
    void show(const QString &text);
    void setDraft(const QString &draft);
    void setProblem(std::optional<QString> problem);
    void setStartProblem(std::optional<QString> problem);

    int reads() const;
    int starts() const;
    int stops() const;
    // The thread that last called stop().
    std::thread::id stopThread() const;
    // Waits (really, at most timeout) until there have been count reads.
    bool waitForReads(int count, std::chrono::milliseconds timeout = std::chrono::seconds(5)) const;

    std::optional<QString> start() override;
    QString read() override;
    QString draft() override;
    void stop() override;
    std::optional<QString> problem() override;

private:
    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    QStringList pending_;
    QString shown_;
    QString draft_;
    std::optional<QString> problem_;
    std::optional<QString> startProblem_;
    int reads_ = 0;
    int starts_ = 0;
    int stops_ = 0;
    std::thread::id stopThread_;
};
