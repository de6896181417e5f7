#pragma once

// The class folders on disk: where they live, writing and reading them, listing, renaming, the
// two-stage delete with its fifteen-day retention, the storage limit that trims old recordings,
// the word book across all classes, and the text exports.
//
// No state of its own: the file system is the state, and every call works from what is on disk
// at that moment. Called on the main thread. File errors are swallowed where they happen; the
// operations that can visibly fail give no value, and a failed write never replaces the last
// good file (every file is written to a temporary beside it, then renamed over it).

#include "session/SessionData.h"
#include "session/SessionText.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>
#include <utility>

namespace Text {
class Clock;
}

namespace SessionStore {

// Pairs of (class folder, its record).
using Listing = QList<std::pair<QString, SessionData>>;

inline constexpr int keepDays = 15;
inline constexpr QStringView recordFile = u"session.json";
inline constexpr QStringView audioFile = u"录音.m4a";
inline constexpr QStringView myNotesFile = u"我的笔记.md";

using SessionText::clock;
using SessionText::defaultTitle;
using SessionText::notesMarkdown;
using SessionText::transcriptMarkdown;
using SessionText::uncategorized;

// Where the folders live and which clock dates deletions. The application keeps the defaults,
// the user's Documents folder and the system's time; tests and demos point them elsewhere.
// An empty folder or a null clock returns to the default. The clock must outlive its use.
void useDocumentsFolder(const QString &folder);
void useClock(const Text::Clock *clock);

// Documents/Quillet/课程记录, one folder per class.
QString root();
// Documents/Quillet/最近删除, recently deleted classes.
QString trashRoot();
// Documents/Quillet/单词本.md
QString wordBook();

// The path itself when nothing is there, else the first free "{path} (n)" from n = 2 on.
QString unique(const QString &path);

// The record and its Markdown files; creates no folder. False when the record could not be
// written (the old one then stays); the Markdown files follow it as best they can.
bool write(const SessionData &data, const QString &folder);
// No value when the folder has no record that reads and decodes.
std::optional<SessionData> load(const QString &folder);

// Classes under root(), newest start first.
Listing list();
// Classes under trashRoot(), last deleted first; a record without a deletion date comes last.
Listing listDeleted();

// Moves a class into trashRoot() and dates the deletion; gives the new folder, or no value
// (and the class stays) when the folder has no record or can't be moved.
std::optional<QString> moveToDeleted(const QString &folder);
// Moves a deleted class back under root() and clears the date; no value as above.
std::optional<QString> restore(const QString &folder);
// Deletes a folder for good.
void erase(const QString &folder);
// Erases the deleted classes past their fifteen days (undated ones at once).
void purgeExpired();
// Whole days, rounded up, until a deleted class is purged; never below 0.
int daysLeft(const SessionData &data);

// Course names in use, newest class first, each once; never the uncategorized label.
QStringList categories();
// Rename of a stored class: the title as given, empty or not; an empty category clears it.
void update(const QString &folder, const QString &title, const QString &category);

// Bytes in the files under a folder, or of a file; 0 when nothing can be read.
qint64 size(const QString &path);
struct Usage
{
    qint64 bytes = 0;
    qsizetype classes = 0;
};
Usage usage();
// Bytes for people, in decimal units (1 MB = 1,000,000 bytes).
QString format(qint64 bytes);
// Moves the recordings of the oldest classes to the desktop's Trash until the class root fits
// in limitGB decimal gigabytes, passing over `skip` (the class being recorded); limits below 1
// do nothing. Gives how many recordings left.
int enforce(qint64 limitGB, const QString &skip = {});

// Appends the terms the word book doesn't hold yet, as one section headed by course and title.
void addToWordBook(const QList<SessionData::Term> &terms, const QString &title,
                   const std::optional<QString> &category);

// "我的笔记.md" of a class, or the empty string.
QString myNotes(const QString &folder);
void saveMyNotes(const QString &text, const QString &folder);
// Keeps the transcript as it was recorded live, before a refinement replaces its lines.
void saveLiveTranscript(const SessionData &data, const QString &folder);

} // namespace SessionStore
