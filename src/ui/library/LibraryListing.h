#pragma once

// One reading of the class store for the library: the saved and the recently deleted classes in
// the store's order, each with the lower-cased text that search looks through, so that a keystroke
// searches memory and never the disk.
//
// read() does the file work and may take a while for a large library: call it on a pool thread
// (it spreads the decoding over the pool), never on the main thread. The values are plain and
// safe to hand between threads; the window holds the last reading as a shared constant.

#include "session/SessionStore.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace LibraryListing {

struct Entry
{
    QString folder;
    SessionData data;
    bool deleted = false;
    // Name, category, and each line's text and translation, lower-cased, one a line.
    QString haystack;
};

struct Shelves
{
    QList<Entry> classes;   // newest start first, as SessionStore::list()
    QList<Entry> deleted;   // last deleted first, as SessionStore::listDeleted()
};

// The classes under the store's two folders, given by the caller (the store's settings belong to
// the main thread).
Shelves read(const QString &root, const QString &trashRoot);
Entry entry(const QString &folder, SessionData data, bool deleted);
// Course names in use, newest class first, each once, as SessionStore::categories().
QStringList categories(const QList<Entry> &classes);
// The query already trimmed and lower-cased; it must not span two lines of the haystack.
bool matches(const Entry &entry, const QString &query);

} // namespace LibraryListing
