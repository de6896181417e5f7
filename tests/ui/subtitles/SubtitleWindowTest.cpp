#include "ui/subtitles/SubtitleWindow.h"

#include "X11Client.h"
#include "settings/UserDefaults.h"
#include "support/PageProbe.h"
#include "ui/subtitles/SubtitleColors.h"
#include "ui/subtitles/SubtitleFonts.h"
#include "ui/web/TranscriptView.h"

#include <QColorDialog>
#include <QGuiApplication>
#include <QScreen>
#include <QSettings>
#include <QTest>
#include <QWidgetAction>

#include <gtest/gtest.h>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

class SubtitleWindowTest : public ::testing::Test
{
protected:
    void SetUp() override { QSettings().clear(); }
};

QVariant stored(const char *key)
{
    return UserDefaults::value(key, {});
}

// The menu's rows by section (fonts, translation colours, source colours), headers left out.
QList<QList<QAction *>> sections(QMenu *menu)
{
    QList<QList<QAction *>> result{{}};
    for (QAction *action : menu->actions()) {
        if (action->isSeparator())
            result.append(QList<QAction *>());
        else if (!qobject_cast<QWidgetAction *>(action))
            result.last().append(action);
    }
    return result;
}

QStringList checked(const QList<QAction *> &rows)
{
    QStringList labels;
    for (const QAction *row : rows)
        if (row->isChecked())
            labels << row->text();
    return labels;
}

// The checked labels of each section of the menu as it would open now.
QList<QStringList> marks(SubtitleWindow &bar)
{
    const std::unique_ptr<QMenu> menu(bar.styleMenu());
    QList<QStringList> result;
    for (const QList<QAction *> &rows : sections(menu.get()))
        result << checked(rows);
    return result;
}

QAction *row(const QList<QAction *> &rows, const QString &label)
{
    for (QAction *action : rows)
        if (action->text() == label)
            return action;
    ADD_FAILURE() << "no row " << label.toStdString();
    return nullptr;
}

// The page's value of a JSON expression, once the page has loaded.
QJsonValue page(SubtitleWindow &bar, const QString &expression)
{
    EXPECT_TRUE(QTest::qWaitFor([&] { return bar.transcript().ready(); }, 30000));
    return PageProbe::read(bar.transcript().web(), expression);
}

void showAndWait(SubtitleWindow &bar)
{
    bar.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&bar));
}

} // namespace

TEST_F(SubtitleWindowTest, TextSizeStaysWithinTwelveToFortyEightAndReachesThePage)
{
    struct Step { double start; std::function<void(SubtitleWindow &)> act; double size; };
    const QList<Step> steps = {
        {47, [](SubtitleWindow &bar) { bar.larger(); }, 48},
        {48, [](SubtitleWindow &bar) { bar.larger(); }, 48},
        {13, [](SubtitleWindow &bar) { bar.smaller(); }, 12},
        {12, [](SubtitleWindow &bar) { bar.smaller(); }, 12},
        {22, [](SubtitleWindow &bar) { bar.setTextSize(100); }, 48},
    };
    SubtitleWindow bar;
    for (const Step &step : steps) {
        bar.setTextSize(step.start);
        step.act(bar);
        EXPECT_EQ(bar.fontSize(), step.size) << step.start;
        EXPECT_EQ(stored(SubtitleFonts::sizeKey).toDouble(), step.size) << step.start;
    }
    EXPECT_EQ(page(bar, u"document.documentElement.style.fontSize"_s).toString(), u"48px"_s);
    EXPECT_EQ(SubtitleWindow(nullptr).fontSize(), 48);
}

TEST_F(SubtitleWindowTest, StoredValuesOfTheWrongKindFallBackToTheDefaults)
{
    UserDefaults::setValue(SubtitleFonts::sizeKey, u"big"_s);
    UserDefaults::setValue(SubtitleWindow::opacityKey, u"half"_s);
    SubtitleWindow bar;
    EXPECT_EQ(bar.fontSize(), 22);
    EXPECT_EQ(bar.opacity(), 0.75);
    EXPECT_EQ(bar.fontID(), u"system"_s);
    bar.setOpacity(0.05);
    EXPECT_EQ(stored(SubtitleWindow::opacityKey).toDouble(), 0.15);
}

TEST_F(SubtitleWindowTest, ClosingHidesAndToggleBringsItBackOrOnlyRestoresAMinimisedBar)
{
    SubtitleWindow bar;
    int hidden = 0;
    bar.onHide = [&] { ++hidden; };
    showAndWait(bar);
    if (QGuiApplication::platformName() == u"xcb") {
        X11Client::requestClose(bar.winId());  // as the window manager's close button does
        ASSERT_TRUE(QTest::qWaitFor([&] { return !bar.isVisible(); }, 5000));
    } else {
        bar.close();  // no X display: the close request through Qt
    }
    EXPECT_FALSE(bar.isVisible());
    EXPECT_EQ(hidden, 1);

    bar.toggle();
    EXPECT_TRUE(bar.isVisible());
    bar.toggle();
    EXPECT_FALSE(bar.isVisible());
    EXPECT_EQ(hidden, 2);

    showAndWait(bar);
    bar.showMinimized();
    ASSERT_TRUE(bar.isMinimized());
    bar.toggle();
    EXPECT_FALSE(bar.isMinimized());
    EXPECT_TRUE(bar.isVisible());
    EXPECT_EQ(hidden, 2);
}

TEST_F(SubtitleWindowTest, MenuMarksStoredChoicesAndOnlyTheFontReachesThePanel)
{
    SubtitleWindow bar;
    QStringList fonts;
    bar.onFont = [&](const QString &id) { fonts << id; };
    EXPECT_EQ(marks(bar), QList<QStringList>({{u"思源黑体（系统默认）"_s}, {u"白色（默认）"_s}, {u"浅灰（默认）"_s}}));

    // Each step acts through a freshly built menu, as the student would.
    struct Step { int section; QString label; QStringList fonts; QString dst; QString src; };
    const QList<Step> steps = {
        {0, u"霞鹜文楷"_s, {u"wenkai"_s}, {}, {}},
        {1, u"樱花粉"_s, {u"wenkai"_s}, u"#ffa3c7"_s, {}},
        {2, u"天蓝"_s, {u"wenkai"_s}, u"#ffa3c7"_s, u"#7fd6ff"_s},
        {1, u"白色（默认）"_s, {u"wenkai"_s}, {}, u"#7fd6ff"_s},
    };
    for (const Step &step : steps) {
        std::unique_ptr<QMenu> built(bar.styleMenu());
        row(sections(built.get())[step.section], step.label)->trigger();
        EXPECT_EQ(fonts, step.fonts) << step.label.toStdString();
        EXPECT_EQ(stored(SubtitleColors::translationKey).toString(), step.dst);
        EXPECT_EQ(stored(SubtitleColors::sourceKey).toString(), step.src);
        EXPECT_EQ(marks(bar)[step.section], QStringList{step.label});
    }
    bar.larger();
    EXPECT_EQ(fonts, QStringList{u"wenkai"_s});
    EXPECT_EQ(bar.fontID(), u"wenkai"_s);
    EXPECT_TRUE(page(bar, u"getComputedStyle(document.body).fontFamily"_s).toString().contains(u"LXGW WenKai"_s));
}

TEST_F(SubtitleWindowTest, CustomColoursAreStoredLowerCaseAndMarkedOnlyWhenTheyMatchARow)
{
    struct Case { QString before; QColor chosen; QColor offered; QString stored; QStringList marked; };
    const QList<Case> cases = {
        {{}, QColor(0x12, 0xAB, 0xEF), Qt::white, u"#12abef"_s, {}},
        {u"#12abef"_s, QColor(0xFF, 0xD8, 0x4D), QColor(0x12, 0xab, 0xef), u"#ffd84d"_s, {u"亮黄"_s}},
        {u"not a colour"_s, QColor::fromRgbF(0.2f, 0.4f, 0.6f), Qt::white, u"#336699"_s, {}},
    };
    SubtitleWindow bar;
    for (const Case &c : cases) {
        UserDefaults::setValue(SubtitleColors::translationKey, c.before);
        std::unique_ptr<QMenu> built(bar.styleMenu());
        row(sections(built.get())[1], u"自定义…"_s)->trigger();
        auto *panel = bar.findChild<QColorDialog *>();
        ASSERT_TRUE(panel && panel->isVisible());
        EXPECT_FALSE(panel->testOption(QColorDialog::ShowAlphaChannel));
        EXPECT_EQ(panel->currentColor(), c.offered) << c.before.toStdString();
        panel->setCurrentColor(c.chosen);
        panel->accept();
        EXPECT_EQ(stored(SubtitleColors::translationKey).toString(), c.stored);
        EXPECT_EQ(stored(SubtitleColors::sourceKey).toString(), QString());
        EXPECT_EQ(marks(bar)[1], c.marked);
    }
}

TEST_F(SubtitleWindowTest, FramesRoundTripKeepThroughLevelChangesAndComeBackOnScreen)
{
    const QRect area = QGuiApplication::primaryScreen()->availableGeometry();
    {
        SubtitleWindow bar;
        EXPECT_EQ(bar.frame(), QRect(area.left() + (area.width() - 760) / 2, area.bottom() + 1 - 60 - 190, 760, 190));
        showAndWait(bar);
        struct Step { QRect frame; bool animated; bool floating; QRect expected; };
        const QList<Step> steps = {
            {QRect(100, 120, 640, 150), false, true, QRect(100, 120, 640, 150)},
            {QRect(100, 96, 640, 150), true, false, QRect(100, 96, 640, 150)},
            {QRect(300, 200, 200, 40), false, true, QRect(300, 200, 320, 90)},
        };
        for (const Step &step : steps) {
            bar.setFrame(step.frame, step.animated);
            EXPECT_TRUE(QTest::qWaitFor([&] { return bar.frame() == step.expected; }, 2000)) << bar.frame().y();
            bar.setFloating(step.floating);
            EXPECT_EQ(bar.windowFlags().testFlag(Qt::WindowStaysOnTopHint), step.floating);
            EXPECT_TRUE(bar.isVisible());
            QTest::qWait(50);  // the window system's answer to the re-show
            EXPECT_EQ(bar.frame(), step.expected);
        }
        bar.hide();
    }
    EXPECT_EQ(SubtitleWindow().frame(), QRect(300, 200, 320, 90));

    QSettings().setValue(u"window/"_s + QString::fromLatin1(SubtitleWindow::frameName),
                         QRect(area.right() + 3000, area.bottom() + 2000, 700, 160));
    const QRect back = SubtitleWindow().frame();
    EXPECT_EQ(back.size(), QSize(700, 160));
    EXPECT_TRUE(area.contains(back)) << back.x() << "," << back.y();
}
