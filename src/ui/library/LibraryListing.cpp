#include "ui/library/LibraryListing.h"

#include "platform/Http.h"

#include <QDir>
#include <QThread>
#include <QtConcurrent/QtConcurrentMap>

#include <algorithm>

namespace {

// The store reads its folders one after another; a library of a thousand long classes takes
// most of a second that way, so the folders are decoded in parallel here, in the store's order.
QList<LibraryListing::Entry> shelf(const QString &root, bool deleted)
{
    const QStringList names = QDir(root).entryList(
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Unsorted);
    // One slice per core, each read in order: more threads than cores only take turns.
    const qsizetype slices = std::max(1, QThread::idealThreadCount());
    QList<std::pair<qsizetype, qsizetype>> ranges;
    for (qsizetype i = 0; i < slices; ++i)
        ranges.append({names.size() * i / slices, names.size() * (i + 1) / slices});
    const QList<QList<LibraryListing::Entry>> read = QtConcurrent::blockingMapped(
        &Http::taskPool(), ranges, [&](const std::pair<qsizetype, qsizetype> &range) {
            QList<LibraryListing::Entry> entries;
            for (qsizetype i = range.first; i < range.second; ++i) {
                const QString folder = root + u'/' + names[i];
                if (auto data = SessionStore::load(folder))
                    entries.append(LibraryListing::entry(folder, std::move(*data), deleted));
            }
            return entries;
        });
    QList<LibraryListing::Entry> entries;
    entries.reserve(names.size());
    for (const QList<LibraryListing::Entry> &slice : read)
        entries.append(slice);
    return entries;
}

template<typename Key>
void newestFirst(QList<LibraryListing::Entry> &entries, Key key)
{
    std::stable_sort(entries.begin(), entries.end(),
                     [&](const LibraryListing::Entry &a, const LibraryListing::Entry &b) { return key(a) > key(b); });
}

} // namespace

namespace LibraryListing {

Shelves read(const QString &root, const QString &trashRoot)
{
    Shelves shelves{shelf(root, false), shelf(trashRoot, true)};
    newestFirst(shelves.classes, [](const Entry &entry) { return entry.data.started; });
    newestFirst(shelves.deleted, [](const Entry &entry) { return entry.data.deletedAt; });
    return shelves;
}

Entry entry(const QString &folder, SessionData data, bool deleted)
{
    qsizetype length = data.title.size() + data.category.value_or(QString()).size() + 2;
    for (const SessionData::Line &line : data.lines)
        length += line.text.size() + line.translation.size() + 2;
    QString haystack;
    haystack.reserve(length);
    haystack += data.title.toLower() + u'\n' + data.category.value_or(QString()).toLower() + u'\n';
    for (const SessionData::Line &line : data.lines)
        haystack += line.text.toLower() + u'\n' + line.translation.toLower() + u'\n';
    return {folder, std::move(data), deleted, std::move(haystack)};
}

QStringList categories(const QList<Entry> &classes)
{
    QStringList names;
    for (const Entry &entry : classes) {
        const QString category = entry.data.category.value_or(QString());
        if (!category.isEmpty() && !names.contains(category))
            names.append(category);
    }
    return names;
}

bool matches(const Entry &entry, const QString &query)
{
    return query.isEmpty() || entry.haystack.contains(query);
}

} // namespace LibraryListing
