#include "ManualClock.h"

#include <QTimeZone>

ManualClock::ManualClock(QDateTime start)
    : start_(std::move(start))
{
}

Text::Clock::Duration ManualClock::elapsed() const
{
    std::scoped_lock lock(mutex_);
    return elapsed_;
}

QDateTime ManualClock::now() const
{
    return start_.addMSecs(elapsed().count());
}

bool ManualClock::sleep(Duration duration, std::stop_token stop)
{
    std::unique_lock lock(mutex_);
    const Duration deadline = elapsed_ + duration;
    ++sleepers_;
    changed_.notify_all();
    changed_.wait(lock, stop, [&] { return elapsed_ >= deadline; });
    --sleepers_;
    changed_.notify_all();
    return !stop.stop_requested();
}

void ManualClock::advance(Duration duration)
{
    {
        std::scoped_lock lock(mutex_);
        elapsed_ += duration;
    }
    changed_.notify_all();
}

int ManualClock::sleepers() const
{
    std::scoped_lock lock(mutex_);
    return sleepers_;
}

bool ManualClock::waitForSleepers(int count, std::chrono::milliseconds timeout) const
{
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, timeout, [&] { return sleepers_ >= count; });
}
