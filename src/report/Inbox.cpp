#include "report/Inbox.h"

#include "text/AtomicFile.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QStandardPaths>

#include <algorithm>

namespace Inbox {

std::function<void()> onChange = [] {};

namespace {

// The file as read: the messages, and each one's own bytes in the file, so that a change
// rewrites the untouched messages as they were instead of encoding megabytes of notes again.
struct Stored
{
    QList<InboxMessage> messages;
    QList<QByteArray> elements;  // one per message, in the same order
    bool unreadable = false;     // the file is there but isn't an inbox
};

// The bytes of each top-level element of a JSON array that has already parsed.
QList<QByteArray> elementsOf(const QByteArray &array)
{
    QList<QByteArray> elements;
    int depth = 0;
    bool inString = false;
    bool escaped = false;
    qsizetype start = 0;
    const auto take = [&](qsizetype end) {
        const QByteArray element = array.sliced(start, end - start).trimmed();
        if (!element.isEmpty())
            elements.append(element);
    };
    for (qsizetype i = 0; i < array.size(); ++i) {
        const char c = array[i];
        if (inString) {
            if (escaped)
                escaped = false;
            else if (c == '\\')
                escaped = true;
            else if (c == '"')
                inString = false;
            continue;
        }
        if (c == '"') {
            inString = true;
        } else if (c == '[' || c == '{') {
            if (++depth == 1)
                start = i + 1;
        } else if (c == ']' || c == '}') {
            if (--depth == 0)
                take(i);
        } else if (c == ',' && depth == 1) {
            take(i);
            start = i + 1;
        }
    }
    return elements;
}

QByteArray encoded(const InboxMessage &message)
{
    return QJsonDocument(message.toJson()).toJson(QJsonDocument::Compact);
}

Stored decode(const QByteArray &bytes)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError || !document.isArray())
        return {{}, {}, true};
    Stored stored;
    for (const QJsonValue &value : document.array()) {
        auto message = value.isObject() ? InboxMessage::fromJson(value.toObject()) : std::nullopt;
        if (!message)
            return {{}, {}, true};
        stored.messages.append(std::move(*message));
    }
    stored.elements = elementsOf(bytes);
    if (stored.elements.size() != stored.messages.size()) {
        stored.elements.clear();
        for (const InboxMessage &message : std::as_const(stored.messages))
            stored.elements.append(encoded(message));
    }
    return stored;
}

Stored load()
{
    QFile file(path());
    if (!file.exists())
        return {};
    if (!file.open(QIODevice::ReadOnly))
        return {{}, {}, true};
    return decode(file.readAll());
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

void save(const Stored &stored)
{
    if (stored.unreadable)
        keepAside();
    const QList<QByteArray> kept = stored.elements.first(std::min(stored.elements.size(), capacity));
    Text::AtomicFile::write(path(), '[' + kept.join(',') + ']');
    onChange();
}

qsizetype indexOf(const Stored &stored, const QUuid &id)
{
    const auto found = std::find_if(stored.messages.cbegin(), stored.messages.cend(),
                                    [&](const InboxMessage &m) { return m.id == id; });
    return found == stored.messages.cend() ? -1 : found - stored.messages.cbegin();
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
    Stored stored = load();
    stored.messages.prepend(message);
    stored.elements.prepend(encoded(message));
    save(stored);
}

void update(const InboxMessage &message)
{
    Stored stored = load();
    const qsizetype index = indexOf(stored, message.id);
    if (index < 0)
        return;
    stored.elements.replace(index, encoded(message));
    save(stored);
}

void remove(const QUuid &id)
{
    Stored stored = load();
    for (qsizetype index = indexOf(stored, id); index >= 0; index = indexOf(stored, id)) {
        stored.messages.removeAt(index);
        stored.elements.removeAt(index);
    }
    save(stored);
}

} // namespace Inbox
