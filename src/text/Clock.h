#pragma once

// The time every timed rule reads: monotonic time for intervals, wall time for stamps, and the
// sleeps of worker loops. Production code uses SystemClock; tests drive a manual clock by hand,
// so no test waits for the seconds a rule speaks of.
//
// Implementations are safe to call from any thread.

#include <QDateTime>

#include <chrono>
#include <stop_token>

namespace Text {

class Clock
{
public:
    using Duration = std::chrono::milliseconds;

    Clock() = default;
    virtual ~Clock() = default;
    Clock(const Clock &) = delete;
    Clock &operator=(const Clock &) = delete;
    Clock(Clock &&) = delete;
    Clock &operator=(Clock &&) = delete;

    // Monotonic time since an arbitrary origin.
    virtual Duration elapsed() const = 0;
    // Wall time, UTC.
    virtual QDateTime now() const = 0;
    // Waits for the duration or until stop is requested; false when stopped.
    virtual bool sleep(Duration duration, std::stop_token stop) = 0;
};

class SystemClock final : public Clock
{
public:
    Duration elapsed() const override;
    QDateTime now() const override;
    bool sleep(Duration duration, std::stop_token stop) override;
};

} // namespace Text
