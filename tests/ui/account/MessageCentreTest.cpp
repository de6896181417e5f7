#include "RelayFixture.h"

#include "EventLoop.h"
#include "report/CalendarExport.h"
#include "report/Inbox.h"
#include "report/MindMapImage.h"
#include "ui/account/AccountHome.h"
#include "ui/account/AccountWindow.h"
#include "ui/account/ClickImage.h"
#include "ui/account/InboxPage.h"
#include "ui/account/MenuRow.h"
#include "ui/account/MessagePage.h"
#include "ui/account/PageTitle.h"

#include <QDesktopServices>
#include <QFile>
#include <QMouseEvent>
#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;
using Tone = ToneLabel::Tone;

namespace {

InboxMessage message(const QString &title, const QString &notes, QList<ClassEvent> events, bool withMap, bool read)
{
    InboxMessage made;
    made.title = title;
    made.date = QDateTime(QDate(2026, 11, 23), QTime(14, 5), Qt::UTC);
    made.report.notes = notes;
    made.report.events = std::move(events);
    if (withMap)
        made.report.mindmap = MindNode{u"边际成本"_s, QList<MindNode>{{u"定义"_s, {}}, {u"供给曲线"_s, {}}}};
    made.read = read;
    return made;
}

// Takes the file URLs the desktop would open.
class Opened final : public QObject
{
    Q_OBJECT

public:
    QList<QUrl> urls;

public Q_SLOTS:
    void open(const QUrl &url) { urls.append(url); }
};

} // namespace

class MessageCentreTest : public RelayFixture
{
protected:
    void SetUp() override
    {
        RelayFixture::SetUp();
        signIn(u"mei@example.com"_s);
        Inbox::add(message(u"Old lecture"_s, u"Read before."_s, {}, true, true));
        Inbox::add(message(u"한국어 수업"_s, u"오늘 배운 것"_s, {}, false, false));
        Inbox::add(message(u"微观经济学 第三讲"_s, u"## 边际成本\n- **边际成本** 是多生产一单位的成本"_s,
                           {{u"期中考试"_s, u"2026-11-30"_s, u"09:00"_s, {}}, {u"交作业"_s, u"2026-12-02"_s, {}, {}}},
                           true, false));
        CalendarExport::setOpener([this](const QUrl &file) { calendar.append(file); });
        window.show();
        ASSERT_TRUE(server->waitForRequests(1));
    }
    void TearDown() override
    {
        CalendarExport::setOpener({});
        RelayFixture::TearDown();
    }

    void openRow(int index)
    {
        window.inboxPage()->rows().at(index)->activate();
        ASSERT_EQ(window.currentPage(), window.messagePage());
    }

    void resend(int expectedRequests)
    {
        window.messagePage()->resendButton()->click();
        EXPECT_EQ(window.message(), u"正在发送…"_s);
        ASSERT_TRUE(runEventsUntil([&] {
            return requests().size() == expectedRequests && !window.message().startsWith(u"正在"_s);
        }));
    }

    QList<QUrl> calendar;
    AccountWindow window;
};

TEST_F(MessageCentreTest, ListsOpensMarksResendsAddsAndDeletes)
{
    EXPECT_EQ(window.home()->inboxRow()->value(), u"2 条新消息"_s);
    window.home()->inboxRow()->activate();
    ASSERT_EQ(window.currentPage(), window.inboxPage());
    auto rows = window.inboxPage()->rows();
    ASSERT_EQ(rows.size(), 3);
    EXPECT_EQ(rows[0]->title(), u"微观经济学 第三讲"_s);
    EXPECT_TRUE(rows[0]->value().endsWith(u" · 2 个日期"_s)) << rows[0]->value().toStdString();
    EXPECT_EQ((QList<bool>{rows[0]->unread(), rows[1]->unread(), rows[2]->unread()}), (QList<bool>{true, true, false}));

    openRow(0);
    EXPECT_TRUE(Inbox::all()[0].read);
    EXPECT_EQ(window.home()->inboxRow()->value(), u"1 条新消息"_s);
    const QStringList texts = window.messagePage()->texts();
    EXPECT_TRUE(texts.contains(u"📅 重要日期"_s));
    EXPECT_TRUE(texts.contains(u"2026-11-30 09:00  期中考试"_s));
    EXPECT_TRUE(texts.contains(u"2026-12-02  交作业"_s));
    EXPECT_TRUE(texts.contains(u"## 边际成本\n- 边际成本 是多生产一单位的成本"_s)) << "no ** left";
    EXPECT_TRUE(texts.contains(u"🧠 思维导图"_s));
    ASSERT_TRUE(window.messagePage()->mindMap());
    EXPECT_EQ(window.messagePage()->mindMap()->width(), 270);

    // "＋ 日历" once per display; the opener gets the calendar file instead of an application.
    QPushButton *add = window.messagePage()->calendarButtons().at(1);
    add->click();
    EXPECT_EQ(add->text(), u"✓ 已加入"_s);
    EXPECT_FALSE(add->isEnabled());
    ASSERT_EQ(calendar.size(), 1);
    QFile ics(calendar[0].toLocalFile());
    ASSERT_TRUE(ics.open(QIODevice::ReadOnly));
    const QString ical = QString::fromUtf8(ics.readAll());
    EXPECT_TRUE(ical.contains(u"SUMMARY:交作业"_s));
    EXPECT_TRUE(ical.contains(u"微观经济学 第三讲"_s));

    resend(2);
    EXPECT_EQ(window.message(), u"已发到 mei@example.com。"_s);
    EXPECT_EQ(paths().value(1), u"/mail/report"_s);
    EXPECT_EQ(requests()[1].header("x-quillet-session"), "T1");
    EXPECT_TRUE(Inbox::all()[0].emailed);
    EXPECT_TRUE(window.messagePage()->texts().join(u'|').contains(u" · 已发到邮箱"_s));

    queue(429, "{}");
    resend(3);
    EXPECT_EQ(window.message(), u"今天发的邮件太多了。"_s);
    EXPECT_EQ(window.messageTone(), Tone::error);

    window.messagePage()->title()->back()->click();
    ASSERT_EQ(window.currentPage(), window.inboxPage());
    EXPECT_FALSE(window.inboxPage()->rows()[0]->unread());
    openRow(0);
    EXPECT_TRUE(window.messagePage()->calendarButtons().at(1)->isEnabled()) << "fresh after a reopen";

    window.messagePage()->deleteButton()->click();
    EXPECT_EQ(window.currentPage(), window.inboxPage());
    EXPECT_EQ(window.inboxPage()->rows().size(), 2);
    EXPECT_EQ(Inbox::all().size(), 2);
    EXPECT_EQ(Inbox::all()[0].title, u"한국어 수업"_s);
}

TEST_F(MessageCentreTest, AMindMapThatCantBeDrawnLeavesTheRestAndTheBigPictureOpens)
{
    window.openInbox();
    window.messagePage()->drawMindMap = [](const MindNode &) { return std::optional<QByteArray>(); };
    openRow(0);
    EXPECT_FALSE(window.messagePage()->mindMap());
    EXPECT_FALSE(window.messagePage()->texts().contains(u"🧠 思维导图"_s));
    EXPECT_TRUE(window.messagePage()->texts().contains(u"微观经济学 第三讲"_s));

    window.messagePage()->drawMindMap = MindMapImage::png;
    window.openInbox();
    openRow(2);
    ClickImage *picture = window.messagePage()->mindMap();
    ASSERT_TRUE(picture);
    Opened opened;
    QDesktopServices::setUrlHandler(u"file"_s, &opened, "open");
    QTest::mouseClick(picture, Qt::LeftButton);
    QDesktopServices::unsetUrlHandler(u"file"_s);
    ASSERT_EQ(opened.urls.size(), 1);
    EXPECT_TRUE(opened.urls[0].toLocalFile().endsWith(u"/Quillet-思维导图.png"_s));
    EXPECT_FALSE(QImage(opened.urls[0].toLocalFile()).isNull());

    Inbox::remove(Inbox::all()[2].id);
    Inbox::remove(Inbox::all()[1].id);
    Inbox::remove(Inbox::all()[0].id);
    window.openInbox();
    EXPECT_TRUE(window.inboxPage()->rows().isEmpty());
    EXPECT_TRUE(window.inboxPage()->emptyText().startsWith(u"还没有消息。"_s));
}

#include "MessageCentreTest.moc"
