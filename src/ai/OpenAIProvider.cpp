#include "ai/OpenAIProvider.h"

#include "account/Relay.h"
#include "ai/ChatCall.h"
#include "settings/UserDefaults.h"

#include <QJsonArray>

namespace {

QJsonObject inputText(const QString &text)
{
    return {{QStringLiteral("type"), QStringLiteral("input_text")}, {QStringLiteral("text"), text}};
}

QJsonObject block(const Attachment &attachment)
{
    if (attachment.isImage())
        return {{QStringLiteral("type"), QStringLiteral("input_image")},
                {QStringLiteral("image_url"),
                 QString(QStringLiteral("data:") + attachment.mediaType + QStringLiteral(";base64,") + attachment.base64())}};
    if (attachment.isPDF())
        return {{QStringLiteral("type"), QStringLiteral("input_file")},
                {QStringLiteral("filename"), attachment.name},
                {QStringLiteral("file_data"), QString(QStringLiteral("data:application/pdf;base64,") + attachment.base64())}};
    return inputText(attachment.inlineText());
}

QJsonObject input(const Turn &turn)
{
    // Only a user turn carries files; an assistant turn goes as its text alone.
    const QList<Attachment> files = turn.role == u"user" ? turn.attachments : QList<Attachment>();
    return ChatCall::message(turn.role, turn.content, files, block, inputText);
}

} // namespace

OpenAIProvider::OpenAIProvider(Settings settings)
    : settings_(std::move(settings))
{
}

std::optional<QString> OpenAIProvider::chat(const QString &system, const QList<Turn> &turns) const
{
    return ChatCall::exchange(displayName(), endpoint(), headers(), body(system, turns), settings_.timeout,
                              [](const QJsonObject &reply) { return std::optional(readReply(reply)); });
}

QString OpenAIProvider::readReply(const QJsonObject &reply)
{
    QList<QJsonObject> blocks;
    for (const QJsonObject &item : ChatCall::objects(reply, u"output"))
        blocks << ChatCall::objects(item, u"content");
    return ChatCall::joinedText(blocks, u"output_text");
}

QUrl OpenAIProvider::endpoint() const
{
    if (settings_.viaRelay)
        return Relay::url(QStringLiteral("/openai/v1/responses"));
    return QUrl(UserDefaults::address(UserDefaults::openaiURL, QStringLiteral("https://api.openai.com"))
                + QStringLiteral("/v1/responses"));
}

Http::Headers OpenAIProvider::headers() const
{
    if (settings_.viaRelay)
        return Relay::headers();
    return {{QStringLiteral("Authorization"), QStringLiteral("Bearer ") + settings_.key}};
}

QJsonObject OpenAIProvider::body(const QString &system, const QList<Turn> &turns) const
{
    QJsonArray inputs;
    for (const Turn &turn : turns)
        inputs.append(input(turn));
    QJsonObject body{{QStringLiteral("model"), settings_.model},
                     {QStringLiteral("instructions"), system},
                     {QStringLiteral("input"), inputs}};
    if (settings_.reasoningEffort)
        body.insert(QStringLiteral("reasoning"), QJsonObject{{QStringLiteral("effort"), *settings_.reasoningEffort}});
    return body;
}
