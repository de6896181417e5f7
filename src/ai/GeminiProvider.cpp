#include "ai/GeminiProvider.h"

#include "ai/ChatCall.h"
#include "settings/UserDefaults.h"
#include "text/Json.h"

#include <QJsonArray>

namespace {

QJsonObject textPart(const QString &text)
{
    return {{QStringLiteral("text"), text}};
}

// Text files go as text; everything else, PDFs included, as inline bytes.
QJsonObject part(const Attachment &attachment)
{
    if (attachment.isText())
        return textPart(attachment.inlineText());
    return {{QStringLiteral("inlineData"),
             QJsonObject{{QStringLiteral("mimeType"), attachment.mediaType}, {QStringLiteral("data"), attachment.base64()}}}};
}

QJsonObject content(const Turn &turn)
{
    QJsonArray parts;
    for (const Attachment &attachment : turn.attachments)
        parts.append(part(attachment));
    parts.append(textPart(turn.content));
    const QString role = turn.role == u"assistant" ? QStringLiteral("model") : QStringLiteral("user");
    return {{QStringLiteral("role"), role}, {QStringLiteral("parts"), parts}};
}

} // namespace

GeminiProvider::GeminiProvider(Settings settings)
    : settings_(std::move(settings))
{
}

std::optional<QString> GeminiProvider::chat(const QString &system, const QList<Turn> &turns) const
{
    return ChatCall::exchange(displayName(), endpoint(), {{QStringLiteral("x-goog-api-key"), settings_.key}},
                              body(system, turns), settings_.timeout,
                              [](const QJsonObject &reply) { return std::optional(readReply(reply)); });
}

QString GeminiProvider::readReply(const QJsonObject &reply)
{
    const QList<QJsonObject> candidates = ChatCall::objects(reply, u"candidates");
    if (candidates.isEmpty())
        return {};
    const QJsonObject content = Text::Json::object(candidates.first(), u"content").value_or(QJsonObject());
    QString text;
    for (const QJsonObject &part : ChatCall::objects(content, u"parts"))
        text += Text::Json::string(part, u"text").value_or(QString());
    return text;
}

QUrl GeminiProvider::endpoint() const
{
    return QUrl(UserDefaults::address(UserDefaults::geminiURL,
                                  QStringLiteral("https://generativelanguage.googleapis.com"))
                + QStringLiteral("/v1beta/models/") + QString::fromLatin1(QUrl::toPercentEncoding(settings_.model))
                + QStringLiteral(":generateContent"));
}

QJsonObject GeminiProvider::body(const QString &system, const QList<Turn> &turns)
{
    QJsonArray contents;
    for (const Turn &turn : turns)
        contents.append(content(turn));
    return {{QStringLiteral("systemInstruction"), QJsonObject{{QStringLiteral("parts"), QJsonArray{textPart(system)}}}},
            {QStringLiteral("contents"), contents}};
}
