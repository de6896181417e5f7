#include "report/Inbox.h"

#include "text/AtomicFile.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QStandardPaths>

#include <algorithm>
#include <cstring>

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

// The closing quote of the string whose text begins at `from`: the first quote behind an even
// number of backslashes. `end` when there is none.
const char *closingQuote(const char *from, const char *end)
{
    for (const char *at = from; at < end; ++at) {
        at = static_cast<const char *>(std::memchr(at, '"', size_t(end - at)));
        if (!at)
            return end;
        const char *escapes = at;
        while (escapes > from && escapes[-1] == '\\')
            --escapes;
        if ((at - escapes) % 2 == 0)
            return at;
    }
    return end;
}

// The bytes of each top-level element of a JSON array that has already parsed.
QList<QByteArray> elementsOf(const QByteArray &array)
{
    QList<QByteArray> elements;
    const char *const begin = array.constData();
    const char *const end = begin + array.size();
    const char *start = begin;
    const auto take = [&](const char *at) {
        const QByteArray element = QByteArrayView(start, at).trimmed().toByteArray();
        if (!element.isEmpty())
            elements.append(element);
    };
    int depth = 0;
    for (const char *at = begin; at < end; ++at) {
        const char c = *at;
        if (c == '"') {
            at = closingQuote(at + 1, end);
        } else if (c == '[' || c == '{') {
            if (++depth == 1)
                start = at + 1;
        } else if (c == ']' || c == '}') {
            if (--depth == 0)
                take(at);
        } else if (c == ',' && depth == 1) {
            take(at);
            start = at + 1;
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
    const qsizetype count = std::min(stored.elements.size(), capacity);
    qsizetype size = count + 1;
    for (qsizetype i = 0; i < count; ++i)
        size += stored.elements[i].size();
    QByteArray file;
    file.reserve(size + 1);
    file.append('[');
    for (qsizetype i = 0; i < count; ++i) {
        if (i > 0)
            file.append(',');
        file.append(stored.elements[i]);
    }
    file.append(']');
    Text::AtomicFile::write(path(), file);
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
