// Renders cats and sprites to images and reads their cells back: colours where the grids put
// them, hard edges at odd sizes, the y axis either way. With QUILLET_SCREENSHOT_DIR set a sheet of
// every cat and sprite is saved there for a look.

#include "support/Screenshots.h"
#include "ui/art/PixelCat.h"
#include "ui/art/PixelIcon.h"

#include <QDir>
#include <QPainter>
#include <QSet>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

// At width 200 a canvas cell is 8 pixels; the canvas starts at x 20 and y 31.2.
constexpr int side = 200;

QImage render(int cat, QSize size = {side, side}, double alpha = 1.0)
{
    QImage image(size, QImage::Format_ARGB32);
    image.fill(PixelCat::all()[size_t(cat)].bg);
    QPainter painter(&image);
    PixelCat::all()[size_t(cat)].draw(painter, QRectF(QPointF(), size), PixelCat::YAxis::down, alpha);
    return image;
}

QRgb cell(const QImage &image, int c, int r)
{
    return image.pixel(20 + c * 8 + 4, int(31.2 + r * 8 + 4)) & 0xffffff;
}

QSet<QRgb> coloursOf(const QImage &image)
{
    QSet<QRgb> colours;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            colours.insert(image.pixel(x, y));
    return colours;
}

} // namespace

TEST(PixelArt, CatalogueSizesAndOrder)
{
    EXPECT_EQ(PixelCat::all().size(), 26u);
    EXPECT_EQ(PixelIcon::sprites().size(), 42u);
    EXPECT_EQ(PixelIcon::symbols().size(), 40);
    EXPECT_EQ(PixelCat::all()[13].extras, QList{PixelCat::Extra::crown});
    EXPECT_FALSE(PixelCat::all()[22].fill.has_value());
    EXPECT_EQ(PixelIcon::sprites()[2].name, u"mail"_s);
}

TEST(PixelArt, CatCellsFollowTheGrids)
{
    struct Case { int cat; int c; int r; QRgb colour; const char *what; };
    const Case cases[] = {
        {0, 9, 8, 0x111111, "no fill: backdrop through the head"},
        {0, 2, 8, 0x9a9a9a, "outline, left edge"},
        {0, 3, 2, 0x9a9a9a, "outline, ear tip"},
        {0, 0, 0, 0x111111, "outside the head"},
        {0, 6, 9, 0x9a9a9a, "line eyes"},
        {0, 0, 12, 0x9a9a9a, "whisker"},
        {1, 4, 9, 0xf59e3b, "fill"},
        {1, 9, 6, 0x5a3410, "stripes"},
        {1, 13, 9, 0x5a3410, "dot eye"},
        {1, 10, 12, 0x5a3410, "nose"},
        {4, 6, 8, 0xb9c2c7, "sleepy leaves the upper row"},
        {4, 7, 9, 0x36403b, "sleepy eye"},
        {6, 9, 8, 0x333333, "glasses bridge"},
        {7, 12, 8, 0x5a2a3c, "wink arc top"},
        {7, 12, 9, 0xffffff, "under the wink arc"},
        {7, 16, 5, 0xff4d8d, "bow over the ear outline"},
        {11, 0, 10, 0xff6b6b, "headphones, no whiskers"},
        {11, 1, 3, 0x2d3640, "headphone band"},
        {13, 9, 4, 0xe5484d, "crown jewel"},
        {13, 7, 3, 0xffc83d, "crown point"},
        {15, 0, 10, 0x34404c, "whiskers over the scarf"},
        {15, 8, 14, 0xe5484d, "scarf"},
        {16, 4, 4, 0xff9db0, "inner ear"},
        {16, 5, 6, 0xffd54a, "flower middle"},
        {17, 9, 13, 0xff6b8a, "tongue"},
        {19, 6, 8, 0xffffff, "sparkle highlight"},
        {19, 7, 9, 0x7ce38b, "sparkle eye"},
        {19, 8, 14, 0xffffff, "tuxedo"},
        {20, 10, 7, 0xffe58a, "star"},
    };
    for (const Case &test : cases)
        EXPECT_EQ(cell(render(test.cat), test.c, test.r), test.colour)
            << "cat " << test.cat << ": " << test.what;
}

TEST(PixelArt, CatDrawingGeometry)
{
    // Drawn the other way up into an upward y axis, the picture is the same.
    QImage upward(side, side, QImage::Format_ARGB32);
    upward.fill(PixelCat::all()[13].bg);
    {
        QPainter painter(&upward);
        painter.translate(0, side);
        painter.scale(1, -1);
        PixelCat::all()[13].draw(painter, QRectF(0, 0, side, side), PixelCat::YAxis::up);
    }
    EXPECT_EQ(upward, render(13));

    // Height plays no part in the scale: a taller rectangle centres the same picture.
    EXPECT_EQ(render(13, {side, 2 * side}).copy(0, side / 2, side, side), render(13));

    // Every colour's alpha is replaced, white included, not multiplied.
    QImage faded(side, side, QImage::Format_ARGB32);
    faded.fill(Qt::transparent);
    {
        QPainter painter(&faded);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        PixelCat::all()[19].draw(painter, faded.rect(), PixelCat::YAxis::down, 0.45);
    }
    for (QRgb colour : coloursOf(faded))
        EXPECT_TRUE(qAlpha(colour) == 0 || qAlpha(colour) == 115) << std::hex << colour;
}

TEST(PixelArt, NoAntiAliasingAtOddSizes)
{
    for (int cat : {1, 13, 16, 19}) {
        const QSet<QRgb> palette = coloursOf(render(cat));
        for (QRgb colour : coloursOf(render(cat, {77, 61})))
            EXPECT_TRUE(palette.contains(colour)) << "cat " << cat << " " << std::hex << colour;
    }
    for (const PixelIcon::Sprite &sprite : PixelIcon::sprites())
        for (QRgb colour : coloursOf(*PixelIcon::image(sprite.name, 17)))
            EXPECT_TRUE(colour == 0 || colour == 0xff000000) << qPrintable(sprite.name);
}

TEST(PixelArt, IconImagesAndSymbols)
{
    const QImage fish = *PixelIcon::image(u"fish"_s, 15); // 15 by 7: one pixel a cell, 4 above
    EXPECT_EQ(fish.size(), QSize(15, 15));
    EXPECT_EQ(fish.pixel(5, 4), 0xff000000);
    EXPECT_EQ(fish.pixel(4, 4), 0u);
    EXPECT_EQ(fish.pixel(5, 3), 0u);
    const QImage chevron = *PixelIcon::image(u"chevron-right"_s); // 4 by 7 at 14: 2 a cell, 3 aside
    EXPECT_EQ(chevron.pixel(4, 1), 0xff000000);
    EXPECT_EQ(chevron.pixel(6, 1), 0u);
    EXPECT_EQ(chevron.pixel(10, 7), 0xff000000);

    EXPECT_FALSE(PixelIcon::image(u"no-such-sprite"_s).has_value());
    EXPECT_TRUE(PixelIcon::symbol(u"no.such.symbol"_s).isNull());
    const QIcon envelope = PixelIcon::symbol(u"envelope"_s);
    EXPECT_FALSE(envelope.isNull());
    EXPECT_TRUE(envelope.isMask());
    EXPECT_TRUE(PixelIcon::symbol(u"fish"_s).isNull()); // reached by sprite name only
}

TEST(PixelArt, ScreenshotSheet)
{
    constexpr int catSide = 96;
    constexpr int iconSide = 42;
    QImage sheet(7 * catSide, 4 * catSide + 6 * (iconSide + 8) + 8, QImage::Format_ARGB32);
    sheet.fill(Qt::white);
    QPainter painter(&sheet);
    for (int i = 0; i < 26; ++i) {
        const QRectF box((i % 7) * catSide, (i / 7) * catSide, catSide, catSide);
        painter.fillRect(box, PixelCat::all()[size_t(i)].bg);
        PixelCat::all()[size_t(i)].draw(painter, box, PixelCat::YAxis::down);
    }
    for (int i = 0; i < 42; ++i) {
        const QPoint at(8 + (i % 14) * (iconSide + 6), 4 * catSide + 8 + (i / 14) * (iconSide + 8) * 2);
        const QString &name = PixelIcon::sprites()[size_t(i)].name;
        painter.drawImage(at, *PixelIcon::image(name, iconSide));
        painter.drawImage(at + QPoint(0, iconSide + 4), *PixelIcon::image(name));
    }
    painter.end();
    EXPECT_GT(coloursOf(sheet).size(), 40);
    Screenshots::keep(sheet, u"pixel-art"_s);
}
