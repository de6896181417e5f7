#pragma once

// A clock the test drives by hand. sleep() blocks until the test has advanced the clock past the
// sleeper's deadline (or stop is requested), so a worker loop runs exactly as far as the test
// lets time go.

#include "text/Clock.h"

#include <QTimeZone>

#include <condition_variable>
#include <mutex>

class ManualClock final : public Text::Clock
{
public:
    explicit ManualClock(QDateTime start = QDateTime(QDate(2026, 3, 2), QTime(9, 0), Qt::UTC));

    Duration elapsed() const override;
    QDateTime now() const override;
    bool sleep(Duration duration, std::stop_token stop) override;

    void advance(Duration duration);
    // Number of threads now blocked in sleep().
    int sleepers() const;
    // Waits (really, at most timeout) until count threads sleep; false on time-out.
    bool waitForSleepers(int count, std::chrono::milliseconds timeout = std::chrono::seconds(5)) const;

private:
    QDateTime start_;
    mutable std::mutex mutex_;
    mutable std::condition_variable_any changed_;
    Duration elapsed_{0};
    int sleepers_ = 0;
};
