#include "Files.h"
#include "QtPrinters.h"
#include "report/CalendarHandler.h"
#include "report/Inbox.h"

#include <QDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class InboxTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        QDir(QFileInfo(Inbox::path()).path()).removeRecursively();
        Inbox::onChange = [this] { ++changes; };
    }
    void TearDown() override { Inbox::onChange = [] {}; }

    static InboxMessage message(const QString &title)
    {
        InboxMessage made;
        made.date = QDateTime(QDate(2026, 11, 18), QTime(9, 30), Qt::UTC);
        made.title = title;
        made.report = {u"**要点** \"引号\" \\ [x], {y}\n"_s, {{u"期中"_s, u"2026-12-01"_s, u"10:00"_s, std::nullopt}}, MindNode{u"根"_s, {}}};
        return made;
    }

    static QStringList titles()
    {
        QStringList list;
        for (const InboxMessage &stored : Inbox::all())
            list << stored.title;
        return list;
    }

    int changes = 0;
};

} // namespace

TEST_F(InboxTest, KeepsTheNewest200AndChangesOnlyWhatIsThere)
{
    EXPECT_EQ(Inbox::unread(), 0);
    for (int i = 1; i <= 201; ++i)
        Inbox::add(message(QString::number(i)));
    EXPECT_EQ(changes, 201);
    QStringList list = titles();
    ASSERT_EQ(list.size(), 200);
    EXPECT_EQ(list.first(), u"201"_s);
    EXPECT_EQ(list.last(), u"2"_s) << "the oldest fell off";

    InboxMessage second = Inbox::all()[1];
    InboxMessage expected = message(u"200"_s);
    expected.id = second.id;
    EXPECT_EQ(second, expected) << "the whole message comes back from the file";
    second.read = true;
    second.emailed = true;
    Inbox::update(second);
    EXPECT_EQ(Inbox::all()[1], second) << "replaced in place";
    EXPECT_EQ(Inbox::unread(), 199);

    Inbox::remove(second.id);
    Inbox::remove(second.id);
    EXPECT_EQ(changes, 204) << "a delete saves even when nothing matched";
    Inbox::update(second);
    EXPECT_EQ(changes, 204) << "an update of a deleted message does nothing";
    EXPECT_EQ(Inbox::all().size(), 199);
}

TEST_F(InboxTest, AnUndecodableFileReadsEmptyAndIsKeptAsideWhenTheNextMessageComes)
{
    const QByteArray missingEmailed =
        R"([{"id":"6F9619FF-8B86-D011-B42D-00C04FC964FF","date":"2026-11-18T09:30:00Z","title":"T",)"
        R"("report":{"notes":"n","events":[]},"read":false}])";
    for (const QByteArray &bytes : {missingEmailed, QByteArray("\x89garbage\xff"), QByteArray("{}")}) {
        SetUp();
        writeFile(Inbox::path(), bytes);
        EXPECT_TRUE(Inbox::all().isEmpty());
        EXPECT_EQ(Inbox::unread(), 0);
        Inbox::update(message(u"x"_s));
        Inbox::add(message(u"new"_s));
        EXPECT_EQ(titles(), QStringList{u"new"_s});
        const QDir folder = QFileInfo(Inbox::path()).dir();
        const QStringList aside = folder.entryList({u"messages.json.unreadable-*"_s}, QDir::Files);
        ASSERT_EQ(aside.size(), 1);
        EXPECT_EQ(readFile(folder.filePath(aside.first())), bytes);
    }
}

TEST(CalendarHandler, OnlyATextBodyReachesRun)
{
    QStringList run;
    for (const QVariant &body : {QVariant(u"{\"title\":\"Quiz\"}"_s), QVariant(42), QVariant(), QVariant(QStringList{u"x"_s})})
        CalendarHandler::receive(body, [&](const QString &text) { run << text; });
    EXPECT_EQ(run, QStringList{u"{\"title\":\"Quiz\"}"_s});
}
