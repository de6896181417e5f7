#include "ai/ChatTask.h"
#include "ai/ClaudeProvider.h"

#include "EventLoop.h"
#include "VendorTest.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonArray>
#include <QThread>

using namespace std::chrono_literals;

namespace {

// The reply echoes the text of the request's last message.
TestServer::Response echo(const TestServer::Request &request)
{
    const QJsonObject body = QJsonDocument::fromJson(request.body).object();
    const QString text = body.value(u"messages").toArray().last().toObject().value(u"content").toString();
    const QJsonObject reply{{QStringLiteral("content"),
                             QJsonArray{QJsonObject{{QStringLiteral("type"), QStringLiteral("text")},
                                                    {QStringLiteral("text"), text}}}}};
    return TestServer::Response::json(QJsonDocument(reply).toJson());
}

std::shared_ptr<const AIProvider> claude()
{
    return std::make_shared<ClaudeProvider>(ClaudeProvider::Settings{
        .key = QStringLiteral("k"), .model = QStringLiteral("claude-opus-5-5"), .effort = QStringLiteral("low")});
}

} // namespace

TEST_F(VendorTest, TwentyChatsRunAtOnceOnOneClientAndAnswerOnTheMainThread)
{
    constexpr int count = 20;
    // No answer leaves before all twenty requests are in, so this passes only if they overlap.
    server.setHandler([this](const TestServer::Request &request) {
        return server.waitForRequests(count, 10s) ? echo(request) : TestServer::Response::json({}, 500);
    });
    const auto provider = claude();
    QObject context;
    QHash<QString, QString> replies;
    bool offMainThread = false;
    for (int i = 0; i < count; ++i) {
        const QString question = QStringLiteral("question %1").arg(i);
        ChatTask::start(provider, QStringLiteral("S"), {user(question)}, &context,
                        [&, question](const std::optional<QString> &reply) {
                            offMainThread |= QThread::currentThread() != qApp->thread();
                            replies.insert(question, reply.value_or(QStringLiteral("absent")));
                        });
    }
    ASSERT_TRUE(runEventsUntil([&] { return replies.size() == count; }));
    EXPECT_FALSE(offMainThread);
    for (auto it = replies.cbegin(); it != replies.cend(); ++it)
        EXPECT_EQ(it.value(), it.key());
}

TEST_F(VendorTest, AReplyForAContextThatIsGoneIsDropped)
{
    TestServer::Response slow = TestServer::Response::json(R"JSON({"content": []})JSON");
    slow.delay = 200ms;
    server.enqueue(slow);
    auto context = std::make_unique<QObject>();
    bool called = false;
    const QFuture<std::optional<QString>> done = ChatTask::start(claude(), QStringLiteral("S"), {user(QStringLiteral("Q"))}, context.get(),
                                               [&](const std::optional<QString> &) { called = true; });
    ASSERT_TRUE(server.waitForRequests(1));
    context.reset();
    runEventsUntil([&] { return done.isFinished(); }, 3s);
    ASSERT_TRUE(done.isFinished());
    EXPECT_EQ(done.result(), QString());
    runEventsFor(50ms);
    EXPECT_FALSE(called);
}
