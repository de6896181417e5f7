#pragma once

// Blocking HTTP over libcurl for everything that talks to a server: the chat vendors, the relay,
// cloud speech, a local translation server.
//
// send() and postJSON() hold the calling thread until the whole answer is in or the time-out has
// passed, so they run only inside worker tasks (taskPool() is meant for those), never on the main
// or the audio thread. Any number of requests may run at once from any threads; each has its own
// connection and shares nothing. Nothing is retried. HTTPS checks certificates against the
// system's CA store; only http and https URLs are accepted, and redirects are not followed (a
// redirect would carry the API key headers to another host).

#include <QByteArray>
#include <QJsonObject>
#include <QMap>
#include <QString>
#include <QUrl>

#include <chrono>
#include <optional>

class QThreadPool;

namespace Http {

// Header name to value, sent in the map's order.
using Headers = QMap<QString, QString>;

inline constexpr std::chrono::milliseconds defaultTimeout = std::chrono::seconds(120);
// A bigger answer is abandoned and counts as no answer, so a broken server can't exhaust memory.
inline constexpr qsizetype maxResponseBytes = 64 * 1024 * 1024;

struct Request
{
    QByteArray method = "POST";  // "GET" sends no body
    QUrl url;
    Headers headers{};
    QByteArray body{};  // sent byte for byte; set "Content-Type" in headers to say what it is
    std::chrono::milliseconds timeout = defaultTimeout;  // the whole exchange, connect to last byte
};

struct Response
{
    int status = 0;
    QByteArray body;
};

// No value when no HTTP answer came: no connection, time-out, a TLS failure, an answer that isn't
// HTTP, or one larger than maxResponseBytes; also when a header name or value holds a control
// character (nothing is sent then). Any status, 200 or not, is an answer.
std::optional<Response> send(const Request &request);

struct JsonReply
{
    int status = 0;
    QJsonObject json;  // the answer's top-level object; empty when the body is anything else
};

// POSTs the object compactly serialised as "application/json". A non-JSON error page still gives
// its status.
std::optional<JsonReply> postJSON(const QUrl &url, const Headers &headers, const QJsonObject &body,
                                  std::chrono::milliseconds timeout = defaultTimeout);

// The pool for tasks that wait on the network. It holds many more threads than there are cores,
// since its tasks wait rather than compute; the global pool would be starved by them. Lives until
// the process ends, so a request still running at exit never holds up quitting.
QThreadPool &taskPool();

} // namespace Http
