#include "EventLoop.h"

#include <QCoreApplication>
#include <QElapsedTimer>

bool runEventsUntil(const std::function<bool()> &done, std::chrono::milliseconds timeout)
{
    QElapsedTimer timer;
    timer.start();
    while (!done()) {
        if (timer.elapsed() > timeout.count())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    return true;
}

void runEventsFor(std::chrono::milliseconds duration)
{
    runEventsUntil([] { return false; }, duration);
}
