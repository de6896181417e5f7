#include "ai/ChatTask.h"

#include "EventLoop.h"
#include "VendorTest.h"

#include <QCoreApplication>
#include <QThread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

TEST_F(VendorTest, TwentyChatsRunAtOnceAndAnswerOnTheMainThreadUnlessTheContextIsGone)
{
    constexpr int count = 20;
    // Each reply echoes the question, and none leaves before all twenty requests are in.
    server.setHandler([this](const TestServer::Request &request) {
        const QString question = object(request.body).value(u"messages")[0][u"content"].toString();
        const QByteArray reply = R"({"content": [{"type": "text", "text": ")" + question.toUtf8() + "\"}]}";
        return TestServer::Response::json(reply, server.waitForRequests(count) ? 200 : 500);
    });
    const std::shared_ptr<const AIProvider> claude = std::move(vendors().front());
    QObject context;
    QHash<QString, QString> replies;
    for (int i = 0; i < count; ++i) {
        const QString question = u"question %1"_s.arg(i);
        ChatTask::start(claude, u"S"_s, {user(question)}, &context,
                        [&, question](const std::optional<QString> &reply) {
                            const bool onMain = QThread::currentThread() == qApp->thread();
                            replies.insert(question, onMain ? reply.value_or(u"absent"_s) : u"off main"_s);
                        });
    }
    ASSERT_TRUE(runEventsUntil([&] { return replies.size() == count; }));
    for (auto it = replies.cbegin(); it != replies.cend(); ++it)
        EXPECT_EQ(it.value(), it.key());

    // A reply for a context that is gone by then is dropped.
    TestServer::Response slow = TestServer::Response::json(R"JSON({"content": []})JSON");
    slow.delay = 200ms;
    server.enqueue(slow);
    auto gone = std::make_unique<QObject>();
    bool called = false;
    const auto done = ChatTask::start(claude, {}, {user({})}, gone.get(),
                                      [&](const std::optional<QString> &) { called = true; });
    ASSERT_TRUE(server.waitForRequests(count + 1));
    gone.reset();
    ASSERT_TRUE(runEventsUntil([&] { return done.isFinished(); }, 3s));
    EXPECT_EQ(done.result(), QString());
    runEventsFor(50ms);
    EXPECT_FALSE(called);
}
