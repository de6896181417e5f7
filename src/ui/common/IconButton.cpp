#include "ui/common/IconButton.h"

#include "ui/art/PixelIcon.h"
#include "ui/common/Look.h"

#include <QEvent>
#include <QPainter>

IconButton::IconButton(const QString &symbol, const QString &description, QWidget *parent, int size)
    : QToolButton(parent)
    , symbol_(symbol)
    , size_(size)
{
    setAutoRaise(true);
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::PointingHandCursor);
    setIconSize(QSize(size + 2, size + 2));
    setDescription(description);
    render();
}

void IconButton::setSymbol(const QString &symbol)
{
    symbol_ = symbol;
    render();
}

void IconButton::setTint(Tint tint)
{
    tint_ = tint;
    render();
}

void IconButton::setDescription(const QString &description)
{
    setToolTip(description);
    setAccessibleName(description);
}

void IconButton::changeEvent(QEvent *event)
{
    QToolButton::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::EnabledChange)
        render();
}

void IconButton::render()
{
    QColor color;
    switch (tint_) {
    case Tint::secondary: color = Look::secondaryText(palette()); break;
    case Tint::accent: color = palette().color(QPalette::Highlight); break;
    case Tint::white: color = QColor(255, 255, 255, 230); break;
    case Tint::red: color = QColor(0xff, 0x3b, 0x30); break;
    case Tint::text: color = palette().color(QPalette::WindowText); break;
    }
    if (!isEnabled())
        color.setAlphaF(color.alphaF() * 0.4f);
    const qreal ratio = devicePixelRatioF();
    QIcon mask = PixelIcon::symbol(symbol_, qRound(size_ * ratio));
    QPixmap pixmap = mask.pixmap(QSize(size_, size_) * ratio);
    if (pixmap.isNull()) {
        setIcon(mask);
        return;
    }
    // The sprite is a black mask: keep its shape, paint the tint.
    QPainter painter(&pixmap);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(pixmap.rect(), color);
    painter.end();
    pixmap.setDevicePixelRatio(ratio);
    setIcon(QIcon(pixmap));
}
