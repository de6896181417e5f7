#include "session/SessionStore.h"

#include "StoreFixture.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTimeZone>

#include <sys/mount.h>
#include <unistd.h>

using namespace std::chrono_literals;

namespace {

QDateTime utc(int day, int hour = 9)
{
    return QDateTime(QDate(2026, 3, day), QTime(hour, 0), QTimeZone::utc());
}

QStringList names(const SessionStore::Listing &listing)
{
    QStringList result;
    for (const auto &[folder, data] : listing)
        result << QFileInfo(folder).fileName();
    return result;
}

bool exists(const QString &path)
{
    return QFileInfo::exists(path);
}

} // namespace

using SessionStoreTest = StoreFixture;

TEST_F(SessionStoreTest, PathsLieUnderTheDocumentsFolder)
{
    EXPECT_EQ(SessionStore::root(), documents_.path() + QStringLiteral("/Quillet/课程记录"));
    EXPECT_EQ(SessionStore::trashRoot(), documents_.path() + QStringLiteral("/Quillet/最近删除"));
    EXPECT_EQ(SessionStore::wordBook(), documents_.path() + QStringLiteral("/Quillet/单词本.md"));
    SessionStore::useDocumentsFolder({});
    EXPECT_EQ(SessionStore::root(), QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)
                                        + QStringLiteral("/Quillet/课程记录"));
}

TEST_F(SessionStoreTest, WriteProducesTheFilesTheRecordCallsFor)
{
    const QString folder = SessionStore::root() + QStringLiteral("/2026-03-02 18-00");
    SessionData data = SessionData::make(QStringLiteral("Korean"), QStringLiteral("English"), utc(2));
    data.vocabulary = QList<SessionData::Term>();
    SessionStore::write(data, folder);
    EXPECT_FALSE(exists(folder)) << "write makes no folder";

    QDir().mkpath(folder);
    SessionStore::write(data, folder);
    EXPECT_EQ(SessionStore::load(folder), data);
    EXPECT_EQ(read(folder + QStringLiteral("/文字稿.md")), SessionStore::transcriptMarkdown(data).toUtf8());
    EXPECT_FALSE(exists(folder + QStringLiteral("/单词表.md"))) << "an empty vocabulary writes none";
    EXPECT_FALSE(exists(folder + QStringLiteral("/AI笔记.md")));

    data.vocabulary = QList<SessionData::Term>{{QStringLiteral("형태소"), QStringLiteral("morpheme"), QString()}};
    data.summary = QStringLiteral("Morphology.");
    SessionStore::write(data, folder);
    EXPECT_EQ(read(folder + QStringLiteral("/单词表.md")), SessionText::vocabularyMarkdown(data).toUtf8());
    EXPECT_EQ(read(folder + QStringLiteral("/AI笔记.md")), SessionStore::notesMarkdown(data).toUtf8());

    // Files a later record no longer calls for stay as they were.
    const SessionData bare = SessionData::make(QStringLiteral("Korean"), QStringLiteral("English"), utc(2));
    SessionStore::write(bare, folder);
    EXPECT_EQ(read(folder + QStringLiteral("/单词表.md")), SessionText::vocabularyMarkdown(data).toUtf8());
    EXPECT_EQ(read(folder + QStringLiteral("/AI笔记.md")), SessionStore::notesMarkdown(data).toUtf8());
    EXPECT_EQ(SessionStore::load(folder), bare);
    EXPECT_EQ(QDir(folder).entryList(QDir::Files | QDir::Hidden).size(), 4) << "no temporary files left";
}

TEST_F(SessionStoreTest, ListingSkipsWhatIsNoClassAndSortsNewestFirst)
{
    makeClass(QStringLiteral("monday"), utc(2));
    makeClass(QStringLiteral("wednesday"), utc(4));
    makeClass(QStringLiteral(".hidden tuesday"), utc(3));
    const QString root = SessionStore::root();
    put(root + QStringLiteral("/stray.txt"), "not a class");
    QDir().mkpath(root + QStringLiteral("/no record"));
    QDir().mkpath(root + QStringLiteral("/half written"));
    const QByteArray good = read(root + QStringLiteral("/monday/session.json"));
    put(root + QStringLiteral("/half written/session.json"), good.left(good.size() / 2));
    QDir().mkpath(root + QStringLiteral("/bad date"));
    put(root + QStringLiteral("/bad date/session.json"), QByteArray(good).replace("T09:00:00Z", "T09:00:00.000Z"));
    QDir().mkpath(root + QStringLiteral("/unreadable/session.json"));   // a folder where the file should be

    EXPECT_EQ(names(SessionStore::list()),
              QStringList({QStringLiteral("wednesday"), QStringLiteral(".hidden tuesday"), QStringLiteral("monday")}));
    for (const char16_t *name : {u"no record", u"half written", u"unreadable"})
        EXPECT_FALSE(SessionStore::load(root + u'/' + QStringView(name)));
    EXPECT_TRUE(exists(root + QStringLiteral("/stray.txt"))) << "nothing outside a class is touched";
    EXPECT_EQ(SessionStore::usage().classes, 3);

    SessionStore::useDocumentsFolder(documents_.path() + QStringLiteral("/nowhere"));
    EXPECT_TRUE(SessionStore::list().isEmpty());
    EXPECT_TRUE(SessionStore::listDeleted().isEmpty());
}

TEST_F(SessionStoreTest, UniqueCountsUpBehindTheNameAskedFor)
{
    const QString base = SessionStore::root() + QStringLiteral("/2026-03-02 18-00");
    EXPECT_EQ(SessionStore::unique(base), base);
    QDir().mkpath(base);
    EXPECT_EQ(SessionStore::unique(base), base + QStringLiteral(" (2)"));
    QDir().mkpath(base + QStringLiteral(" (2)"));
    put(base + QStringLiteral(" (3)"), "a file clashes as well");
    EXPECT_EQ(SessionStore::unique(base), base + QStringLiteral(" (4)"));
    EXPECT_EQ(SessionStore::unique(base + QStringLiteral(" (2)")), base + QStringLiteral(" (2) (2)"));
}

TEST_F(SessionStoreTest, DeleteAndRestoreKeepNamesUnlessTheyClash)
{
    const QString first = makeClass(QStringLiteral("2026-03-02 18-00"), utc(2));
    const auto deleted = SessionStore::moveToDeleted(first);
    ASSERT_TRUE(deleted);
    EXPECT_EQ(*deleted, SessionStore::trashRoot() + QStringLiteral("/2026-03-02 18-00"));
    EXPECT_FALSE(exists(first));
    EXPECT_EQ(SessionStore::load(*deleted)->deletedAt, clock_.now());

    clock_.advance(1h);
    const QString second = makeClass(QStringLiteral("2026-03-02 18-00"), utc(2));
    const auto deletedAgain = SessionStore::moveToDeleted(second);
    ASSERT_TRUE(deletedAgain);
    EXPECT_EQ(*deletedAgain, SessionStore::trashRoot() + QStringLiteral("/2026-03-02 18-00 (2)"));
    EXPECT_EQ(names(SessionStore::listDeleted()),
              QStringList({QStringLiteral("2026-03-02 18-00 (2)"), QStringLiteral("2026-03-02 18-00")}));
    EXPECT_TRUE(SessionStore::list().isEmpty());

    makeClass(QStringLiteral("2026-03-02 18-00"), utc(2));
    const auto restored = SessionStore::restore(*deleted);
    ASSERT_TRUE(restored);
    EXPECT_EQ(*restored, SessionStore::root() + QStringLiteral("/2026-03-02 18-00 (2)"));
    EXPECT_FALSE(SessionStore::load(*restored)->deletedAt);
    EXPECT_EQ(SessionStore::list().size(), 2);
    EXPECT_EQ(SessionStore::listDeleted().size(), 1);

    // No record: nothing moves.
    const QString stray = SessionStore::root() + QStringLiteral("/stray");
    QDir().mkpath(stray);
    EXPECT_FALSE(SessionStore::moveToDeleted(stray));
    EXPECT_FALSE(SessionStore::restore(stray));
    EXPECT_TRUE(exists(stray));

    SessionStore::erase(*restored);
    EXPECT_FALSE(exists(*restored));
    SessionStore::erase(*restored);   // gone already: nothing to say
}

TEST_F(SessionStoreTest, PurgeFollowsTheClockAndSparesFoldersWithoutRecord)
{
    const auto early = SessionStore::moveToDeleted(makeClass(QStringLiteral("early"), utc(2)));
    clock_.advance(24h);
    const auto late = SessionStore::moveToDeleted(makeClass(QStringLiteral("late"), utc(3)));
    ASSERT_TRUE(early && late);
    EXPECT_EQ(SessionStore::daysLeft(*SessionStore::load(*late)), 15);
    EXPECT_EQ(SessionStore::daysLeft(*SessionStore::load(*early)), 14);

    // Undated records in the trash go at the next purge; folders without a record never do.
    const QString undated = SessionStore::trashRoot() + QStringLiteral("/undated");
    QDir().mkpath(undated);
    SessionStore::write(SessionData::make(QStringLiteral("English"), QStringLiteral("English"), utc(1)), undated);
    const QString broken = SessionStore::trashRoot() + QStringLiteral("/broken");
    QDir().mkpath(broken);
    put(broken + QStringLiteral("/session.json"), "{");
    EXPECT_EQ(names(SessionStore::listDeleted()),
              QStringList({QStringLiteral("late"), QStringLiteral("early"), QStringLiteral("undated")}));
    EXPECT_EQ(SessionStore::daysLeft(*SessionStore::load(undated)), 15);

    SessionStore::purgeExpired();
    EXPECT_EQ(names(SessionStore::listDeleted()), QStringList({QStringLiteral("late"), QStringLiteral("early")}));

    clock_.advance(14 * 24h - 1min);   // early was deleted 15 days less a minute ago
    EXPECT_EQ(SessionStore::daysLeft(*SessionStore::load(*early)), 1);
    SessionStore::purgeExpired();
    EXPECT_EQ(SessionStore::listDeleted().size(), 2);

    clock_.advance(2min);
    EXPECT_EQ(SessionStore::daysLeft(*SessionStore::load(*early)), 0);
    SessionStore::purgeExpired();
    EXPECT_EQ(names(SessionStore::listDeleted()), QStringList({QStringLiteral("late")}));
    EXPECT_TRUE(exists(broken));

    clock_.advance(100 * 24h);
    EXPECT_EQ(SessionStore::daysLeft(*SessionStore::load(*late)), 0) << "never below 0";
}

TEST_F(SessionStoreTest, CategoriesAndRenames)
{
    const QString physics = makeClass(QStringLiteral("a"), utc(2), QStringLiteral("Physics"));
    makeClass(QStringLiteral("b"), utc(3), QStringLiteral(""));
    makeClass(QStringLiteral("c"), utc(4), QStringLiteral("Chemistry"));
    makeClass(QStringLiteral("d"), utc(5), QStringLiteral("Physics"));
    makeClass(QStringLiteral("e"), utc(6));
    EXPECT_EQ(SessionStore::categories(), QStringList({QStringLiteral("Physics"), QStringLiteral("Chemistry")}));

    SessionStore::update(physics, QString(), QString());
    auto data = SessionStore::load(physics);
    EXPECT_EQ(data->title, QString()) << "an empty title is stored as given";
    EXPECT_FALSE(data->category);
    SessionStore::update(physics, QStringLiteral("Optics"), QStringLiteral("Physics II"));
    data = SessionStore::load(physics);
    EXPECT_EQ(data->title, QStringLiteral("Optics"));
    EXPECT_EQ(data->category, QStringLiteral("Physics II"));
    EXPECT_TRUE(read(physics + QStringLiteral("/文字稿.md")).startsWith("# Optics\n\n分类：Physics II · "));

    SessionStore::update(SessionStore::root() + QStringLiteral("/missing"), QStringLiteral("x"), QString());
    EXPECT_FALSE(exists(SessionStore::root() + QStringLiteral("/missing")));
}

TEST_F(SessionStoreTest, SizesAndTheirText)
{
    const QString folder = makeClass(QStringLiteral("a"), utc(2));
    put(folder + QStringLiteral("/录音.m4a"), QByteArray(1'500'000, 'x'));
    QDir().mkpath(folder + QStringLiteral("/inner"));
    put(folder + QStringLiteral("/inner/.hidden"), QByteArray(10, 'x'));
    const qint64 texts = QFileInfo(folder + QStringLiteral("/session.json")).size()
        + QFileInfo(folder + QStringLiteral("/文字稿.md")).size();
    EXPECT_EQ(SessionStore::size(folder + QStringLiteral("/录音.m4a")), 1'500'000);
    EXPECT_EQ(SessionStore::size(folder), 1'500'010 + texts);
    EXPECT_EQ(SessionStore::size(folder + QStringLiteral("/missing")), 0);
    EXPECT_EQ(SessionStore::usage().bytes, 1'500'010 + texts);
    EXPECT_EQ(SessionStore::format(1'500'000), QStringLiteral("1.5 MB"));
    EXPECT_EQ(SessionStore::format(2'340'000'000), QStringLiteral("2.3 GB"));
    EXPECT_EQ(SessionStore::format(999), QStringLiteral("999 bytes"));
}

TEST_F(SessionStoreTest, StorageLimitTrimsTheOldestRecordings)
{
    constexpr qint64 gigabyte = 1'000'000'000;
    // Sparse files: their size counts, their disk blocks don't exist.
    const auto recording = [&](const QString &folder, qint64 bytes, QStringView name = u"录音.m4a") {
        QFile file(folder + u'/' + name);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_TRUE(file.resize(bytes));
    };
    const QString oldest = makeClass(QStringLiteral("1 oldest"), utc(2));
    const QString older = makeClass(QStringLiteral("2 older"), utc(3));
    const QString silent = makeClass(QStringLiteral("3 no audio"), utc(4));
    const QString old = makeClass(QStringLiteral("4 old"), utc(5));
    const QString newest = makeClass(QStringLiteral("5 newest"), utc(6));
    recording(oldest, gigabyte);
    recording(older, gigabyte);
    recording(old, gigabyte);
    recording(newest, gigabyte / 2, u"slides.pdf");
    recording(newest, 2 * gigabyte, u"video.mp4");
    // A deleted class is neither counted nor touched.
    const auto deleted = SessionStore::moveToDeleted(makeClass(QStringLiteral("0 deleted"), utc(1)));
    recording(*deleted, 9 * gigabyte);

    EXPECT_EQ(SessionStore::enforce(0, {}), 0);
    EXPECT_EQ(SessionStore::enforce(6, {}), 0);   // 5.5 GB fit
    EXPECT_EQ(SessionStore::enforce(5, oldest), 1);
    EXPECT_TRUE(exists(oldest + QStringLiteral("/录音.m4a"))) << "the class being recorded keeps its audio";
    EXPECT_FALSE(exists(older + QStringLiteral("/录音.m4a")));
    EXPECT_EQ(SessionStore::load(older)->audioRemoved, true);
    EXPECT_FALSE(SessionStore::load(oldest)->audioRemoved);
    EXPECT_TRUE(exists(older + QStringLiteral("/文字稿.md")));
    const QString trash = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
        + QStringLiteral("/Trash/files");
    EXPECT_EQ(QDir(trash).entryList(QDir::Files).size(), 1) << "in the desktop's Trash, to be had back";

    // The class without a recording doesn't stop the walk.
    recording(newest, 4 * gigabyte, u"video.mp4");
    EXPECT_EQ(SessionStore::enforce(5, {}), 2);
    EXPECT_FALSE(exists(oldest + QStringLiteral("/录音.m4a")));
    EXPECT_FALSE(exists(old + QStringLiteral("/录音.m4a")));
    EXPECT_EQ(SessionStore::load(old)->audioRemoved, true);
    EXPECT_FALSE(SessionStore::load(silent)->audioRemoved);
    EXPECT_EQ(SessionStore::enforce(1, {}), 0) << "nothing left to trim";
    EXPECT_EQ(SessionStore::size(*deleted), 9 * gigabyte + SessionStore::size(*deleted + QStringLiteral("/session.json"))
                                                + SessionStore::size(*deleted + QStringLiteral("/文字稿.md")));
}

TEST_F(SessionStoreTest, WordBookAddsOnlyTermsItLacks)
{
    using Term = SessionData::Term;
    const QString header = QStringLiteral("# Quillet 单词本\n\n课上自动收集的专业词汇。\n");
    SessionStore::addToWordBook({}, QStringLiteral("Week 1"), std::nullopt);
    EXPECT_FALSE(exists(SessionStore::wordBook()));

    SessionStore::addToWordBook({Term{QStringLiteral("torque"), QStringLiteral("力矩"), QString()},
                                 Term{QStringLiteral("torque"), QStringLiteral("扭矩"), QStringLiteral("twice")},
                                 Term{QStringLiteral("angular momentum"), QStringLiteral("角动量"), QString()}},
                                QStringLiteral("Week 1"), std::nullopt);
    const QString week1 = QStringLiteral("\n## 未分类 · Week 1\n\n- **torque**\u3000力矩\n"
                                         "- **torque**\u3000扭矩\u3000— twice\n- **angular momentum**\u3000角动量\n");
    EXPECT_EQ(QString::fromUtf8(read(SessionStore::wordBook())), header + week1);

    SessionStore::addToWordBook({Term{QStringLiteral("torque"), QStringLiteral("x"), QString()}},
                                QStringLiteral("Week 2"), QStringLiteral("Physics"));
    EXPECT_EQ(QString::fromUtf8(read(SessionStore::wordBook())), header + week1) << "nothing new, nothing written";

    // Case counts; a term inside a longer bold term isn't found, the stars must touch it.
    SessionStore::addToWordBook({Term{QStringLiteral("Torque"), QStringLiteral("力矩"), QString()},
                                 Term{QStringLiteral("momentum"), QStringLiteral("动量"), QString()},
                                 Term{QStringLiteral("angular momentum"), QStringLiteral("角动量"), QString()}},
                                QStringLiteral("Week 2"), QStringLiteral("Physics"));
    EXPECT_EQ(QString::fromUtf8(read(SessionStore::wordBook())),
              header + week1
                  + QStringLiteral("\n## Physics · Week 2\n\n- **Torque**\u3000力矩\n- **momentum**\u3000动量\n"));
}

TEST_F(SessionStoreTest, StudentNotesAndTheLiveTranscript)
{
    const QString folder = makeClass(QStringLiteral("a"), utc(2));
    EXPECT_EQ(SessionStore::myNotes(folder), QString());
    SessionStore::saveMyNotes(QStringLiteral("  my own words\n第二行"), folder);
    EXPECT_EQ(SessionStore::myNotes(folder), QStringLiteral("  my own words\n第二行"));
    EXPECT_EQ(SessionStore::myNotes(SessionStore::root() + QStringLiteral("/missing")), QString());

    const SessionData data = *SessionStore::load(folder);
    SessionStore::saveLiveTranscript(data, folder);
    EXPECT_EQ(read(folder + QStringLiteral("/文字稿（实时版）.md")), SessionStore::transcriptMarkdown(data).toUtf8());
}

namespace {

// A folder in which writes fail: a 64 kB file system when the test may mount one, else a folder
// without write permission (which binds everyone but root).
class FullFolder final
{
public:
    explicit FullFolder(const QString &path)
        : path_(path)
    {
        QDir().mkpath(path);
        mounted_ = ::mount("tmpfs", QFile::encodeName(path).constData(), "tmpfs", 0, "size=64k") == 0;
    }
    ~FullFolder()
    {
        if (mounted_)
            ::umount(QFile::encodeName(path_).constData());
    }
    FullFolder(const FullFolder &) = delete;
    FullFolder &operator=(const FullFolder &) = delete;
    FullFolder(FullFolder &&) = delete;
    FullFolder &operator=(FullFolder &&) = delete;

    bool usable() const { return mounted_ || ::geteuid() != 0; }

    // Takes the room that is left, or the right to write.
    void fill() const
    {
        if (!mounted_) {
            QFile::setPermissions(path_, QFile::ReadOwner | QFile::ExeOwner);
            return;
        }
        QFile filler(path_ + QStringLiteral("/filler"));
        if (filler.open(QIODevice::WriteOnly)) {
            const QByteArray block(1024, 'f');
            while (filler.write(block) == block.size() && filler.flush()) {
            }
        }
    }

private:
    QString path_;
    bool mounted_ = false;
};

} // namespace

TEST_F(SessionStoreTest, FullDiskNeverReplacesTheLastGoodFiles)
{
    const QString folder = SessionStore::root() + QStringLiteral("/full");
    FullFolder full(folder);
    if (!full.usable())
        GTEST_SKIP() << "root without the right to mount: no way to make writes fail";

    SessionData data = SessionData::make(QStringLiteral("English"), QStringLiteral("English"), utc(2));
    data.lines = {{1, QStringLiteral("first line"), QString()}};
    SessionStore::write(data, folder);
    ASSERT_EQ(SessionStore::load(folder), data);
    const QByteArray transcript = read(folder + QStringLiteral("/文字稿.md"));

    full.fill();
    SessionData longer = data;
    for (int i = 0; i < 2000; ++i)
        longer.lines.append({double(i), QStringLiteral("a line that will not fit on the disk"), QStringLiteral("译文")});
    longer.summary = QStringLiteral("summary");
    SessionStore::write(longer, folder);
    SessionStore::saveMyNotes(QString(100'000, u'n'), folder);

    EXPECT_EQ(SessionStore::load(folder), data);
    EXPECT_EQ(read(folder + QStringLiteral("/文字稿.md")), transcript);
    EXPECT_EQ(SessionStore::myNotes(folder), QString());
    // A small new file may still fit; then it is whole. No temporary file is left behind.
    if (exists(folder + QStringLiteral("/AI笔记.md"))) {
        EXPECT_EQ(read(folder + QStringLiteral("/AI笔记.md")), SessionStore::notesMarkdown(longer).toUtf8());
    }
    QStringList left = QDir(folder).entryList(QDir::Files | QDir::Hidden);
    left.removeAll(QStringLiteral("filler"));
    left.removeAll(QStringLiteral("AI笔记.md"));
    EXPECT_EQ(left, QStringList({QStringLiteral("session.json"), QStringLiteral("文字稿.md")}));
}
