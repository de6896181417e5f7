#include "session/SessionStore.h"

#include "SessionFixture.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTimeZone>


using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

QDateTime march(int day)
{
    return QDateTime(QDate(2026, 3, day), QTime(9, 0), QTimeZone::utc());
}

QStringList names(const SessionStore::Listing &listing)
{
    QStringList result;
    for (const auto &[folder, data] : listing)
        result << QFileInfo(folder).fileName();
    return result;
}

// A class folder under the class root holding a record started on that day of March.
QString makeClass(const QString &name, int day, const std::optional<QString> &category = {})
{
    const QString folder = SessionStore::root() + u'/' + name;
    QDir().mkpath(folder);
    SessionData data = SessionData::make(u"English"_s, u"Korean"_s, march(day));
    data.title = name;
    data.category = category;
    SessionStore::write(data, folder);
    return folder;
}

} // namespace

using SessionStoreTest = SessionFixture;

TEST_F(SessionStoreTest, WritesTheFilesARecordCallsForAndNeverABrokenOne)
{
    const QString folder = documents_.path() + u"/Quillet/课程记录/2026-03-02 18-00";
    const auto file = [&](QStringView name) { return readFile(folder + u'/' + name); };
    SessionData data = SessionData::make(u"Korean"_s, u"English"_s, march(2));
    data.vocabulary = QList<SessionData::Term>();
    SessionStore::write(data, folder);
    EXPECT_FALSE(QFileInfo::exists(folder)) << "write makes no folder";
    QDir().mkpath(folder);
    SessionStore::write(data, folder);
    EXPECT_EQ(file(u"文字稿.md"), SessionText::transcriptMarkdown(data).toUtf8());
    EXPECT_EQ(QDir(folder).entryList(QDir::Files | QDir::Hidden), QStringList({u"session.json"_s, u"文字稿.md"_s}))
        << "an empty vocabulary and no notes write nothing more, and no temporary file is left";

    data.vocabulary = QList<SessionData::Term>{{u"형태소"_s, u"morpheme"_s, {}}};
    data.summary = u"Morphology."_s;
    SessionStore::write(data, folder);
    // Files a later record no longer calls for stay as they were.
    const SessionData bare = SessionData::make(u"Korean"_s, u"English"_s, march(2));
    SessionStore::write(bare, folder);
    EXPECT_EQ(SessionStore::load(folder), bare);
    EXPECT_EQ(file(u"单词表.md"), SessionText::vocabularyMarkdown(data).toUtf8());
    EXPECT_EQ(file(u"AI笔记.md"), SessionText::notesMarkdown(data).toUtf8());
    SessionStore::saveMyNotes(u"  my own words\n第二行"_s, folder);
    EXPECT_EQ(SessionStore::myNotes(folder), u"  my own words\n第二行"_s);
    SessionStore::saveLiveTranscript(data, folder);
    EXPECT_EQ(file(u"文字稿（实时版）.md"), SessionText::transcriptMarkdown(data).toUtf8());

    // No file may grow past 4 kB, as on a disk that fills up while the last buffer is written.
    SessionData longer = bare;
    for (int i = 0; i < 100; ++i)
        longer.lines.append({double(i), u"a line that will not fit"_s, u"译文"_s});
    longer.summary = u"summary"_s;
    const QString big = SessionStore::root() + u"/big";
    QDir().mkpath(big);
    SessionStore::write(longer, big);
    {
        const FullDisk full(4'096);
        SessionStore::write(longer, folder);
        SessionStore::saveMyNotes(QString(10'000, u'n'), folder);
        EXPECT_FALSE(SessionStore::moveToDeleted(big)) << "a class whose deletion date can't be written stays";
    }
    EXPECT_EQ(SessionStore::load(big), longer);
    EXPECT_EQ(SessionStore::load(folder), bare);
    EXPECT_EQ(file(u"文字稿.md"), SessionText::transcriptMarkdown(bare).toUtf8());
    EXPECT_EQ(SessionStore::myNotes(folder), u"  my own words\n第二行"_s);
    EXPECT_EQ(file(u"AI笔记.md"), SessionText::notesMarkdown(longer).toUtf8()) << "small enough: whole";
    EXPECT_EQ(QDir(folder).entryList(QDir::Files | QDir::Hidden).size(), 6) << "no temporary file left";
}

TEST_F(SessionStoreTest, ListsClassesNewestFirstSkipsWhatIsNoClassAndRenames)
{
    const QString monday = makeClass(u"monday"_s, 2, u"Physics"_s);
    makeClass(u".hidden tuesday"_s, 3, u""_s);
    makeClass(u"wednesday"_s, 4, u"Chemistry"_s);
    makeClass(u"thursday"_s, 5, u"Physics"_s);
    const QString root = SessionStore::root();
    writeFile(root + u"/stray.txt", "not a class");
    // The last a folder where the record should be.
    for (const QStringView name : {u"no record", u"half written", u"unreadable/session.json"})
        QDir().mkpath(root + u'/' + name);
    writeFile(root + u"/half written/session.json", readFile(monday + u"/session.json").left(100));
    EXPECT_EQ(names(SessionStore::list()),
              QStringList({u"thursday"_s, u"wednesday"_s, u".hidden tuesday"_s, u"monday"_s}));
    EXPECT_FALSE(SessionStore::load(root + u"/unreadable"));
    EXPECT_EQ(SessionStore::categories(), QStringList({u"Physics"_s, u"Chemistry"_s}));

    const auto named = [&] {
        return std::pair(SessionStore::load(monday)->title, SessionStore::load(monday)->category);
    };
    SessionStore::update(monday, QString(), QString());   // an empty title is stored as given
    EXPECT_EQ(named(), std::pair(QString(), std::optional<QString>()));
    SessionStore::update(monday, u"Optics"_s, u"Physics II"_s);
    EXPECT_EQ(named(), std::pair(u"Optics"_s, std::optional(u"Physics II"_s)));
    EXPECT_TRUE(readFile(monday + u"/文字稿.md").startsWith("# Optics\n\n分类：Physics II · "));
    SessionStore::update(root + u"/no record", u"x"_s, QString());
    EXPECT_TRUE(QDir(root + u"/no record").isEmpty());
}

TEST_F(SessionStoreTest, UniqueNamesDeleteRestoreAndPurgeByTheClock)
{
    const QString name = u"2026-03-02 18-00"_s;
    const QString base = SessionStore::root() + u'/' + name;
    EXPECT_EQ(SessionStore::unique(base), base);
    QDir().mkpath(base + u" (2)");
    writeFile(base + u" (3)", "a file clashes as well");
    EXPECT_EQ(SessionStore::unique(base + u" (2)"), base + u" (2) (2)");

    const QString deleted = SessionStore::moveToDeleted(makeClass(name, 2)).value();
    EXPECT_EQ(deleted, documents_.path() + u"/Quillet/最近删除/" + name);
    EXPECT_FALSE(QFileInfo::exists(base));
    EXPECT_EQ(SessionStore::load(deleted)->deletedAt, clock_.now());
    const QString early = SessionStore::moveToDeleted(makeClass(name, 2)).value();
    EXPECT_EQ(early, SessionStore::trashRoot() + u'/' + name + u" (2)");
    makeClass(name, 2);
    const QString restored = SessionStore::restore(deleted).value();
    EXPECT_EQ(restored, base + u" (4)");
    EXPECT_FALSE(SessionStore::load(restored)->deletedAt);
    EXPECT_FALSE(SessionStore::moveToDeleted(base + u" (2)")) << "no record: nothing moves";
    EXPECT_TRUE(QFileInfo::exists(base + u" (2)"));
    SessionStore::erase(restored);
    EXPECT_FALSE(QFileInfo::exists(restored));

    // Fifteen days in the trash; undated records go at the next purge, folders without a record never.
    clock_.advance(24h);
    const QString late = SessionStore::moveToDeleted(makeClass(u"late"_s, 3)).value();
    const auto daysLeft = [](const QString &folder) {
        return SessionStore::daysLeft(SessionStore::load(folder).value());
    };
    EXPECT_EQ(daysLeft(late), 15);
    EXPECT_EQ(daysLeft(early), 14);
    const QString undated = SessionStore::trashRoot() + u"/undated";
    const QString broken = SessionStore::trashRoot() + u"/broken";
    QDir().mkpath(undated);
    QDir().mkpath(broken);
    SessionStore::write(SessionData::make(u"English"_s, u"English"_s, march(1)), undated);
    writeFile(broken + u"/session.json", "{");
    EXPECT_EQ(names(SessionStore::listDeleted()), QStringList({u"late"_s, name + u" (2)", u"undated"_s}));
    SessionStore::purgeExpired();
    EXPECT_EQ(names(SessionStore::listDeleted()), QStringList({u"late"_s, name + u" (2)"}));
    clock_.advance(14 * 24h - 1min);   // early was deleted 15 days less a minute ago
    EXPECT_EQ(daysLeft(early), 1);
    SessionStore::purgeExpired();
    EXPECT_EQ(SessionStore::listDeleted().size(), 2);
    clock_.advance(2min);
    EXPECT_EQ(daysLeft(early), 0);
    SessionStore::purgeExpired();
    EXPECT_EQ(names(SessionStore::listDeleted()), QStringList({u"late"_s}));
    EXPECT_TRUE(QFileInfo::exists(broken));
    clock_.advance(100 * 24h);
    EXPECT_EQ(daysLeft(late), 0) << "never below 0";
}

TEST_F(SessionStoreTest, TheLimitSendsTheOldestRecordingsToTheTrash)
{
    constexpr qint64 gigabyte = 1'000'000'000;
    // Sparse files: their size counts, their disk blocks don't exist.
    const auto sized = [](const QString &folder, qint64 bytes, QStringView name = u"录音.m4a") {
        QFile file(folder + u'/' + name);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.resize(bytes));
    };
    const auto recorded = [](const QString &folder) { return QFileInfo::exists(folder + u"/录音.m4a"); };
    const QString oldest = makeClass(u"1 oldest"_s, 2);
    const QString older = makeClass(u"2 older"_s, 3);
    const QString silent = makeClass(u"3 no audio"_s, 4);
    const QString old = makeClass(u"4 old"_s, 5);
    const QString newest = makeClass(u"5 newest"_s, 6);
    for (const QString &folder : {oldest, older, old})
        sized(folder, gigabyte);
    QDir().mkpath(newest + u"/inner");
    sized(newest, gigabyte / 2, u"slides.pdf");
    sized(newest, 2 * gigabyte, u"inner/.video.mp4");   // hidden in a folder, and still counted
    // A deleted class is neither counted nor touched.
    const QString deleted = SessionStore::moveToDeleted(makeClass(u"0 deleted"_s, 1)).value();
    sized(deleted, 9 * gigabyte);
    const qint64 texts = SessionStore::usage().bytes - 5'500'000'000;   // records and transcripts
    EXPECT_TRUE(texts > 0 && texts < 10'000) << texts;
    EXPECT_EQ(QStringList({SessionStore::format(1'500'000), SessionStore::format(2'340'000'000),
                           SessionStore::format(999)}),
              QStringList({u"1.5 MB"_s, u"2.3 GB"_s, u"999 bytes"_s}));

    const QDir trash(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/Trash/files");
    const qsizetype trashed = trash.entryList(QDir::Files).size();   // by earlier runs of the test
    EXPECT_EQ(SessionStore::enforce(0, {}), 0);
    EXPECT_EQ(SessionStore::enforce(6, {}), 0);   // 5.5 GB fit
    EXPECT_EQ(SessionStore::enforce(5, oldest), 1);
    EXPECT_TRUE(recorded(oldest)) << "the class being recorded keeps its audio";
    EXPECT_FALSE(recorded(older));
    EXPECT_EQ(SessionStore::load(older)->audioRemoved, true);
    EXPECT_EQ(trash.entryList(QDir::Files).size(), trashed + 1) << "in the desktop's Trash, to be had back";

    // The class without a recording doesn't stop the walk.
    sized(newest, 4 * gigabyte, u"inner/.video.mp4");
    EXPECT_EQ(SessionStore::enforce(5, {}), 2);
    EXPECT_FALSE(recorded(oldest) || recorded(old));
    EXPECT_EQ(SessionStore::load(old)->audioRemoved, true);
    EXPECT_FALSE(SessionStore::load(silent)->audioRemoved);
    EXPECT_EQ(SessionStore::enforce(1, {}), 0) << "nothing left to trim";
    EXPECT_TRUE(recorded(deleted));
}

TEST_F(SessionStoreTest, WordBookAddsOnlyTermsItLacks)
{
    using Term = SessionData::Term;
    const auto book = [&] { return QString::fromUtf8(readFile(SessionStore::wordBook())); };
    SessionStore::addToWordBook({}, u"Week 1"_s, std::nullopt);
    EXPECT_FALSE(QFileInfo::exists(documents_.path() + u"/Quillet/单词本.md"));

    SessionStore::addToWordBook({Term{u"torque"_s, u"力矩"_s, {}}, Term{u"torque"_s, u"扭矩"_s, u"twice"_s},
                                 Term{u"angular momentum"_s, u"角动量"_s, {}}},
                                u"Week 1"_s, std::nullopt);
    const QString week1 = u"# Quillet 单词本\n\n课上自动收集的专业词汇。\n\n## 未分类 · Week 1\n\n- **torque**\u3000力矩\n"
                          u"- **torque**\u3000扭矩\u3000— twice\n- **angular momentum**\u3000角动量\n"_s;
    EXPECT_EQ(book(), week1);
    SessionStore::addToWordBook({Term{u"torque"_s, u"x"_s, {}}}, u"Week 2"_s, u"Physics"_s);
    EXPECT_EQ(book(), week1) << "nothing new, nothing written";

    // Case counts; a term inside a longer bold term isn't found, the stars must touch it.
    SessionStore::addToWordBook({Term{u"Torque"_s, u"力矩"_s, {}}, Term{u"momentum"_s, u"动量"_s, {}},
                                 Term{u"angular momentum"_s, u"角动量"_s, {}}},
                                u"Week 2"_s, u"Physics"_s);
    EXPECT_EQ(book(), week1 + u"\n## Physics · Week 2\n\n- **Torque**\u3000力矩\n- **momentum**\u3000动量\n");

    // A book that isn't UTF-8 any more is kept aside, never written over.
    writeFile(SessionStore::wordBook(), "\xff\xfe broken");
    SessionStore::addToWordBook({Term{u"torque"_s, u"力矩"_s, {}}}, u"Week 3"_s, std::nullopt);
    const QStringList aside = QDir(documents_.path() + u"/Quillet"_s).entryList({u"单词本.md.unreadable-*"_s});
    ASSERT_EQ(aside.size(), 1);
    EXPECT_EQ(readFile(documents_.path() + u"/Quillet/"_s + aside[0]), "\xff\xfe broken");
    EXPECT_TRUE(book().startsWith(u"# Quillet 单词本\n"_s));
    EXPECT_TRUE(book().contains(u"**torque**"_s));
}
