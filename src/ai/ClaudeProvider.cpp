#include "ai/ClaudeProvider.h"

#include "account/Relay.h"
#include "ai/ChatCall.h"
#include "settings/UserDefaults.h"
#include "text/Json.h"

#include <QJsonArray>

namespace {

QJsonObject base64Source(const Attachment &attachment)
{
    return {{QStringLiteral("type"), QStringLiteral("base64")},
            {QStringLiteral("media_type"), attachment.mediaType},
            {QStringLiteral("data"), attachment.base64()}};
}

QJsonObject textBlock(const QString &text)
{
    return {{QStringLiteral("type"), QStringLiteral("text")}, {QStringLiteral("text"), text}};
}

QJsonObject block(const Attachment &attachment)
{
    if (attachment.isImage())
        return {{QStringLiteral("type"), QStringLiteral("image")}, {QStringLiteral("source"), base64Source(attachment)}};
    if (attachment.isPDF())
        return {{QStringLiteral("type"), QStringLiteral("document")}, {QStringLiteral("source"), base64Source(attachment)}};
    return textBlock(attachment.inlineText());
}

} // namespace

ClaudeProvider::ClaudeProvider(Settings settings)
    : settings_(std::move(settings))
{
}

std::optional<QString> ClaudeProvider::chat(const QString &system, const QList<Turn> &turns) const
{
    return ChatCall::exchange(displayName(), endpoint(), headers(), body(system, turns), settings_.timeout,
                              readReply);
}

std::optional<QString> ClaudeProvider::readReply(const QJsonObject &reply)
{
    if (Text::Json::string(reply, u"stop_reason") == u"refusal")
        return std::nullopt;
    return ChatCall::joinedText(ChatCall::objects(reply, u"content"), u"text");
}

bool ClaudeProvider::isHaiku() const
{
    return settings_.model.startsWith(u"claude-haiku");
}

QUrl ClaudeProvider::endpoint() const
{
    if (settings_.viaRelay)
        return Relay::url(QStringLiteral("/anthropic/v1/messages"));
    return QUrl(UserDefaults::address(UserDefaults::claudeURL, QStringLiteral("https://api.anthropic.com"))
                + QStringLiteral("/v1/messages"));
}

Http::Headers ClaudeProvider::headers() const
{
    Http::Headers headers = settings_.viaRelay ? Relay::headers()
                                               : Http::Headers{{QStringLiteral("x-api-key"), settings_.key}};
    headers.insert(QStringLiteral("anthropic-version"), QStringLiteral("2023-06-01"));
    if (!isHaiku())
        headers.insert(QStringLiteral("anthropic-beta"), QStringLiteral("server-side-fallback-2026-07-01"));
    return headers;
}

QJsonObject ClaudeProvider::body(const QString &system, const QList<Turn> &turns) const
{
    QJsonArray messages;
    for (const Turn &turn : turns)
        messages.append(ChatCall::message(turn.role, turn.content, turn.attachments, block, textBlock));
    QJsonObject body{{QStringLiteral("model"), settings_.model},
                     {QStringLiteral("max_tokens"), 4000},
                     {QStringLiteral("system"), system},
                     {QStringLiteral("messages"), messages}};
    if (!isHaiku()) {
        body.insert(QStringLiteral("output_config"), QJsonObject{{QStringLiteral("effort"), settings_.effort}});
        body.insert(QStringLiteral("fallbacks"), QStringLiteral("default"));
    }
    return body;
}
