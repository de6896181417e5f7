#include "ui/settings/ToggleSwitch.h"

#include "ui/common/Look.h"

#include <QPainter>

namespace {

constexpr int trackWidth = 38;
constexpr int trackHeight = 22;

} // namespace

ToggleSwitch::ToggleSwitch(QWidget *parent)
    : QAbstractButton(parent)
{
    setCheckable(true);
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize ToggleSwitch::sizeHint() const
{
    return {trackWidth, trackHeight};
}

void ToggleSwitch::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF track = QRectF(0, 0, trackWidth, trackHeight).adjusted(1, 1, -1, -1);
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
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.75, 0.75, -0.75, -0.75), trackHeight / 2.0, trackHeight / 2.0);
    }
}
