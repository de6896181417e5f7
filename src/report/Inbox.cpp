#include "report/Inbox.h"

#include "platform/AtomicFile.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QStandardPaths>

#include <algorithm>

namespace Inbox {

std::function<void()> onChange = [] {};

namespace {

struct Stored
{
    QList<InboxMessage> messages;
    bool unreadable = false;  // the file is there but isn't an inbox
};

std::optional<QList<InboxMessage>> decode(const QByteArray &bytes)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError || !document.isArray())
        return std::nullopt;
    QList<InboxMessage> messages;
    for (const QJsonValue &value : document.array()) {
        auto message = value.isObject() ? InboxMessage::fromJson(value.toObject()) : std::nullopt;
        if (!message)
            return std::nullopt;
        messages.append(std::move(*message));
    }
    return messages;
}

Stored load()
{
    QFile file(path());
    if (!file.exists())
        return {};
    auto messages = file.open(QIODevice::ReadOnly) ? decode(file.readAll()) : std::nullopt;
    if (!messages)
        return {{}, true};
    return {std::move(*messages), false};
}

// The unreadable file keeps its bytes under a name of its own; a failed rename is dropped, and
// then the save below replaces it as it would any file.
void keepAside()
{
    const QString stamp = QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMdd'T'HHmmss'Z'"));
    QString aside = path() + u".unreadable-" + stamp;
    for (int n = 2; QFile::exists(aside); ++n)
        aside = path() + u".unreadable-" + stamp + u'-' + QString::number(n);
    QFile::rename(path(), aside);
}

void save(const Stored &stored, QList<InboxMessage> messages)
{
    if (stored.unreadable)
        keepAside();
    if (messages.size() > capacity)
        messages.resize(capacity);
    QJsonArray array;
    for (const InboxMessage &message : messages)
        array.append(message.toJson());
    AtomicFile::write(path(), QJsonDocument(array).toJson(QJsonDocument::Compact));
    onChange();
}

} // namespace

QString path()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    QDir().mkpath(folder);
    return folder + u"/messages.json";
}

QList<InboxMessage> all()
{
    return load().messages;
}

int unread()
{
    const auto messages = all();
    return int(std::count_if(messages.cbegin(), messages.cend(), [](const InboxMessage &m) { return !m.read; }));
}

void add(const InboxMessage &message)
{
    const Stored stored = load();
    QList<InboxMessage> messages = stored.messages;
    messages.prepend(message);
    save(stored, std::move(messages));
}

void update(const InboxMessage &message)
{
    const Stored stored = load();
    QList<InboxMessage> messages = stored.messages;
    const auto found = std::find_if(messages.begin(), messages.end(),
                                    [&](const InboxMessage &m) { return m.id == message.id; });
    if (found == messages.end())
        return;
    *found = message;
    save(stored, std::move(messages));
}

void remove(const QUuid &id)
{
    const Stored stored = load();
    QList<InboxMessage> messages = stored.messages;
    messages.removeIf([&](const InboxMessage &m) { return m.id == id; });
    save(stored, std::move(messages));
}

} // namespace Inbox
