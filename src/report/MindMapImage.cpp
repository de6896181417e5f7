#include "report/MindMapImage.h"

#include "report/MindMapLayout.h"
#include "report/PngEncoder.h"

#include <QImage>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace MindMapImage {

namespace {

using MindMapLayout::Box;

constexpr qreal pixelsPerPoint = 2;
// Bounds of the bitmap, for trees of hundreds of nodes: a side the raster engine draws without
// trouble, and 64 MB of pixels.
constexpr qreal maxSide = 16000;
constexpr qreal maxPixels = 16.0 * 1024 * 1024;
constexpr qreal curveReach = 23;

qreal scaleFor(const QSizeF &points)
{
    const qreal area = points.width() * points.height();
    return std::min({pixelsPerPoint, maxSide / points.width(), maxSide / points.height(),
                     std::sqrt(maxPixels / area)});
}

QColor withAlpha(QColor color, float alpha)
{
    color.setAlphaF(alpha);
    return color;
}

void drawLink(QPainter &painter, const Box &parent, const Box &child)
{
    const QPointF start(parent.origin.x() + parent.size.width(), parent.origin.y() + parent.size.height() / 2);
    const QPointF end(child.origin.x(), child.origin.y() + child.size.height() / 2);
    QPainterPath curve(start);
    curve.cubicTo(start + QPointF(curveReach, 0), end - QPointF(curveReach, 0), end);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(withAlpha(child.color, 0.7f), child.depth == 1 ? 2.5 : 1.5));
    painter.drawPath(curve);
}

void drawBox(QPainter &painter, const Box &box)
{
    for (const Box &child : box.children)
        drawLink(painter, box, child);

    const QRectF rect(box.origin, box.size);
    const qreal radius = box.depth == 0 ? 12 : 8;
    QPainterPath shape;
    shape.addRoundedRect(rect, radius, radius);
    if (box.depth <= 1) {
        painter.fillPath(shape, box.color);
    } else {
        painter.fillPath(shape, withAlpha(box.color, 0.1f));
        painter.strokePath(shape, QPen(withAlpha(box.color, 0.45f), 1));
    }

    const QSizeF inset = MindMapLayout::inset(box.depth);
    painter.setFont(MindMapLayout::font(box.depth));
    painter.setPen(MindMapLayout::textColor(box.depth));
    painter.drawText(rect.adjusted(inset.width(), inset.height(), -inset.width(), -inset.height()),
                     Qt::TextWordWrap, box.text);

    for (const Box &child : box.children)
        drawBox(painter, child);
}

} // namespace

std::optional<QByteArray> png(const MindNode &root)
{
    const MindMapLayout::Layout layout = MindMapLayout::layout(root);
    const qreal scale = scaleFor(layout.size);
    QImage image(QSize(int(std::ceil(layout.size.width() * scale)), int(std::ceil(layout.size.height() * scale))),
                 QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return std::nullopt;
    image.fill(Qt::white);
    {
        QPainter painter(&image);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
        painter.scale(scale, scale);
        drawBox(painter, layout.root);
    }
    return PngEncoder::encode(image);
}

} // namespace MindMapImage
