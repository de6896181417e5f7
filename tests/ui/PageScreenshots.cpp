// Renders both pages during a class with Chinese and Korean text, light and dark, and checks that
// something was drawn. With QUILLET_SCREENSHOT_DIR set the pictures are saved there for a look.

#include "support/Screenshots.h"
#include "ui/common/Look.h"
#include "ui/panel/Panel.h"
#include "ui/web/FeedView.h"
#include "ui/web/TranscriptView.h"

#include <QDir>
#include <QSet>
#include <QTest>
#include <QVBoxLayout>
#include <QWebEngineView>
#include <QWidget>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

void lecture(TranscriptView &view)
{
    const QList<std::pair<QString, QString>> lines = {
        {u"Today we look at marginal cost and why firms care about it."_s, u"今天我们来看边际成本，以及企业为什么关心它。"_s},
        {u"Marginal cost is the cost of producing one more unit."_s, u"边际成本是多生产一单位产品的成本。"_s},
        {u"오늘 수업에서는 한계 비용을 배웁니다."_s, u"今天的课上我们学习边际成本。"_s},
        {u"Remember: this will be on the midterm, chapter three. 📌"_s, u"记住：这会出现在期中考试里，第三章。📌"_s},
    };
    view.clear({});
    for (int i = 0; i < lines.size(); ++i) {
        view.addLine(i, lines[i].first);
        view.setTranslation(i, lines[i].second);
    }
    view.addLine(int(lines.size()), u"So if the price is above marginal cost"_s);
    view.setDrafts({{u"the firm should produce more, because each extra unit"_s, u"企业应该多生产，因为每多一单位"_s},
                    {u"다음 주에 과제를 제출하세요"_s, u""_s}});
}

void feedOf(FeedView &feed)
{
    feed.setSummary(u"本节课介绍了边际成本的定义，以及价格高于边际成本时企业扩大生产的原因。"_s, u"14:32"_s, false);
    feed.setVocabulary({{u"marginal cost"_s, u"边际成本"_s, u"多生产一单位的成本"_s}, {u"한계 비용"_s, u"边际成本"_s, u"韩语"_s}});
    feed.addCard(u"课堂重点"_s, u"边际成本 = 总成本的变化 ÷ 产量的变化。"_s, u"14:05"_s);
    feed.addCard(u"考试重点"_s, u"期中考试考第三章：边际成本与供给曲线。"_s, u"14:12"_s);
    feed.addEvent(u"ab12cd34"_s, {u"期中考试"_s, u"2026-11-30"_s, u"09:00"_s, u"带计算器"_s});
    feed.addCard(u"可以这样回答"_s, u"Because price exceeds marginal cost, each extra unit adds profit."_s, u"14:20"_s);
    feed.showYou(u"한계 비용이 뭐예요？\n📎 lecture-3.pdf"_s, {});
    feed.addReply(u"边际成本（한계 비용）就是多生产一件产品所增加的成本。"_s);
    feed.showYou(u"期中考试范围是哪几章？"_s, {});
}

QImage shoot(QWebEngineView *web, const QColor &behind, QSize size, const QString &name)
{
    QWidget host;
    host.setAutoFillBackground(true);
    QPalette palette = host.palette();
    palette.setColor(QPalette::Window, behind);
    host.setPalette(palette);
    auto *layout = new QVBoxLayout(&host);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(web);
    host.resize(size);
    host.show();
    QTest::qWait(500); // entry animations (200 ms) and fonts settle
    const QImage image = host.grab().toImage();
    Screenshots::keep(image, name);
    web->setParent(nullptr);
    return image;
}

} // namespace

TEST(Pages, DrawAClassInChineseAndKoreanInEveryLook)
{
    struct Scene { QString name; QString look; QString theme; QColor behind; QSize size; };
    const QList<Scene> scenes = {
        {u"subtitle-panel-light"_s, u"panel"_s, u"light"_s, QColor(0xf6, 0xf6, 0xf8), {560, 460}},
        {u"subtitle-panel-dark"_s, u"panel"_s, u"dark"_s, QColor(0x1f, 0x1f, 0x22), {560, 460}},
        {u"subtitle-bar"_s, u"bar"_s, u"dark"_s, QColor::fromRgbF(0.075f, 0.078f, 0.085f), {760, 162}},
        {u"feed-light"_s, {}, u"light"_s, QColor(0xf6, 0xf6, 0xf8), {420, 640}},
        {u"feed-dark"_s, {}, u"dark"_s, QColor(0x1f, 0x1f, 0x22), {420, 640}},
    };
    for (const Scene &scene : scenes) {
        QImage image;
        if (scene.look.isEmpty()) {
            FeedView feed;
            feed.setTheme(scene.theme);
            feedOf(feed);
            ASSERT_TRUE(QTest::qWaitFor([&] { return feed.ready(); }, 30000));
            image = shoot(feed.web(), scene.behind, scene.size, scene.name);
        } else {
            TranscriptView view(scene.look, scene.look == u"bar" ? 22 : 15);
            view.setTheme(scene.theme);
            // The bar shows the font that comes with the application rather than with the system.
            if (scene.look == u"bar")
                view.setFont(u"kuaile"_s);
            lecture(view);
            ASSERT_TRUE(QTest::qWaitFor([&] { return view.ready(); }, 30000));
            image = shoot(view.web(), scene.behind, scene.size, scene.name);
        }
        EXPECT_EQ(image.size(), scene.size) << scene.name.toStdString();
        EXPECT_GT(Screenshots::colours(image), 40) << scene.name.toStdString() << ": nothing drawn";
    }
}

TEST(Pages, ThePanelDuringAClassStackedAndSideBySideLightAndDark)
{
    struct Scene { QString name; QString theme; QString layout; QSize size; };
    const QList<Scene> scenes = {
        {u"panel-light"_s, u"light"_s, u"vertical"_s, {420, 720}},
        {u"panel-dark"_s, u"dark"_s, u"vertical"_s, {420, 720}},
        {u"panel-side-light"_s, u"light"_s, u"horizontal"_s, {900, 560}},
        {u"panel-side-dark"_s, u"dark"_s, u"horizontal"_s, {900, 560}},
    };
    for (const Scene &scene : scenes) {
        Look::apply(scene.theme);
        Panel panel;
        panel.resize(scene.size);
        panel.show();
        panel.setLayout(scene.layout);
        panel.placeDivider();
        panel.setStatus(u"● 正在听 English · 本机识别"_s);
        panel.setRecording(true, u"12:07"_s);
        panel.setLanguages(u"English"_s, u"Simplified Chinese"_s, {u"Korean"_s});
        panel.setSwitches({true, true, true, false});
        panel.setAccount(u"mina@example.com"_s);
        panel.setUnread(true);
        panel.setTitle(u"Claude"_s);
        lecture(panel.transcriptView());
        feedOf(panel.feed());
        ASSERT_TRUE(QTest::qWaitFor([&] { return panel.feed().ready() && panel.transcriptView().ready(); }, 30000));
        QTest::qWait(600);
        const QImage image = panel.grab().toImage();
        Screenshots::keep(image, scene.name);
        EXPECT_GT(Screenshots::colours(image), 40) << scene.name.toStdString() << ": nothing drawn";
    }
}
