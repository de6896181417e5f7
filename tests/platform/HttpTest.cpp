#include "platform/Http.h"

#include "TestServer.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

// Headers and JSON bodies are checked through the chat clients.
TEST(Http, BodiesArriveAsGivenAndRedirectsOtherProtocolsAndSchemesAreRefused)
{
    TestServer target;
    TestServer server;
    TestServer::Response moved = TestServer::Response::json({}, 301);
    moved.headers.insert("Location", target.url().toUtf8());
    server.enqueue(moved);
    TestServer::Response ssh = TestServer::Response::json("SSH-2.0-OpenSSH_9.2\r\nnot a web server\r\n\r\n");
    ssh.raw = true;
    server.enqueue(ssh);
    const QUrl url(server.url());
    // Following the redirect would carry the key to another host.
    EXPECT_EQ(Http::postJSON(url, {{u"x-api-key"_s, u"k"_s}}, {}).value().status, 301);
    EXPECT_TRUE(target.requests().isEmpty());
    EXPECT_FALSE(Http::send({.url = url}));
    EXPECT_FALSE(Http::send({.method = "GET", .url = QUrl(u"file:///etc/hostname"_s)}));
    EXPECT_FALSE(Http::send({.url = QUrl()}));
    // A pasted key with a line break must not add a header of its own.
    EXPECT_FALSE(Http::send({.url = url, .headers = {{u"x-api-key"_s, u"k\r\nx-admin: 1"_s}}}));
    EXPECT_FALSE(Http::send({.url = url, .headers = {{u"x-api-key"_s, u"k\n"_s}}}));

    const QByteArray upload = QByteArray("\0\x01\xff\r\n", 5).repeated(600'000);
    Http::send({.url = url, .body = upload});
    Http::send({.method = "GET", .url = url});
    const QList<TestServer::Request> requests = server.requests();
    ASSERT_EQ(requests.size(), 4);
    EXPECT_EQ(requests[2].body, upload);
    EXPECT_FALSE(requests[2].headers.contains("expect"));
    EXPECT_EQ(requests[3].method, "GET");
    EXPECT_TRUE(requests[3].body.isEmpty());
}
