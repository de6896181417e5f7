#include "ui/account/MenuRow.h"

#include "ui/account/AccountLook.h"
#include "ui/art/PixelIcon.h"
#include "ui/common/Look.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace {

constexpr int rowHeight = 40;
constexpr int sideInset = 12;
constexpr int iconSlot = 20;
constexpr int spacing = 10;
constexpr int iconSize = 14;
constexpr int chevronSize = 11;
constexpr int dotSize = 7;

QString spriteFor(const QString &icon)
{
    if (icon.startsWith(u"pixel:"))
        return icon.mid(6);
    return PixelIcon::symbols().value(icon);
}

} // namespace

MenuRow::MenuRow(const QString &icon, const QString &title, const QString &value, QWidget *parent)
    : QWidget(parent)
    , icon_(icon)
    , title_(title)
    , value_(value)
{
    setFixedHeight(rowHeight);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::TabFocus);
    setAccessibleName(title);
    setToolTip(title);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void MenuRow::setValue(const QString &value)
{
    value_ = value;
    update();
}

void MenuRow::setUnread(bool unread)
{
    unread_ = unread;
    update();
}

void MenuRow::activate()
{
    onClick();
}

QSize MenuRow::sizeHint() const
{
    return {AccountLook::contentWidth - 12, rowHeight};
}

QPixmap MenuRow::tinted(const QString &name, int size, const QColor &color) const
{
    const auto mask = PixelIcon::image(name, qRound(size * devicePixelRatioF()));
    if (!mask)
        return {};
    QPixmap pixmap = QPixmap::fromImage(*mask);
    QPainter painter(&pixmap);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(pixmap.rect(), color);
    painter.end();
    pixmap.setDevicePixelRatio(devicePixelRatioF());
    return pixmap;
}

void MenuRow::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor text = palette().color(QPalette::WindowText);
    if (hovering_ || hasFocus()) {
        QColor wash = text;
        wash.setAlphaF(0.06f);
        painter.setPen(Qt::NoPen);
        painter.setBrush(wash);
        painter.drawRoundedRect(QRectF(rect()), 8, 8);
    }
    const QColor secondary = Look::secondaryText(palette());
    const QRect slot(sideInset, 0, iconSlot, height());
    if (unread_) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(palette().color(QPalette::Highlight));
        painter.drawEllipse(QRectF(slot.center().x() - dotSize / 2.0 + 0.5, height() / 2.0 - dotSize / 2.0, dotSize, dotSize));
    } else {
        const QPixmap icon = tinted(spriteFor(icon_), iconSize, secondary);
        const QSizeF size = icon.deviceIndependentSize();
        painter.drawPixmap(QPointF(slot.center().x() - size.width() / 2 + 0.5, (height() - size.height()) / 2), icon);
    }

    const QPixmap chevron = tinted(u"chevron-right"_s, chevronSize, secondary);
    const QSizeF chevronRoom = chevron.deviceIndependentSize();
    const qreal chevronLeft = width() - sideInset - chevronRoom.width();
    painter.drawPixmap(QPointF(chevronLeft, (height() - chevronRoom.height()) / 2), chevron);

    const QFont valueFont = AccountLook::font(12);
    const QFontMetrics valueMetrics(valueFont);
    const int valueWidth = std::min(valueMetrics.horizontalAdvance(value_), width() / 2);
    const int valueRight = int(chevronLeft) - (value_.isEmpty() ? 0 : 8);
    painter.setFont(valueFont);
    painter.setPen(secondary);
    painter.drawText(QRect(valueRight - valueWidth, 0, valueWidth, height()), Qt::AlignVCenter | Qt::AlignRight,
                     valueMetrics.elidedText(value_, Qt::ElideRight, valueWidth));

    const int titleLeft = slot.right() + 1 + spacing;
    const int titleWidth = valueRight - valueWidth - spacing - titleLeft;
    const QFont titleFont = AccountLook::font(14);
    painter.setFont(titleFont);
    painter.setPen(text);
    painter.drawText(QRect(titleLeft, 0, titleWidth, height()), Qt::AlignVCenter | Qt::AlignLeft,
                     QFontMetrics(titleFont).elidedText(title_, Qt::ElideRight, titleWidth));
}

void MenuRow::enterEvent(QEnterEvent *event)
{
    QWidget::enterEvent(event);
    hovering_ = true;
    update();
}

void MenuRow::leaveEvent(QEvent *event)
{
    QWidget::leaveEvent(event);
    hovering_ = false;
    update();
}

void MenuRow::mousePressEvent(QMouseEvent *event)
{
    // Taken, so that the release comes here too.
    event->accept();
}

void MenuRow::mouseReleaseEvent(QMouseEvent *event)
{
    hovering_ = false;
    update();
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
        activate();
}

void MenuRow::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_Space)
        activate();
    else
        QWidget::keyPressEvent(event);
}
