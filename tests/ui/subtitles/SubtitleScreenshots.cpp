// Lays the subtitle bar over a light window during a class in Chinese and Korean, closed, with
// its toolbar open and with its style menu open, in both looks, and checks that the window
// behind shows through the bar's surface. With QUILLET_SCREENSHOT_DIR set the pictures are saved
// there for a look.

#include "support/Screenshots.h"
#include "ui/subtitles/SubtitleWindow.h"

#include "CompositorSelection.h"
#include "ui/common/IconButton.h"
#include "ui/common/Look.h"
#include "ui/web/TranscriptView.h"

#include <QDir>
#include <QLabel>
#include <QPainter>
#include <QSettings>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

void lecture(TranscriptView &view)
{
    const QList<std::pair<QString, QString>> lines = {
        {u"Marginal cost is the cost of producing one more unit."_s, u"边际成本是多生产一单位产品的成本。"_s},
        {u"오늘 수업에서는 한계 비용을 배웁니다."_s, u"今天的课上我们学习边际成本。"_s},
        {u"Remember: this will be on the midterm, chapter three."_s, u"记住：这会出现在期中考试里，第三章。"_s},
    };
    for (int i = 0; i < lines.size(); ++i) {
        view.addLine(i, lines[i].first);
        view.setTranslation(i, lines[i].second);
    }
    view.setDrafts({{u"다음 주 월요일까지 과제를 제출하세요"_s, u"下周一之前提交作业"_s}});
}

// A plain light document window, the kind of thing the bar floats over.
std::unique_ptr<QWidget> backdrop()
{
    auto window = std::make_unique<QWidget>();
    window->setAutoFillBackground(true);
    QPalette palette = window->palette();
    palette.setColor(QPalette::Window, QColor(0xfb, 0xfb, 0xfd));
    palette.setColor(QPalette::WindowText, QColor(0x1d, 0x1d, 0x1f));
    window->setPalette(palette);
    auto *layout = new QVBoxLayout(window.get());
    layout->setContentsMargins(48, 40, 48, 40);
    auto *text = new QLabel(u"<h2>Lecture 7 · Costs of production</h2>"
                            u"<p>Marginal cost (MC) is the change in total cost that comes from producing one "
                            u"additional unit. When price exceeds marginal cost, a competitive firm raises its "
                            u"output; when it falls below, the firm cuts back.</p>"
                            u"<p>한계 비용은 생산량을 한 단위 늘릴 때 추가로 드는 비용입니다.</p>"
                            u"<p>边际成本：每多生产一单位产品所增加的总成本。</p>"_s);
    text->setWordWrap(true);
    text->setAlignment(Qt::AlignTop);
    layout->addWidget(text);
    window->setGeometry(0, 0, 1100, 760);
    return window;
}

QImage compose(QWidget &behind, const QList<QWidget *> &above)
{
    QImage image = behind.grab().toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    for (QWidget *window : above)
        painter.drawPixmap(window->pos() - behind.pos(), window->grab());
    return image;
}

void save(const QImage &image, const QString &name)
{
    Screenshots::keep(image, u"subtitles-"_s + name);
}

} // namespace

TEST(SubtitleScreenshots, TheBarOverAWindowClosedWithItsToolbarAndWithItsMenu)
{
    const CompositorSelection compositor;
    if (!compositor.held())
        GTEST_SKIP() << "the pictures need an X display (run under xvfb-run)";
    QSettings().clear();
    struct Scene { QString name; QString theme; bool toolbar; bool menu; };
    const QList<Scene> scenes = {
        {u"bar-light"_s, u"light"_s, false, false},
        {u"toolbar-dark"_s, u"dark"_s, true, false},
        {u"menu-light"_s, u"light"_s, true, true},
    };
    for (const Scene &scene : scenes) {
        Look::apply(scene.theme);
        const auto behind = backdrop();
        behind->show();
        SubtitleWindow bar;
        bar.setFrame(QRect(170, 540, 760, 190), false);
        lecture(bar.transcript());
        bar.show();
        ASSERT_TRUE(QTest::qWaitFor([&] { return bar.transcript().ready(); }, 30000));
        if (scene.toolbar) {
            bar.setFloating(true);  // the page survives the window coming back with new flags
            bar.toggleSettings();
        }
        QList<QWidget *> above{&bar};
        if (scene.menu) {
            for (IconButton *button : bar.findChildren<IconButton *>())
                if (button->accessibleName() == u"字体和颜色")
                    QTest::mouseClick(button, Qt::LeftButton);
            auto *menu = bar.findChild<SubtitleStyleMenu *>();
            ASSERT_TRUE(menu && menu->isVisible());
            above << menu;
        }
        QTest::qWait(700);  // entry animations, fonts and the first frame of the page
        const QImage image = compose(*behind, above);
        save(image, scene.name);

        // An empty corner of the surface lies between the bar's own colour and the window behind.
        const QColor surface = image.pixelColor(bar.pos() + QPoint(12, 40));
        EXPECT_GT(surface.red(), 19 + 20) << scene.name.toStdString() << ": nothing shows through";
        EXPECT_LT(surface.red(), 0xfb - 60) << scene.name.toStdString() << ": no surface";
    }
    Look::apply(u"light"_s);
}
