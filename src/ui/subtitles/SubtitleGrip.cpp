#include "ui/subtitles/SubtitleGrip.h"

#include "ui/common/Look.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

namespace {

constexpr int edgeBand = 6;    // how close to an edge a press resizes
constexpr int cornerReach = 18; // near one edge, how close to the next one counts as its corner

bool within(int distance, int band)
{
    return distance >= 0 && distance < band;
}

Qt::Edges near(QPoint point, QSize size, int band)
{
    Qt::Edges edges;
    if (within(point.x(), band))
        edges |= Qt::LeftEdge;
    if (within(size.width() - 1 - point.x(), band))
        edges |= Qt::RightEdge;
    if (within(point.y(), band))
        edges |= Qt::TopEdge;
    if (within(size.height() - 1 - point.y(), band))
        edges |= Qt::BottomEdge;
    return edges;
}

} // namespace

SubtitleGrip::SubtitleGrip(QWidget *parent)
    : QWidget(parent)
{
    setToolTip(QStringLiteral("按住这里拖动字幕条"));
    setCursor(Qt::OpenHandCursor);
    setMouseTracking(true);
}

Qt::Edges SubtitleGrip::edgesAt(QPoint point, QSize size)
{
    if (!near(point, size, edgeBand))
        return {};
    return near(point, size, cornerReach);
}

Qt::CursorShape SubtitleGrip::cursorFor(Qt::Edges edges)
{
    const bool horizontal = edges & (Qt::LeftEdge | Qt::RightEdge);
    const bool vertical = edges & (Qt::TopEdge | Qt::BottomEdge);
    if (horizontal && vertical) {
        const bool falling = edges == (Qt::LeftEdge | Qt::TopEdge) || edges == (Qt::RightEdge | Qt::BottomEdge);
        return falling ? Qt::SizeFDiagCursor : Qt::SizeBDiagCursor;
    }
    if (horizontal)
        return Qt::SizeHorCursor;
    return vertical ? Qt::SizeVerCursor : Qt::ArrowCursor;
}

void SubtitleGrip::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    // Rounded at the top only: a taller rounded shape cut at the strip's bottom.
    constexpr qreal radius = 18;
    QPainterPath rounded;
    rounded.addRoundedRect(QRectF(0, 0, width(), stripHeight + 2 * radius), radius, radius);
    QPainterPath strip;
    strip.addRect(rect());
    painter.fillPath(rounded.intersected(strip), Look::softBackground(palette()));
    QColor pill = palette().color(QPalette::WindowText);
    pill.setAlphaF(0.26f);
    painter.setPen(Qt::NoPen);
    painter.setBrush(pill);
    painter.drawRoundedRect(QRectF((width() - 44) / 2.0, (stripHeight - 5) / 2.0, 44, 5), 2.5, 2.5);
}

void SubtitleGrip::mouseMoveEvent(QMouseEvent *event)
{
    const Qt::Edges edges = edgesAt(mapTo(window(), event->position().toPoint()), window()->size());
    setCursor(edges ? cursorFor(edges) : Qt::OpenHandCursor);
    event->ignore();  // the bar follows a held button itself
}
