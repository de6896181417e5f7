#include "platform/QuitSignals.h"

#include "EventLoop.h"

#include <QCoreApplication>
#include <QThread>

#include <gtest/gtest.h>

#include <csignal>

TEST(QuitSignals, TermAndIntArriveOnTheMainThreadAsCalls)
{
    QList<int> heard;
    bool onMainThread = true;
    {
        QuitSignals signals([&](int signal) {
            onMainThread = onMainThread && QThread::currentThread() == QCoreApplication::instance()->thread();
            heard << signal;
        });
        std::raise(SIGTERM);
        std::raise(SIGINT);
        ASSERT_TRUE(runEventsUntil([&] { return heard.size() == 2; }));
    }
    EXPECT_EQ(heard, QList<int>({SIGTERM, SIGINT}));
    EXPECT_TRUE(onMainThread);
    struct sigaction current = {};
    sigaction(SIGTERM, nullptr, &current);
    EXPECT_EQ(current.sa_handler, SIG_DFL) << "the default handler is back";
}
