#include "support/PageProbe.h"
#include "ui/art/AvatarButton.h"
#include "ui/chat/ChatInputBar.h"
#include "ui/panel/LanguageRow.h"
#include "ui/panel/Panel.h"
#include "ui/panel/PanelHeader.h"
#include "ui/panel/StatusLine.h"
#include "ui/web/FeedView.h"
#include "ui/web/TranscriptView.h"

#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QMenu>
#include <QSplitter>
#include <QTemporaryDir>
#include <QTest>
#include <QWebEngineView>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

struct PanelFixture : ::testing::Test
{
    QTemporaryDir folder;
    Panel panel;
    QStringList slides;
    QList<std::pair<QString, QList<Attachment>>> sent;

    void SetUp() override
    {
        panel.onSlidesFile = [this](const QString &path) { slides << path; };
        panel.onSend = [this](const QString &text, const QList<Attachment> &files) { sent.append({text, files}); };
        panel.show();
    }

    QString file(const QString &name, const QByteArray &bytes = "%PDF-1.4\n")
    {
        QFile out(folder.filePath(name));
        EXPECT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(bytes);
        return out.fileName();
    }

    qsizetype chips() const { return panel.input().files().attachments().size(); }
};

} // namespace

TEST_F(PanelFixture, DroppedFilesGoToTheSlidesAndTheChipsByKind)
{
    struct Case
    {
        QStringList names;
        QStringList toSlides;
        qsizetype chips;
    };
    const Case cases[] = {
        {{u"deck.pptx"_s}, {u"deck.pptx"_s}, 0},
        {{u"notes.pdf"_s}, {u"notes.pdf"_s}, 1},
        {{u"a.pdf"_s, u"b.pdf"_s}, {u"a.pdf"_s}, 2},
        {{u"read.txt"_s, u"talk.KEY"_s}, {u"talk.KEY"_s}, 1},
    };
    for (const Case &c : cases) {
        slides.clear();
        panel.input().removeFiles();
        QStringList paths;
        for (const QString &name : c.names)
            paths << file(name);
        panel.input().attach(paths);
        QStringList expected;
        for (const QString &name : c.toSlides)
            expected << folder.filePath(name);
        EXPECT_EQ(slides, expected) << c.names.join(u' ').toStdString();
        EXPECT_EQ(chips(), c.chips) << c.names.join(u' ').toStdString();
        EXPECT_EQ(panel.chips().isVisibleTo(&panel), c.chips > 0);
    }
}

TEST_F(PanelFixture, SendNeedsTextOrFilesAndFilesAloneAskForTheirGist)
{
    panel.input().field()->setText(u"   "_s);
    panel.input().send();
    EXPECT_TRUE(sent.isEmpty());

    panel.input().attach({file(u"read.txt"_s, "hello")});
    panel.input().send();
    ASSERT_EQ(sent.size(), 1);
    EXPECT_EQ(sent[0].first, u"请看一下这些文件，用中文简单说说重点。"_s);
    EXPECT_EQ(sent[0].second.size(), 1);
    EXPECT_EQ(chips(), 0);
    EXPECT_FALSE(panel.chips().isVisibleTo(&panel));

    panel.input().field()->setText(u"  这一页讲什么？\n"_s);
    panel.input().send();
    ASSERT_EQ(sent.size(), 2);
    EXPECT_EQ(sent[1].first, u"这一页讲什么？"_s);
    EXPECT_TRUE(panel.input().field()->text().isEmpty());
}

TEST_F(PanelFixture, AFolderOrAFileOfAnUnknownKindIsNamedInTheFeedAndTheRestAttached)
{
    ASSERT_TRUE(QTest::qWaitFor([&] { return panel.feed().ready(); }, 30000));
    QDir(folder.path()).mkdir(u"week3"_s);
    panel.input().attach({folder.filePath(u"week3"_s), file(u"talk.mp3"_s), file(u"ok.txt"_s, "fine")});
    EXPECT_EQ(chips(), 1);
    const QJsonValue notes = PageProbe::read(panel.feed().web(), u"[...document.querySelectorAll('.note')].length"_s);
    EXPECT_EQ(notes.toInt(), 2);
}

TEST_F(PanelFixture, TheLectureLanguageNeverShowsAmongTheExtras)
{
    panel.setLanguages(u"English"_s, u"Simplified Chinese"_s, {u"English"_s, u"Korean"_s});
    LanguageRow &row = panel.languages();
    EXPECT_EQ(row.extrasTitle(), u"＋韩语"_s);
    QStringList rows;
    for (QAction *item : row.extrasMenu()->actions())
        rows << item->data().toString();
    EXPECT_FALSE(rows.contains(u"English"_s));
    EXPECT_TRUE(rows.contains(u"Korean"_s));

    QStringList reported;
    panel.onExtras = [&](const QStringList &extras) { reported = extras; };
    row.toggleExtra(u"Korean"_s);
    EXPECT_EQ(reported, QStringList{u"English"_s});
    EXPECT_EQ(row.extrasTitle(), u"＋"_s);
}

TEST_F(PanelFixture, ShowingOnlyTheTranslationTakesTheInputsHeightAway)
{
    panel.applyShow(u"translation"_s);
    QTest::qWait(50);
    EXPECT_EQ(panel.inputBox().height(), 0);
    EXPECT_FALSE(panel.aiBox().isVisibleTo(&panel));
    EXPECT_TRUE(panel.transcriptView().web()->isVisibleTo(&panel));

    panel.applyShow(u"ai"_s);
    EXPECT_FALSE(panel.transcriptView().web()->isVisibleTo(&panel));
    EXPECT_TRUE(panel.inputBox().isVisibleTo(&panel));

    panel.applyShow(u"both"_s);
    const QList<int> sizes = panel.split().sizes();
    EXPECT_NEAR(double(sizes[0]) / (sizes[0] + sizes[1]), 0.6, 0.03);
    // The orientation already in force leaves the divider where the student put it.
    panel.split().setSizes({120, sizes[0] + sizes[1] - 120});
    panel.setLayout(u"vertical"_s);
    EXPECT_EQ(panel.split().sizes()[0], 120);
    panel.setLayout(u"horizontal"_s);
    EXPECT_EQ(panel.split().orientation(), Qt::Horizontal);
    EXPECT_GE(panel.width(), 720);
}

TEST_F(PanelFixture, StatusDotAccountAndAttention)
{
    struct Case
    {
        QString status, shown;
        QColor dot;
    };
    const Case cases[] = {
        {u"● 正在听 English"_s, u"正在听 English"_s, QColor(0x34, 0xc7, 0x59)},
        {u"⚠️ 没有网络"_s, u"没有网络"_s, QColor(0xff, 0x95, 0x00)},
        {u"已停止"_s, u"已停止"_s, QColor(0x8e, 0x8e, 0x93)},
        {u"<b>x</b>"_s, u"<b>x</b>"_s, QColor(0x8e, 0x8e, 0x93)},
    };
    for (const Case &c : cases) {
        panel.setStatus(c.status);
        EXPECT_EQ(panel.header().status()->text(), c.shown);
        EXPECT_EQ(panel.header().status()->dotColor(), c.dot) << c.status.toStdString();
    }

    panel.setAccount(u"Mina@Example.com"_s);
    EXPECT_EQ(panel.header().avatar()->letter(), u"M"_s);
    EXPECT_EQ(panel.header().avatar()->toolTip(), u"账户：Mina@Example.com"_s);
    panel.setAccount(std::nullopt);
    EXPECT_FALSE(panel.header().avatar()->letter().has_value());
    EXPECT_EQ(panel.header().avatar()->toolTip(), u"登录"_s);

    panel.addCard(u"可以这样回答"_s, u"…"_s, u"10:00"_s);
    EXPECT_EQ(panel.alerts(), 0);
    panel.addCard(u"考试重点"_s, u"期中考第三章"_s, u"10:01"_s);
    EXPECT_EQ(panel.alerts(), 1);
}
