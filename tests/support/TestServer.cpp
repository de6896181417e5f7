#include "TestServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>

namespace {

// Reads until the delimiter is in buffer; false when the peer closed first.
bool readUntil(int socket, QByteArray &buffer, const QByteArray &delimiter)
{
    char chunk[65536];
    while (!buffer.contains(delimiter)) {
        const ssize_t n = ::recv(socket, chunk, sizeof chunk, 0);
        if (n <= 0)
            return false;
        buffer.append(chunk, n);
    }
    return true;
}

bool readAtLeast(int socket, QByteArray &buffer, qsizetype size)
{
    char chunk[65536];
    while (buffer.size() < size) {
        const ssize_t n = ::recv(socket, chunk, sizeof chunk, 0);
        if (n <= 0)
            return false;
        buffer.append(chunk, n);
    }
    return true;
}

bool readChunked(int socket, QByteArray &buffer, QByteArray &body)
{
    for (;;) {
        if (!readUntil(socket, buffer, "\r\n"))
            return false;
        const qsizetype lineEnd = buffer.indexOf("\r\n");
        const qsizetype size = buffer.left(lineEnd).split(';').first().trimmed().toLongLong(nullptr, 16);
        buffer.remove(0, lineEnd + 2);
        if (!readAtLeast(socket, buffer, size + 2))
            return false;
        body.append(buffer.left(size));
        buffer.remove(0, size + 2);
        if (size == 0)
            return true;
    }
}

void sendAll(int socket, const QByteArray &data)
{
    qsizetype sent = 0;
    while (sent < data.size()) {
        const ssize_t n = ::send(socket, data.constData() + sent, size_t(data.size() - sent), MSG_NOSIGNAL);
        if (n <= 0)
            return;
        sent += n;
    }
}

QByteArray reason(int status)
{
    switch (status) {
    case 200: return "OK";
    case 400: return "Bad Request";
    case 401: return "Unauthorized";
    case 403: return "Forbidden";
    case 404: return "Not Found";
    case 429: return "Too Many Requests";
    case 500: return "Internal Server Error";
    default: return "Status";
    }
}

} // namespace

TestServer::TestServer()
{
    listener_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int yes = 1;
    ::setsockopt(listener_, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = 0;
    ::bind(listener_, reinterpret_cast<sockaddr *>(&address), sizeof address);
    ::listen(listener_, 64);
    socklen_t length = sizeof address;
    ::getsockname(listener_, reinterpret_cast<sockaddr *>(&address), &length);
    port_ = ntohs(address.sin_port);
    handler_ = [](const Request &) { return Response::json({}, 404); };
    acceptor_ = std::thread([this] { acceptLoop(); });
}

TestServer::~TestServer()
{
    {
        std::scoped_lock lock(mutex_);
        stopping_ = true;
        for (int connection : connections_)
            ::shutdown(connection, SHUT_RDWR);
    }
    changed_.notify_all();
    ::shutdown(listener_, SHUT_RDWR);
    acceptor_.join();
    for (std::thread &worker : workers_)
        worker.join();
    ::close(listener_);
}

QString TestServer::url() const
{
    return QStringLiteral("http://127.0.0.1:%1").arg(port_);
}

void TestServer::enqueue(Response response)
{
    std::scoped_lock lock(mutex_);
    queue_.push_back(std::move(response));
}

void TestServer::setHandler(Handler handler)
{
    std::scoped_lock lock(mutex_);
    handler_ = std::move(handler);
}

QList<TestServer::Request> TestServer::requests() const
{
    std::scoped_lock lock(mutex_);
    return requests_;
}

bool TestServer::waitForRequests(int count, std::chrono::milliseconds timeout) const
{
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, timeout, [&] { return requests_.size() >= count; });
}

void TestServer::acceptLoop()
{
    for (;;) {
        pollfd waiting{listener_, POLLIN, 0};
        ::poll(&waiting, 1, 100);
        std::scoped_lock lock(mutex_);
        if (stopping_)
            return;
        if (!(waiting.revents & POLLIN))
            continue;
        const int connection = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        if (connection < 0)
            continue;
        connections_.push_back(connection);
        workers_.emplace_back([this, connection] { serve(connection); });
    }
}

void TestServer::serve(int socket)
{
    QByteArray buffer;
    if (readUntil(socket, buffer, "\r\n\r\n")) {
        const qsizetype headEnd = buffer.indexOf("\r\n\r\n");
        const QList<QByteArray> lines = buffer.left(headEnd).split('\n');
        buffer.remove(0, headEnd + 4);
        Request request;
        const QList<QByteArray> requestLine = lines.first().trimmed().split(' ');
        request.method = requestLine.value(0);
        request.path = requestLine.value(1);
        for (qsizetype i = 1; i < lines.size(); ++i) {
            const qsizetype colon = lines[i].indexOf(':');
            if (colon > 0)
                request.headers.insert(lines[i].left(colon).trimmed().toLower(), lines[i].mid(colon + 1).trimmed());
        }
        if (request.header("expect").toLower() == "100-continue")
            sendAll(socket, "HTTP/1.1 100 Continue\r\n\r\n");
        bool complete = true;
        if (request.header("transfer-encoding").toLower().contains("chunked")) {
            complete = readChunked(socket, buffer, request.body);
        } else {
            const qsizetype length = request.header("content-length").toLongLong();
            complete = readAtLeast(socket, buffer, length);
            request.body = buffer.left(length);
        }
        if (complete) {
            const Response response = answerFor(request);
            std::unique_lock lock(mutex_);
            changed_.wait_for(lock, response.delay, [this] { return stopping_; });
            if (response.stall)
                changed_.wait(lock, [this] { return stopping_; });
            if (!stopping_ && response.raw) {
                lock.unlock();
                sendAll(socket, response.body);
            } else if (!stopping_) {
                lock.unlock();
                QByteArray head = "HTTP/1.1 " + QByteArray::number(response.status) + ' ' + reason(response.status)
                    + "\r\nContent-Type: application/json"
                    + "\r\nContent-Length: " + QByteArray::number(response.body.size())
                    + "\r\nConnection: close\r\n";
                for (auto it = response.headers.cbegin(); it != response.headers.cend(); ++it)
                    head += it.key() + ": " + it.value() + "\r\n";
                sendAll(socket, head + "\r\n" + response.body);
            }
        }
    }
    ::shutdown(socket, SHUT_RDWR);
    std::scoped_lock lock(mutex_);
    std::erase(connections_, socket);
    ::close(socket);
}

TestServer::Response TestServer::answerFor(const Request &request)
{
    Handler handler;
    {
        std::scoped_lock lock(mutex_);
        requests_ << request;
        if (!queue_.empty()) {
            Response response = std::move(queue_.front());
            queue_.pop_front();
            changed_.notify_all();
            return response;
        }
        handler = handler_;
    }
    changed_.notify_all();
    return handler(request);
}
