#include "text/Schedule.h"

#include <QTimer>

namespace Text {

Schedule mainThreadSchedule()
{
    return [](std::chrono::milliseconds delay, std::function<void()> task) {
        QTimer::singleShot(delay, std::move(task));
    };
}

} // namespace Text
