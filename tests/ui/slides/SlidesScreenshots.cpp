// The slide window following a class with Chinese and Korean slides, light and dark, and checks
// that the page is drawn white on the window's background. With QUILLET_SCREENSHOT_DIR set the
// pictures are saved there for a look.

#include "support/Screenshots.h"
#include "ui/slides/SlidesWindow.h"

#include "EventLoop.h"
#include "FakeProvider.h"
#include "SlideFixtures.h"
#include "ui/common/Look.h"

#include <QAbstractButton>
#include <QDir>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

QImage shoot(QWidget &window, const QString &name)
{
    QTest::qWait(300);  // the page renders on a worker of QtPdf
    const QImage image = window.grab().toImage();
    Screenshots::keep(image, u"slides-"_s + name);
    return image;
}

} // namespace

TEST(SlidesScreenshots, FollowingAClassLightAndDark)
{
    QSettings().clear();
    QTemporaryDir dir;
    const QString deck = dir.filePath(u"微观经济学 第三讲.pdf"_s);
    SlideFixtures::writePdf(deck, {u"第三讲：边际成本\nMarginal cost"_s,
                                   u"边际成本 = 总成本的变化 ÷ 产量的变化\n한계 비용은 한 단위를 더 생산할 때의 비용입니다"_s,
                                   u"供给曲线\n공급 곡선과 한계 비용"_s, u"期中考试范围：第一至三章"_s});
    for (const QString &look : {u"light"_s, u"dark"_s}) {
        Look::apply(look);
        ManualTimers timers;
        auto fake = std::make_shared<FakeProvider>();
        fake->setHandler([](const FakeProvider::Call &) { return u"{\"page\": 3, \"sure\": true}"_s; });
        SlidesWindow window(timers.schedule());
        window.makeProvider = [fake] { return fake; };
        window.open(deck);
        window.findChildren<QAbstractButton *>().first()->setFocus();
        for (auto *button : window.findChildren<QAbstractButton *>())
            if (button->toolTip() == u"下一页")
                button->click();
        const auto *hint = window.findChild<QAbstractButton *>(u"hint"_s);
        ASSERT_TRUE(runEventsUntil([&] {
            if (hint->isVisible())
                return true;
            window.heard(u"공급 곡선은 한계 비용 곡선과 같습니다"_s);
            window.heard(u"所以供给曲线就是边际成本曲线"_s);
            timers.advance(SlideFollower::tick);
            return false;
        }));

        const QImage image = shoot(window, look);
        const QRect page = window.findChild<QWidget *>(u"pdfView"_s)->geometry();
        EXPECT_EQ(image.pixelColor(page.center().x(), page.center().y() - page.height() / 4), QColor(Qt::white)) << look.toStdString();
        EXPECT_EQ(image.pixelColor(4, image.height() - 4), window.palette().color(QPalette::Window)) << look.toStdString();

        QSettings().clear();
        SlidesWindow empty;
        empty.show();
        shoot(empty, look + u"-empty"_s);
    }
    Look::apply(u"light"_s);
}
