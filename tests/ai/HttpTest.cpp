#include "ai/Http.h"

#include "TestServer.h"

#include <QElapsedTimer>
#include <QJsonArray>

#include <gtest/gtest.h>

#include <thread>
#include <vector>

using namespace std::chrono_literals;

namespace {

QUrl at(const TestServer &server, const QString &path)
{
    return QUrl(server.url() + path);
}

// A port on 127.0.0.1 where nothing listens any more.
int closedPort()
{
    const TestServer server;
    return server.port();
}

} // namespace

TEST(Http, PostsJsonWithHeadersAndReadsTheAnswer)
{
    TestServer server;
    server.enqueue(TestServer::Response::json(R"JSON({"ok": true, "text": "你好"})JSON"));
    const QJsonObject body{{QStringLiteral("model"), QStringLiteral("m")}, {QStringLiteral("max"), 4000},
                           {QStringLiteral("list"), QJsonArray{1, QStringLiteral("二")}}};
    const auto reply = Http::postJSON(at(server, QStringLiteral("/v1/x")),
                                      {{QStringLiteral("x-api-key"), QStringLiteral("sk-1")},
                                       {QStringLiteral("anthropic-version"), QStringLiteral("2023-06-01")}},
                                      body);
    ASSERT_TRUE(reply);
    EXPECT_EQ(reply->status, 200);
    EXPECT_EQ(reply->json.value(u"text").toString(), QStringLiteral("你好"));

    ASSERT_EQ(server.requests().size(), 1);
    const TestServer::Request request = server.requests().first();
    EXPECT_EQ(request.method, "POST");
    EXPECT_EQ(request.path, "/v1/x");
    EXPECT_EQ(request.header("content-type"), "application/json");
    EXPECT_EQ(request.header("x-api-key"), "sk-1");
    EXPECT_EQ(request.header("anthropic-version"), "2023-06-01");
    EXPECT_FALSE(request.headers.contains("expect"));
    EXPECT_EQ(request.body, R"JSON({"list":[1,"二"],"max":4000,"model":"m"})JSON");
}

TEST(Http, AnyStatusIsAnAnswerAndOnlyAnObjectIsJson)
{
    TestServer server;
    TestServer::Response page = TestServer::Response::json("<html><body>Bad gateway</body></html>", 502);
    page.contentType = "text/html";
    server.enqueue(page);
    server.enqueue(TestServer::Response::json(R"JSON({"error": {"message": "slow down"}})JSON", 429));
    server.enqueue(TestServer::Response::json(R"JSON([{"a": 1}])JSON"));
    server.enqueue(TestServer::Response::json(""));
    server.enqueue(TestServer::Response::json(R"JSON({"cut": )JSON"));

    const QUrl url = at(server, QStringLiteral("/"));
    const auto htmlPage = Http::postJSON(url, {}, {});
    ASSERT_TRUE(htmlPage);
    EXPECT_EQ(htmlPage->status, 502);
    EXPECT_TRUE(htmlPage->json.isEmpty());

    const auto limited = Http::postJSON(url, {}, {});
    ASSERT_TRUE(limited);
    EXPECT_EQ(limited->status, 429);
    EXPECT_EQ(limited->json.value(u"error").toObject().value(u"message").toString(), QStringLiteral("slow down"));

    for (int i = 0; i < 3; ++i) {  // a top-level array, an empty body, a cut-off object
        const auto reply = Http::postJSON(url, {}, {});
        ASSERT_TRUE(reply);
        EXPECT_EQ(reply->status, 200);
        EXPECT_TRUE(reply->json.isEmpty());
    }
    EXPECT_EQ(server.requests().first().body, "{}");
}

TEST(Http, GeneralRequestsCarryRawBodiesAndOtherMethods)
{
    TestServer server;
    server.setHandler([](const TestServer::Request &request) {
        return TestServer::Response::json(request.method + ' ' + QByteArray::number(request.body.size()));
    });

    const auto get = Http::send({.method = "GET", .url = at(server, QStringLiteral("/languages?x=1"))});
    ASSERT_TRUE(get);
    EXPECT_EQ(get->status, 200);
    EXPECT_EQ(get->body, "GET 0");

    // A multipart upload: binary bytes (NUL included) of a few megabytes arrive unchanged.
    QByteArray upload = "--B\r\nContent-Disposition: form-data; name=\"file\"\r\n\r\n";
    for (int i = 0; i < 3'000'000; ++i)
        upload.append(char(i % 251));
    upload.append("\r\n--B--\r\n");
    const auto post = Http::send({.url = at(server, QStringLiteral("/upload")),
                                  .headers = {{QStringLiteral("Content-Type"),
                                               QStringLiteral("multipart/form-data; boundary=B")},
                                              {QStringLiteral("Authorization"), QStringLiteral("Bearer k")}},
                                  .body = upload});
    ASSERT_TRUE(post);
    EXPECT_EQ(post->body, "POST " + QByteArray::number(upload.size()));

    const auto signout = Http::send({.url = at(server, QStringLiteral("/auth/signout"))});
    ASSERT_TRUE(signout);
    EXPECT_EQ(signout->body, "POST 0");

    const QList<TestServer::Request> requests = server.requests();
    ASSERT_EQ(requests.size(), 3);
    EXPECT_EQ(requests[0].path, "/languages?x=1");
    EXPECT_EQ(requests[1].body, upload);
    EXPECT_EQ(requests[1].header("content-type"), "multipart/form-data; boundary=B");
    EXPECT_EQ(requests[1].header("authorization"), "Bearer k");

    // A caller's own content type replaces the JSON one instead of doubling it.
    Http::postJSON(at(server, QStringLiteral("/")), {{QStringLiteral("content-type"), QStringLiteral("text/plain")}}, {});
    EXPECT_EQ(server.requests().last().header("content-type"), "text/plain");
}

TEST(Http, LargeAnswersArriveWholeAndOversizedOnesAreRefused)
{
    TestServer server;
    const QByteArray big(20'000'000, 'x');
    server.enqueue(TestServer::Response::json(big));
    server.enqueue(TestServer::Response::json(QByteArray(Http::maxResponseBytes + 1, 'y')));

    const auto whole = Http::send({.url = at(server, QStringLiteral("/"))});
    ASSERT_TRUE(whole);
    EXPECT_EQ(whole->body.size(), big.size());
    EXPECT_FALSE(Http::send({.url = at(server, QStringLiteral("/"))}));
}

TEST(Http, NoAnswerIsNoValue)
{
    // Nothing listening.
    QElapsedTimer timer;
    timer.start();
    EXPECT_FALSE(Http::postJSON(QUrl(QStringLiteral("http://127.0.0.1:%1/v1/messages").arg(closedPort())), {}, {}));

    // A server that takes the request and never answers: the time-out ends the wait.
    TestServer stalled;
    TestServer::Response stall;
    stall.stall = true;
    stalled.enqueue(stall);
    EXPECT_FALSE(Http::postJSON(at(stalled, QStringLiteral("/")), {}, {}, 300ms));
    EXPECT_EQ(stalled.requests().size(), 1);

    // Something that speaks another protocol.
    TestServer garbage;
    TestServer::Response ssh = TestServer::Response::json("SSH-2.0-OpenSSH_9.2\r\nnot a web server at all\r\n\r\n");
    ssh.raw = true;
    garbage.enqueue(ssh);
    EXPECT_FALSE(Http::send({.url = at(garbage, QStringLiteral("/"))}));

    // Schemes other than http and https are never fetched, and no URL at all is no answer.
    EXPECT_FALSE(Http::send({.method = "GET", .url = QUrl(QStringLiteral("file:///etc/hostname"))}));
    EXPECT_FALSE(Http::send({.url = QUrl()}));
    EXPECT_LT(timer.elapsed(), 5000);
}

TEST(Http, RedirectsAreAnswersNotFollowed)
{
    TestServer target;
    TestServer server;
    TestServer::Response moved = TestServer::Response::json({}, 301);
    moved.headers.insert("Location", target.url().toUtf8() + "/elsewhere");
    server.enqueue(moved);

    const auto reply = Http::postJSON(at(server, QStringLiteral("/")), {{QStringLiteral("x-api-key"), QStringLiteral("secret")}}, {});
    ASSERT_TRUE(reply);
    EXPECT_EQ(reply->status, 301);
    EXPECT_TRUE(target.requests().isEmpty());
}

TEST(Http, ManyRequestsRunAtOnce)
{
    TestServer server;
    constexpr int count = 20;
    // Every answer waits until all requests are in: this passes only if they run side by side.
    server.setHandler([&server](const TestServer::Request &request) {
        const bool together = server.waitForRequests(count, 10s);
        return TestServer::Response::json(together ? request.body : QByteArray("{}"));
    });
    std::vector<std::optional<Http::JsonReply>> replies(count);
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < count; ++i) {
            threads.emplace_back([&, i] {
                replies[size_t(i)] = Http::postJSON(at(server, QStringLiteral("/")), {}, {{QStringLiteral("n"), i}});
            });
        }
    }
    for (int i = 0; i < count; ++i) {
        ASSERT_TRUE(replies[size_t(i)]);
        EXPECT_EQ(replies[size_t(i)]->json.value(u"n").toInt(-1), i);
    }
}
