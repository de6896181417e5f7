#include "ui/slides/SlideSwitch.h"

#include "ui/common/Look.h"

#include <QPainter>

namespace {

constexpr QSize trackSize(30, 18);
constexpr int knobInset = 2;

} // namespace

SlideSwitch::SlideSwitch(QWidget *parent)
    : QAbstractButton(parent)
{
    setCheckable(true);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize SlideSwitch::sizeHint() const
{
    return trackSize;
}

void SlideSwitch::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF track = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    const qreal radius = track.height() / 2;
    const bool dark = Look::isDark(palette());
    QColor fill = isChecked() ? palette().color(QPalette::Highlight)
                              : (dark ? QColor(0x48, 0x48, 0x4e) : QColor(0xd6, 0xd6, 0xdb));
    if (!isEnabled())
        fill.setAlphaF(0.4f);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawRoundedRect(track, radius, radius);

    const qreal knob = track.height() - 2 * knobInset;
    const qreal x = isChecked() ? track.right() - knobInset - knob : track.left() + knobInset;
    painter.setBrush(QColor(Qt::white));
    painter.drawEllipse(QRectF(x, track.top() + knobInset, knob, knob));
    if (hasFocus()) {
        painter.setPen(QPen(palette().color(QPalette::Highlight), 1.5));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(track, radius, radius);
    }
}
