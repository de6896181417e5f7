#include "ui/common/ToggleSwitch.h"

#include "ui/common/Look.h"

#include <QPainter>

ToggleSwitch::ToggleSwitch(QWidget *parent, QSize size)
    : QAbstractButton(parent)
    , size_(size)
{
    setCheckable(true);
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize ToggleSwitch::sizeHint() const
{
    return size_;
}

void ToggleSwitch::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF track = QRectF(QPointF(0, 0), QSizeF(size_)).adjusted(1, 1, -1, -1);
    QColor off = palette().color(QPalette::WindowText);
    off.setAlphaF(Look::isDark(palette()) ? 0.25f : 0.18f);
    QColor on = palette().color(QPalette::Highlight);
    QColor fill = isChecked() ? on : off;
    if (!isEnabled())
        fill.setAlphaF(fill.alphaF() * 0.45f);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawRoundedRect(track, track.height() / 2, track.height() / 2);
    const qreal knob = track.height() - 4;
    const qreal x = isChecked() ? track.right() - 2 - knob : track.left() + 2;
    painter.setBrush(isEnabled() ? QColor(Qt::white) : QColor(0xe0, 0xe0, 0xe0));
    painter.drawEllipse(QRectF(x, track.top() + 2, knob, knob));
    if (hasFocus()) {
        QColor ring = on;
        ring.setAlphaF(0.5f);
        painter.setPen(QPen(ring, 1.5));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.75, 0.75, -0.75, -0.75), size_.height() / 2.0, size_.height() / 2.0);
    }
}
