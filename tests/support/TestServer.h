#pragma once

// A real HTTP/1.1 server on 127.0.0.1 and a free port, for tests that talk to a vendor, the relay
// or a local service. It records every request byte for byte (multipart bodies included) and
// answers with scripted responses: queued ones first, then the handler. A stalled response holds
// the connection open until the server is destroyed, for time-out tests.

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QString>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

class TestServer final
{
public:
    struct Request
    {
        QByteArray method;
        QByteArray path;                   // with the query, as sent
        QMap<QByteArray, QByteArray> headers; // names in lower case
        QByteArray body;                   // de-chunked when sent chunked

        QByteArray header(const QByteArray &name) const { return headers.value(name.toLower()); }
    };

    struct Response
    {
        int status = 200;
        QByteArray body;
        QMap<QByteArray, QByteArray> headers;
        std::chrono::milliseconds delay{0};
        bool stall = false;  // never answer; the connection stays open
        bool raw = false;    // the body is the whole answer: no status line, no headers

        static Response json(const QByteArray &body, int status = 200)
        {
            Response response;
            response.status = status;
            response.body = body;
            return response;
        }
    };

    using Handler = std::function<Response(const Request &)>;

    TestServer();
    ~TestServer();
    TestServer(const TestServer &) = delete;
    TestServer &operator=(const TestServer &) = delete;
    TestServer(TestServer &&) = delete;
    TestServer &operator=(TestServer &&) = delete;

    QString url() const;

    // Answers the next request with this response (in the order queued).
    void enqueue(Response response);
    // Answers every request the queue does not; by default 404 with an empty body.
    void setHandler(Handler handler);

    QList<Request> requests() const;
    // Waits (really) until at least count requests arrived; false on time-out.
    bool waitForRequests(int count, std::chrono::milliseconds timeout = std::chrono::seconds(10)) const;

private:
    void acceptLoop();
    void serve(int socket);
    Response answerFor(const Request &request);

    int listener_ = -1;
    int port_ = 0;
    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    bool stopping_ = false;
    std::deque<Response> queue_;
    Handler handler_;
    QList<Request> requests_;
    std::vector<int> connections_;
    std::vector<std::thread> workers_;
    std::thread acceptor_;
};
