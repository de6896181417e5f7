#include "text/Clock.h"

#include <condition_variable>
#include <mutex>

namespace Text {

Clock::Duration SystemClock::elapsed() const
{
    return std::chrono::duration_cast<Duration>(std::chrono::steady_clock::now().time_since_epoch());
}

QDateTime SystemClock::now() const
{
    return QDateTime::currentDateTimeUtc();
}

bool SystemClock::sleep(Duration duration, std::stop_token stop)
{
    // The waits share nothing; a local mutex serves the condition variable.
    std::mutex mutex;
    std::condition_variable_any wake;
    std::unique_lock lock(mutex);
    wake.wait_for(lock, stop, duration, [] { return false; });
    return !stop.stop_requested();
}

} // namespace Text
