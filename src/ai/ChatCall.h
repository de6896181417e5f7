#pragma once

// The frame the three chat clients share around their own request body and reply reader:
// post the JSON, then word a failure for the user or read the reply. Every failure text starts
// with "（" so that callers can tell it from a reply. Blocking; worker threads only.

#include "ai/Turn.h"
#include "platform/Http.h"

#include <QJsonObject>
#include <QList>
#include <QString>
#include <QUrl>

#include <chrono>
#include <functional>
#include <optional>

namespace ChatCall {

using Reader = std::function<std::optional<QString>(const QJsonObject &reply)>;

// What the user reads when no answer came.
QString cannotConnect(const QString &name);
// What the user reads for a status other than 200, with the service's own message if it sent one.
QString errorText(const QString &name, int status, const QJsonObject &json);

// One chat exchange: the reply as read, or the worded failure. name is the client's display name.
std::optional<QString> exchange(const QString &name, const QUrl &url, const Http::Headers &headers,
                                const QJsonObject &body, std::chrono::milliseconds timeout,
                                const Reader &read);

using BlockMaker = QJsonObject (*)(const Attachment &attachment);
using TextBlockMaker = QJsonObject (*)(const QString &text);
// {"role": role, "content": text}; with files, "content" is a list of their blocks in order and
// the text's block last.
QJsonObject message(const QString &role, const QString &text, const QList<Attachment> &files,
                    BlockMaker block, TextBlockMaker textBlock);

// The member as a list of objects; empty when it is missing, not a list, or holds anything else.
QList<QJsonObject> objects(const QJsonObject &object, QStringView key);
// The text members of the blocks whose "type" is type, joined with nothing between them.
QString joinedText(const QList<QJsonObject> &blocks, QStringView type);

} // namespace ChatCall
