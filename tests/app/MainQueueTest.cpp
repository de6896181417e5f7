#include "app/MainQueue.h"

#include "EventLoop.h"

#include <QString>
#include <QThread>

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

using namespace std::chrono_literals;

TEST(MainQueueTest, CallsFromOtherThreadsRunOnTheMainThreadUntilExpiredOrGone)
{
    QStringList ran;
    bool onMainThread = true;
    auto queue = std::make_unique<MainQueue>();
    const auto record = [&](const QString &text, int n) {
        onMainThread = onMainThread && QThread::currentThread() == QCoreApplication::instance()->thread();
        ran << text + QString::number(n);
    };
    const auto first = queue->bind<const QString &, int>(record);
    const auto fromWorker = [](const std::function<void(const QString &, int)> &fn, const QString &text) {
        std::thread([&] { fn(text, 1); }).join();
    };

    fromWorker(first, QStringLiteral("a"));
    ASSERT_TRUE(runEventsUntil([&] { return ran.size() == 1; }));
    EXPECT_TRUE(onMainThread);

    // Queued before the new generation began: dropped; bound after it: runs.
    fromWorker(first, QStringLiteral("late"));
    queue->expire();
    const auto second = queue->bind<const QString &, int>(record);
    fromWorker(second, QStringLiteral("b"));
    fromWorker(first, QStringLiteral("later"));
    ASSERT_TRUE(runEventsUntil([&] { return ran.size() == 2; }));

    // A queue that is gone drops what was queued and what comes after.
    fromWorker(second, QStringLiteral("gone"));
    queue.reset();
    fromWorker(second, QStringLiteral("after"));
    runEventsFor(50ms);
    EXPECT_EQ(ran, QStringList({QStringLiteral("a1"), QStringLiteral("b1")}));
}
