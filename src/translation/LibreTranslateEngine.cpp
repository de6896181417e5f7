#include "settings/UserDefaults.h"
#include "translation/LibreTranslateEngine.h"

#include "platform/Http.h"
#include "text/Json.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace {

using namespace std::chrono_literals;

// A local server answers its language list at once; a long text can keep it busy for a while.
constexpr std::chrono::milliseconds listTimeout = 5s;
constexpr std::chrono::milliseconds translateTimeout = 60s;

QUrl endpoint(const QUrl &base, const QString &path)
{
    QUrl url = base;
    QString prefix = url.path();
    while (prefix.endsWith(u'/'))
        prefix.chop(1);
    url.setPath(prefix + path);
    return url;
}

} // namespace

QUrl LibreTranslateEngine::configuredUrl()
{
    return QUrl(UserDefaults::address(UserDefaults::translateURL, QStringLiteral("http://127.0.0.1:5000")));
}

LibreTranslateEngine::LibreTranslateEngine(QUrl base)
    : base_(std::move(base))
{
}

TranslationEngine::Result LibreTranslateEngine::translate(const QString &text, const QString &source,
                                                          const QString &target) const
{
    const std::optional<QList<Language>> known = languages();
    if (!known)
        return {Outcome::Unreachable, {}};
    const QJsonObject body{{QStringLiteral("q"), text},
                           {QStringLiteral("source"), wireCode(source, *known)},
                           {QStringLiteral("target"), wireCode(target, *known)},
                           {QStringLiteral("format"), QStringLiteral("text")}};
    const std::optional<Http::Response> response = Http::send(
        {.url = endpoint(base_, QStringLiteral("/translate")),
         .headers = {{QStringLiteral("Content-Type"), QStringLiteral("application/json")}},
         .body = QJsonDocument(body).toJson(QJsonDocument::Compact),
         .timeout = translateTimeout});
    if (!response)
        return {Outcome::Unreachable, {}};
    const std::optional<QJsonObject> json = Text::Json::parseObject(response->body);
    if (!json)
        return {Outcome::Unreachable, {}};
    const std::optional<QString> translated = Text::Json::string(*json, u"translatedText");
    if (response->status != 200 || !translated)
        return {Outcome::Failed, {}};
    return {Outcome::Translated, *translated};
}

std::optional<QStringList> LibreTranslateEngine::missing(const QStringList &sources, const QString &target) const
{
    const std::optional<QList<Language>> known = languages();
    if (!known)
        return std::nullopt;
    const QString to = wireCode(target, *known);
    const auto installed = [&](const QString &source) {
        const QString from = wireCode(source, *known);
        const bool targetKnown = std::any_of(known->begin(), known->end(),
                                             [&](const Language &language) { return language.code == to; });
        for (const Language &language : *known) {
            if (language.code == from)
                return language.targets ? language.targets->contains(to) : targetKnown;
        }
        return false;
    };
    QStringList result;
    for (const QString &source : sources) {
        if (!installed(source))
            result.append(source);
    }
    return result;
}

std::optional<QList<LibreTranslateEngine::Language>> LibreTranslateEngine::languages() const
{
    {
        std::scoped_lock lock(mutex_);
        if (languages_)
            return languages_;
    }
    const std::optional<Http::Response> response =
        Http::send({.method = "GET", .url = endpoint(base_, QStringLiteral("/languages")), .timeout = listTimeout});
    if (!response)
        return std::nullopt;
    const std::optional<QJsonArray> array = Text::Json::parseArray(response->body);
    if (!array) {
        // A JSON error (a server that wants a key, say) is still a server, with nothing to offer
        // now; it is asked again next time.
        if (Text::Json::parseObject(response->body))
            return QList<Language>();
        return std::nullopt;
    }
    QList<Language> list;
    for (const QJsonValue &entry : *array) {
        const std::optional<QString> code = Text::Json::string(entry.toObject(), u"code");
        if (code)
            list.append({*code, Text::Json::strings(entry.toObject(), u"targets")});
    }
    std::scoped_lock lock(mutex_);
    languages_ = list;
    return list;
}

// Older servers call Simplified Chinese "zh", newer ones "zh-Hans".
QString LibreTranslateEngine::wireCode(const QString &code, const QList<Language> &known)
{
    if (code != u"zh-Hans")
        return code;
    const auto has = [&](QStringView wanted) {
        return std::any_of(known.begin(), known.end(), [&](const Language &language) { return language.code == wanted; });
    };
    return !has(code) && has(u"zh") ? QStringLiteral("zh") : code;
}
