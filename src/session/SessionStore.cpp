#include "session/SessionStore.h"

#include "text/AtomicFile.h"
#include "text/Clock.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QStandardPaths>
#include <QStringDecoder>

#include <algorithm>
#include <cmath>
#include <functional>

namespace {

constexpr qint64 keepSeconds = SessionStore::keepDays * 86'400;

QString documentsOverride;
const Text::Clock *clockOverride = nullptr;

QDateTime now()
{
    return clockOverride ? clockOverride->now() : QDateTime::currentDateTimeUtc();
}

QString productFolder()
{
    const QString documents = documentsOverride.isEmpty()
        ? QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)
        : documentsOverride;
    return documents + u"/Quillet";
}

QString inFolder(const QString &folder, QStringView name)
{
    return folder + u'/' + name;
}

std::optional<QByteArray> readFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return file.readAll();
}

SessionStore::Listing listing(const QString &folder)
{
    SessionStore::Listing classes;
    const QStringList names = QDir(folder).entryList(
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Unsorted);
    for (const QString &name : names) {
        const QString path = inFolder(folder, name);
        if (auto data = SessionStore::load(path))
            classes.append({path, std::move(*data)});
    }
    return classes;
}

// Newest first by the date the key gives; an undated record counts as the distant past.
SessionStore::Listing newestFirst(SessionStore::Listing classes,
                                  const std::function<std::optional<QDateTime>(const SessionData &)> &key)
{
    std::stable_sort(classes.begin(), classes.end(), [&](const auto &a, const auto &b) {
        return key(a.second) > key(b.second);
    });
    return classes;
}

QString lastComponent(const QString &folder)
{
    return QFileInfo(QDir::cleanPath(folder)).fileName();
}

// Moves a class folder under another root, keeping its name unless it clashes there.
std::optional<QString> moveClass(const QString &folder, const QString &destination,
                                 const std::optional<QDateTime> &deletedAt)
{
    auto data = SessionStore::load(folder);
    if (!data)
        return std::nullopt;
    QDir().mkpath(destination);
    const QString target = SessionStore::unique(inFolder(destination, lastComponent(folder)));
    if (!QDir().rename(folder, target))
        return std::nullopt;
    data->deletedAt = deletedAt;
    // A class in the trash without its deletion date would be purged at once: put it back.
    if (!SessionStore::write(*data, target)) {
        QDir().rename(target, folder);
        return std::nullopt;
    }
    return target;
}

// The word book's text; empty when there is none yet. A book that is there but can't be read as
// UTF-8 is moved aside first, so the student's words are never written over; no value when even
// that fails.
std::optional<QString> readWordBook()
{
    const QString path = SessionStore::wordBook();
    if (!QFileInfo::exists(path))
        return QString();
    if (const auto bytes = readFile(path)) {
        QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
        const QString text = decoder.decode(*bytes);
        if (!decoder.hasError())
            return text;
    }
    const QString aside = path + u".unreadable-" + now().toString(u"yyyyMMdd-HHmmss");
    if (!QFile::rename(path, SessionStore::unique(aside)))
        return std::nullopt;
    return QString();
}

bool sameFolder(const QString &a, const QString &b)
{
    return !a.isEmpty() && !b.isEmpty() && QDir::cleanPath(a) == QDir::cleanPath(b);
}

} // namespace

namespace SessionStore {

void useDocumentsFolder(const QString &folder)
{
    documentsOverride = folder;
}

void useClock(const Text::Clock *clock)
{
    clockOverride = clock;
}

QString root()
{
    return inFolder(productFolder(), u"课程记录");
}

QString trashRoot()
{
    return inFolder(productFolder(), u"最近删除");
}

QString wordBook()
{
    return inFolder(productFolder(), u"单词本.md");
}

QString unique(const QString &path)
{
    QString candidate = path;
    for (int n = 2; QFileInfo::exists(candidate) || QFileInfo(candidate).isSymLink(); ++n)
        candidate = path + u" (" + QString::number(n) + u')';
    return candidate;
}

bool write(const SessionData &data, const QString &folder)
{
    const bool written = Text::AtomicFile::write(inFolder(folder, recordFile), data.toJson());
    Text::AtomicFile::write(inFolder(folder, u"文字稿.md"), SessionText::transcriptMarkdown(data).toUtf8());
    if (data.vocabulary && !data.vocabulary->isEmpty())
        Text::AtomicFile::write(inFolder(folder, u"单词表.md"), SessionText::vocabularyMarkdown(data).toUtf8());
    if (!data.notes.isEmpty() || data.summary)
        Text::AtomicFile::write(inFolder(folder, u"AI笔记.md"), SessionText::notesMarkdown(data).toUtf8());
    return written;
}

std::optional<SessionData> load(const QString &folder)
{
    const auto bytes = readFile(inFolder(folder, recordFile));
    return bytes ? SessionData::fromJson(*bytes) : std::nullopt;
}

Listing list()
{
    return newestFirst(listing(root()), [](const SessionData &data) { return std::optional(data.started); });
}

Listing listDeleted()
{
    return newestFirst(listing(trashRoot()), [](const SessionData &data) { return data.deletedAt; });
}

std::optional<QString> moveToDeleted(const QString &folder)
{
    return moveClass(folder, trashRoot(), now());
}

std::optional<QString> restore(const QString &folder)
{
    return moveClass(folder, root(), std::nullopt);
}

void erase(const QString &folder)
{
    QDir(folder).removeRecursively();
}

void purgeExpired()
{
    const QDateTime cutOff = now().addSecs(-keepSeconds);
    for (const auto &[folder, data] : listDeleted()) {
        if (!data.deletedAt || *data.deletedAt < cutOff)
            erase(folder);
    }
}

int daysLeft(const SessionData &data)
{
    const QDateTime current = now();
    const QDateTime end = data.deletedAt.value_or(current).addSecs(keepSeconds);
    const double days = double(current.msecsTo(end)) / 1000.0 / 86'400.0;
    return int(std::max(std::ceil(days), 0.0));
}

QStringList categories()
{
    QStringList names;
    for (const auto &[folder, data] : list()) {
        if (data.category && !data.category->isEmpty() && !names.contains(*data.category))
            names << *data.category;
    }
    return names;
}

void update(const QString &folder, const QString &title, const QString &category)
{
    auto data = load(folder);
    if (!data)
        return;
    data->title = title;
    data->category = category.isEmpty() ? std::nullopt : std::optional(category);
    write(*data, folder);
}

qint64 size(const QString &path)
{
    const QFileInfo info(path);
    if (info.isFile())
        return info.size();
    qint64 total = 0;
    QDirIterator entries(path, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        entries.next();
        total += entries.fileInfo().size();
    }
    return total;
}

Usage usage()
{
    return {size(root()), list().size()};
}

QString format(qint64 bytes)
{
    return QLocale().formattedDataSize(bytes, 1, QLocale::DataSizeSIFormat);
}

int enforce(qint64 limitGB, const QString &skip)
{
    if (limitGB < 1)
        return 0;
    // Past a billion gigabytes nothing on a laptop can reach the limit; this keeps it in range.
    const qint64 limit = std::min<qint64>(limitGB, 1'000'000'000) * 1'000'000'000;
    qint64 total = size(root());
    int removed = 0;
    const Listing classes = list();
    for (auto entry = classes.rbegin(); entry != classes.rend() && total > limit; ++entry) {
        const auto &[folder, data] = *entry;
        const QString audio = inFolder(folder, audioFile);
        if (sameFolder(folder, skip) || !QFileInfo(audio).isFile())
            continue;
        const qint64 bytes = size(audio);
        if (!QFile::moveToTrash(audio))
            continue;
        SessionData trimmed = data;
        trimmed.audioRemoved = true;
        write(trimmed, folder);
        total -= bytes;
        ++removed;
    }
    return removed;
}

void addToWordBook(const QList<SessionData::Term> &terms, const QString &title,
                   const std::optional<QString> &category)
{
    if (terms.isEmpty())
        return;
    QDir().mkpath(productFolder());
    const auto stored = readWordBook();
    if (!stored)
        return;
    QString book = !stored->isEmpty() ? *stored : QStringLiteral("# Quillet 单词本\n\n课上自动收集的专业词汇。\n");
    QList<SessionData::Term> fresh;
    for (const SessionData::Term &term : terms) {
        if (!book.contains(u"**" + term.term + u"**"))
            fresh << term;
    }
    if (fresh.isEmpty())
        return;
    book += SessionText::wordBookSection(fresh, title, category);
    Text::AtomicFile::write(wordBook(), book.toUtf8());
}

QString myNotes(const QString &folder)
{
    const auto bytes = readFile(inFolder(folder, myNotesFile));
    return bytes ? QString::fromUtf8(*bytes) : QString();
}

void saveMyNotes(const QString &text, const QString &folder)
{
    Text::AtomicFile::write(inFolder(folder, myNotesFile), text.toUtf8());
}

void saveLiveTranscript(const SessionData &data, const QString &folder)
{
    Text::AtomicFile::write(inFolder(folder, u"文字稿（实时版）.md"), SessionText::transcriptMarkdown(data).toUtf8());
}

} // namespace SessionStore
