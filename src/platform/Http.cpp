#include "platform/Http.h"

#include "text/Json.h"

#include <QJsonDocument>
#include <QLoggingCategory>
#include <QThreadPool>

#include <curl/curl.h>

#include <algorithm>
#include <memory>

Q_LOGGING_CATEGORY(lcHttp, "quillet.http")

namespace Http {

namespace {

void initialiseCurl()
{
    // curl_global_init is not thread-safe; a function-local static runs it exactly once.
    static const CURLcode result = curl_global_init(CURL_GLOBAL_DEFAULT);
    if (result != CURLE_OK)
        qCWarning(lcHttp) << "curl_global_init failed:" << curl_easy_strerror(result);
}

struct CurlDeleter
{
    void operator()(CURL *handle) const { curl_easy_cleanup(handle); }
    void operator()(curl_slist *list) const { curl_slist_free_all(list); }
};

using Handle = std::unique_ptr<CURL, CurlDeleter>;
using HeaderList = std::unique_ptr<curl_slist, CurlDeleter>;

size_t collect(char *data, size_t size, size_t count, void *target)
{
    auto *body = static_cast<QByteArray *>(target);
    const size_t length = size * count;
    if (body->size() + qsizetype(length) > maxResponseBytes)
        return 0;  // makes curl stop with a write error
    body->append(data, qsizetype(length));
    return length;
}

// A header line can't carry a line break or another control character: a pasted key with one
// would otherwise add headers of its own.
bool clean(const QString &text)
{
    return std::none_of(text.cbegin(), text.cend(), [](QChar c) { return c.unicode() < 0x20 || c.unicode() == 0x7f; });
}

std::optional<HeaderList> headerList(const Headers &headers)
{
    // An empty "Expect:" keeps curl from waiting for "100 Continue" before a large body.
    curl_slist *list = curl_slist_append(nullptr, "Expect:");
    HeaderList owned(list);
    for (auto it = headers.cbegin(); it != headers.cend(); ++it) {
        if (!clean(it.key()) || !clean(it.value())) {
            qCWarning(lcHttp).noquote() << "refused a header with a control character:" << it.key();
            return std::nullopt;
        }
        // "Name;" is curl's way of sending a header with an empty value; "Name:" would drop it.
        const QByteArray line = it.value().isEmpty() ? QByteArray(it.key().toUtf8() + ';')
                                                     : QByteArray(it.key().toUtf8() + ": " + it.value().toUtf8());
        curl_slist *longer = curl_slist_append(owned.get(), line.constData());
        if (!longer)
            return std::nullopt;
        owned.release();
        owned.reset(longer);
    }
    return owned;
}

// Every option must take: the http/https-only promise rests on CURLOPT_PROTOCOLS_STR.
template<typename Value>
bool set(CURL *handle, CURLoption option, Value value)
{
    return curl_easy_setopt(handle, option, value) == CURLE_OK;
}

bool setMethodAndBody(CURL *handle, const Request &request)
{
    if (request.method == "GET")
        return set(handle, CURLOPT_HTTPGET, 1L);
    return set(handle, CURLOPT_POSTFIELDSIZE_LARGE, curl_off_t(request.body.size()))
        && set(handle, CURLOPT_POSTFIELDS, request.body.constData())
        && (request.method == "POST" || set(handle, CURLOPT_CUSTOMREQUEST, request.method.constData()));
}

} // namespace

std::optional<Response> send(const Request &request)
{
    initialiseCurl();
    const Handle handle(curl_easy_init());
    if (!handle)
        return std::nullopt;
    CURL *curl = handle.get();
    const QByteArray url = request.url.toEncoded();
    const auto headers = headerList(request.headers);
    if (!headers)
        return std::nullopt;
    Response response;
    char error[CURL_ERROR_SIZE] = {};

    // Signals can't serve several threads; without them a DNS time-out is not interruptible,
    // which the overall time-out still bounds.
    const bool configured = set(curl, CURLOPT_URL, url.constData())
        && set(curl, CURLOPT_PROTOCOLS_STR, "http,https") && set(curl, CURLOPT_FOLLOWLOCATION, 0L)
        && set(curl, CURLOPT_NOSIGNAL, 1L) && set(curl, CURLOPT_TIMEOUT_MS, long(request.timeout.count()))
        && set(curl, CURLOPT_ACCEPT_ENCODING, "") && set(curl, CURLOPT_USERAGENT, "Quillet")
        && set(curl, CURLOPT_HTTPHEADER, headers->get()) && set(curl, CURLOPT_WRITEFUNCTION, collect)
        && set(curl, CURLOPT_WRITEDATA, &response.body) && set(curl, CURLOPT_ERRORBUFFER, error)
        && setMethodAndBody(curl, request);
    if (!configured) {
        qCWarning(lcHttp) << "libcurl refused an option; nothing was sent";
        return std::nullopt;
    }

    const CURLcode result = curl_easy_perform(curl);
    if (result != CURLE_OK) {
        qCWarning(lcHttp).noquote() << request.method << request.url.toDisplayString(QUrl::RemoveQuery)
                                    << "failed:" << (error[0] ? error : curl_easy_strerror(result));
        return std::nullopt;
    }
    long status = 0;
    curl_easy_getinfo(curl, CURLINFO_RESPONSE_CODE, &status);
    response.status = int(status);
    return response;
}

std::optional<JsonReply> postJSON(const QUrl &url, const Headers &headers, const QJsonObject &body,
                                  std::chrono::milliseconds timeout)
{
    Request request{.url = url, .headers = headers,
                    .body = QJsonDocument(body).toJson(QJsonDocument::Compact), .timeout = timeout};
    request.headers.insert(QStringLiteral("Content-Type"), QStringLiteral("application/json"));
    const auto response = send(request);
    if (!response)
        return std::nullopt;
    return JsonReply{response->status, Text::Json::parseObject(response->body).value_or(QJsonObject())};
}

QThreadPool &taskPool()
{
    static QThreadPool *const pool = [] {
        auto *created = new QThreadPool;  // never deleted: see the header
        created->setMaxThreadCount(64);
        return created;
    }();
    return *pool;
}

} // namespace Http
