#include "ai/ChatCall.h"

#include "text/Characters.h"
#include "text/Json.h"

#include <QJsonArray>

namespace ChatCall {

QString cannotConnect(const QString &name)
{
    return QStringLiteral("（连不上 ") + name + QStringLiteral("，检查网络）");
}

QString errorText(const QString &name, int status, const QJsonObject &json)
{
    if (status == 401 || status == 403)
        return QStringLiteral("（") + name + QStringLiteral(" 的 API key 无效，请在设置里重新填写）");
    if (status == 429)
        return QStringLiteral("（") + name + QStringLiteral(" 请求太频繁或额度不足，稍后再试）");
    const QString message = Text::Json::string(Text::Json::object(json, u"error").value_or(QJsonObject()),
                                               u"message").value_or(QString());
    QString text = QStringLiteral("（") + name + QStringLiteral(" 出错 ") + QString::number(status);
    if (!message.isEmpty())
        text += QStringLiteral("：") + Text::prefix(message, 80);
    return text + QStringLiteral("）");
}

std::optional<QString> exchange(const QString &name, const QUrl &url, const Http::Headers &headers,
                                const QJsonObject &body, std::chrono::milliseconds timeout,
                                const Reader &read)
{
    const auto reply = Http::postJSON(url, headers, body, timeout);
    if (!reply)
        return cannotConnect(name);
    if (reply->status != 200)
        return errorText(name, reply->status, reply->json);
    return read(reply->json);
}

QJsonObject message(const QString &role, const QString &text, const QList<Attachment> &files,
                    BlockMaker block, TextBlockMaker textBlock)
{
    if (files.isEmpty())
        return {{QStringLiteral("role"), role}, {QStringLiteral("content"), text}};
    QJsonArray content;
    for (const Attachment &file : files)
        content.append(block(file));
    content.append(textBlock(text));
    return {{QStringLiteral("role"), role}, {QStringLiteral("content"), content}};
}

QList<QJsonObject> objects(const QJsonObject &object, QStringView key)
{
    QList<QJsonObject> list;
    for (const QJsonValue &value : Text::Json::array(object, key).value_or(QJsonArray())) {
        if (!value.isObject())
            return {};
        list << value.toObject();
    }
    return list;
}

QString joinedText(const QList<QJsonObject> &blocks, QStringView type)
{
    QString text;
    for (const QJsonObject &block : blocks) {
        if (Text::Json::string(block, u"type") == type)
            text += Text::Json::string(block, u"text").value_or(QString());
    }
    return text;
}

} // namespace ChatCall
