#include "ui/art/AvatarButton.h"

#include "ui/art/PixelCat.h"

#include <QPainter>
#include <QPainterPath>

AvatarButton::AvatarButton(int size, QWidget *parent)
    : QAbstractButton(parent)
    , size_(size)
{
    setFixedSize(size, size);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::TabFocus);
}

void AvatarButton::setLetter(const std::optional<QString> &letter)
{
    letter_ = letter;
    update();
}

void AvatarButton::setBadge(bool badge)
{
    badge_ = badge;
    update();
}

void AvatarButton::setCat(int cat)
{
    cat_ = cat;
    update();
}

void AvatarButton::setRing(bool ring)
{
    ring_ = ring;
    update();
}

QSize AvatarButton::sizeHint() const
{
    return {size_, size_};
}

void AvatarButton::paintEvent(QPaintEvent *)
{
    const auto &cats = PixelCat::all();
    const PixelCat &cat = cats[cat_ >= 0 && std::size_t(cat_) < cats.size() ? std::size_t(cat_) : 0];
    const bool strong = letter_.has_value();
    const QRectF bounds = rect();
    const QRectF oval = bounds.adjusted(1, 1, -1, -1);

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor backdrop = cat.bg;
    backdrop.setAlphaF(strong ? 1.0f : 0.25f);
    painter.setPen(Qt::NoPen);
    painter.setBrush(backdrop);
    painter.drawEllipse(oval);

    painter.save();
    QPainterPath clip;
    clip.addEllipse(oval);
    painter.setClipPath(clip);
    cat.draw(painter, bounds, PixelCat::YAxis::down, (strong ? 1.0 : 0.45) * (isEnabled() ? 1.0 : 0.6));
    painter.restore();

    painter.setRenderHint(QPainter::Antialiasing);
    QColor stroke = palette().color(QPalette::Mid);
    stroke.setAlphaF(0.35f);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(stroke, 1));
    painter.drawEllipse(oval);
    if (ring_) {
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2.5));
        painter.drawEllipse(bounds.adjusted(1.25, 1.25, -1.25, -1.25));
    }
    if (underMouse() || hasFocus()) {
        QColor hover = palette().color(QPalette::Highlight);
        hover.setAlphaF(0.5f);
        painter.setPen(QPen(hover, 1.5));
        painter.drawEllipse(oval);
    }
    if (badge_) {
        const double diameter = width() * 0.28;
        const QRectF dot(bounds.right() - diameter, bounds.top(), diameter, diameter);
        painter.setBrush(QColor(0xff, 0x3b, 0x30));
        painter.setPen(QPen(palette().color(QPalette::Window), 1.5));
        painter.drawEllipse(dot);
    }
}
