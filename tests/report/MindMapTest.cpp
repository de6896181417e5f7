#include "QtPrinters.h"
#include "report/MindMapImage.h"
#include "report/MindMapLayout.h"

#include <QImage>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using MindMapLayout::Box;

namespace {

MindNode node(const QString &label, QList<MindNode> children = {})
{
    return {label, children.isEmpty() ? std::nullopt : std::optional(children)};
}

qreal bottom(const Box &box)
{
    return box.origin.y() + box.size.height();
}

qreal centre(const Box &box)
{
    return box.origin.y() + box.size.height() / 2;
}

} // namespace

TEST(MindMapLayout, OneBoxHasItsMarginsAndTheCursorGapBelow)
{
    const auto layout = MindMapLayout::layout(node(u"微积分"_s));
    EXPECT_EQ(layout.root.origin, QPointF(30, 30));
    EXPECT_EQ(layout.size, QSizeF(30 + layout.root.size.width() + 30, 30 + layout.root.size.height() + 40));
    EXPECT_EQ(layout.root.color, QColor::fromRgbF(0.18f, 0.18f, 0.18f));
}

TEST(MindMapLayout, ColumnsColoursGapsAndCentring)
{
    QList<MindNode> branches{node(u"极限"_s, {node(u"定义"_s), node(u"性质"_s), node(u"夹逼定理"_s)}),
                             node(u"导数"_s, {node(u"链式法则"_s, {node(u"例题"_s)})}), node(u"积分"_s),
                             node(u"级数"_s)};
    for (int i = 4; i < 8; ++i)
        branches << node(u"分支 %1"_s.arg(i + 1));
    const auto layout = MindMapLayout::layout(node(u"第三章"_s, branches));
    const Box &root = layout.root;
    const QList<Box> &main = root.children;
    ASSERT_EQ(main.size(), 8);

    const QList<QColor> palette = MindMapLayout::palette();
    EXPECT_EQ(main[0].color, palette[0]);
    EXPECT_EQ(main[6].color, palette[6]);
    EXPECT_EQ(main[7].color, palette[0]) << "the eighth branch starts the palette again";
    EXPECT_EQ(main[1].children[0].children[0].color, palette[1]) << "a subtree keeps its branch's colour";

    qreal widest = 0;
    for (const Box &branch : main)
        widest = std::max(widest, branch.size.width());
    EXPECT_EQ(main[3].origin.x(), 30 + root.size.width() + 46);
    EXPECT_EQ(main[0].children[0].origin.x(), main[0].origin.x() + widest + 46);

    const QList<Box> &leaves = main[0].children;
    EXPECT_EQ(leaves[1].origin.y() - bottom(leaves[0]), 10) << "leaves of one branch";
    EXPECT_EQ(main[1].children[0].children[0].origin.y() - bottom(leaves[2]), 20) << "main branches part by 10 more";
    EXPECT_EQ(main[3].origin.y() - bottom(main[2]), 18) << "two leaf main branches";
    EXPECT_EQ(main[0].origin.y(), (leaves[0].origin.y() + bottom(leaves[2])) / 2 - main[0].size.height() / 2);
    EXPECT_EQ(centre(main[1]), centre(main[1].children[0])) << "a one-child branch lines up";
    EXPECT_EQ(centre(root), (main[0].origin.y() + bottom(main[7])) / 2);
    EXPECT_EQ(layout.size.height(), bottom(main[7]) + 18 + 30);
}

TEST(MindMapLayout, LongLabelsWrapAt220Points)
{
    const QString long1 = QString(u"长标签"_s).repeated(700);
    const auto layout = MindMapLayout::layout(
        node(long1, {node(u"短"_s), node(u"两行的标签 两行的标签 两行的标签 两行的标签 两行的标签 两行的标签"_s),
                     node(long1), node(QString(u"x"_s).repeated(2000))}));
    EXPECT_LE(layout.root.size.width(), 252) << "text cut at 220 × 200";
    EXPECT_EQ(layout.root.size.height(), 222);
    const QList<Box> &boxes = layout.root.children;
    EXPECT_LE(boxes[2].size.width(), 242);
    EXPECT_EQ(boxes[2].size.height(), 212);
    EXPECT_EQ(boxes[3].size.width(), 242) << "one long word is cut at the edge";
    EXPECT_LE(boxes[1].size.width(), 242);
    EXPECT_GT(boxes[1].size.height(), boxes[0].size.height()) << "a wrapped label makes a taller box";
}

TEST(MindMapImage, DrawsAPngTwoPixelsAPointAndStaysBoundedForHugeTrees)
{
    const MindNode map = node(u"光合作用"_s, {node(u"光反应"_s, {node(u"水的光解"_s), node(u"ATP 합성"_s)}),
                                              node(u"暗反应"_s, {node(u"卡尔文循环"_s)})});
    const auto png = MindMapImage::png(map);
    ASSERT_TRUE(png);
    const QImage image = QImage::fromData(*png, "PNG");
    const QSizeF points = MindMapLayout::layout(map).size;
    EXPECT_EQ(image.size(), QSize(int(points.width() * 2), int(points.height() * 2)));
    EXPECT_EQ(image.pixel(4, 4), qRgb(255, 255, 255));
    const Box root = MindMapLayout::layout(map).root;
    const QPointF insideRoot = root.origin + QPointF(4, root.size.height() / 2);
    EXPECT_EQ(image.pixel((insideRoot * 2).toPoint()), QColor::fromRgbF(0.18f, 0.18f, 0.18f).rgb());

    MindNode deep = node(u"第 12 层"_s);
    for (int level = 11; level >= 1; --level)
        deep = node(u"第 %1 层"_s.arg(level), {deep});
    QList<MindNode> many;
    for (int i = 0; i < 500; ++i)
        many << node(u"节点 %1"_s.arg(i));
    for (const MindNode &tree : {deep, node(u"根"_s, many)}) {
        const auto drawn = MindMapImage::png(tree);
        ASSERT_TRUE(drawn);
        const QImage big = QImage::fromData(*drawn, "PNG");
        ASSERT_FALSE(big.isNull());
        EXPECT_LE(qint64(big.width()) * big.height(), 16 * 1024 * 1024);
    }
}
