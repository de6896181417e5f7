#include "report/MindMapLayout.h"

#include <QFontMetricsF>
#include <QMap>

#include <algorithm>
#include <cmath>

namespace MindMapLayout {

namespace {

constexpr qreal margin = 30;
constexpr qreal columnGap = 46;
constexpr qreal leafGap = 10;
constexpr qreal mainLeafGap = 18;
constexpr qreal branchGap = 10;

Box build(const MindNode &node, int depth)
{
    Box box{node.t, depth, {}, {}, {}, {}};
    for (const MindNode &child : node.c.value_or(QList<MindNode>()))
        box.children.append(build(child, depth + 1));
    return box;
}

QSizeF textSize(const QString &text, int depth)
{
    const QRectF bounds = QFontMetricsF(font(depth)).boundingRect(QRectF(0, 0, maxTextWidth, maxTextHeight),
                                                                  Qt::TextWordWrap, text);
    return {std::ceil(std::min(bounds.width(), maxTextWidth)), std::ceil(std::min(bounds.height(), maxTextHeight))};
}

// Sizes and colours, depth first; collects the widest box of each depth.
void measure(Box &box, const QColor &color, QMap<int, qreal> &columnWidths)
{
    const QSizeF pad = inset(box.depth) * 2;
    box.size = textSize(box.text, box.depth) + pad;
    box.color = color;
    columnWidths[box.depth] = std::max(columnWidths.value(box.depth), box.size.width());
    const QList<QColor> colours = palette();
    for (qsizetype i = 0; i < box.children.size(); ++i)
        measure(box.children[i], box.depth == 0 ? colours[i % colours.size()] : color, columnWidths);
}

QMap<int, qreal> columnPositions(const QMap<int, qreal> &widths)
{
    QMap<int, qreal> x{{0, margin}};
    const int deepest = std::max(1, widths.lastKey());
    for (int depth = 1; depth <= deepest; ++depth)
        x[depth] = x[depth - 1] + widths.value(depth - 1) + columnGap;
    return x;
}

void place(Box &box, const QMap<int, qreal> &columns, qreal &cursor)
{
    qreal y = cursor;
    if (box.children.isEmpty()) {
        cursor += box.size.height() + (box.depth == 1 ? mainLeafGap : leafGap);
    } else {
        for (Box &child : box.children)
            place(child, columns, cursor);
        const Box &first = box.children.first();
        const Box &last = box.children.last();
        y = (first.origin.y() + last.origin.y() + last.size.height()) / 2 - box.size.height() / 2;
        if (box.depth == 1)
            cursor += branchGap;
    }
    box.origin = {columns.value(box.depth), y};
}

qreal rightEdge(const Box &box)
{
    qreal edge = box.origin.x() + box.size.width();
    for (const Box &child : box.children)
        edge = std::max(edge, rightEdge(child));
    return edge;
}

} // namespace

QList<QColor> palette()
{
    return {QColor::fromRgbF(0.30f, 0.47f, 0.95f), QColor::fromRgbF(0.18f, 0.68f, 0.55f),
            QColor::fromRgbF(0.93f, 0.55f, 0.20f), QColor::fromRgbF(0.62f, 0.40f, 0.90f),
            QColor::fromRgbF(0.90f, 0.33f, 0.45f), QColor::fromRgbF(0.20f, 0.62f, 0.82f),
            QColor::fromRgbF(0.55f, 0.60f, 0.20f)};
}

QFont font(int depth)
{
    QFont face(QStringList{QStringLiteral("Noto Sans CJK SC"), QStringLiteral("Noto Sans CJK KR"),
                           QStringLiteral("Noto Sans CJK JP"), QStringLiteral("sans-serif")});
    // Pixel sizes on a one-unit-a-point canvas: independent of the screen's resolution.
    face.setPixelSize(depth == 0 ? 20 : depth == 1 ? 15 : 13);
    face.setWeight(depth == 0 ? QFont::Bold : depth == 1 ? QFont::DemiBold : QFont::Normal);
    return face;
}

QColor textColor(int depth)
{
    return depth <= 1 ? QColor(Qt::white) : QColor::fromRgbF(0.15f, 0.15f, 0.15f);
}

QSizeF inset(int depth)
{
    return depth == 0 ? QSizeF(16, 11) : QSizeF(11, 6);
}

Layout layout(const MindNode &root)
{
    Layout result{build(root, 0), {}};
    QMap<int, qreal> widths;
    measure(result.root, QColor::fromRgbF(0.18f, 0.18f, 0.18f), widths);
    qreal cursor = margin;
    place(result.root, columnPositions(widths), cursor);
    const qreal bottom = std::max(cursor, result.root.origin.y() + result.root.size.height());
    result.size = {rightEdge(result.root) + margin, bottom + margin};
    return result;
}

} // namespace MindMapLayout
