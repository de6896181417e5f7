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
constexpr int stackedHeight = 52;
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

MenuRow::MenuRow(const QString &icon, const QString &title, const QString &value, QWidget *parent, Shape shape)
    : QWidget(parent)
    , shape_(shape)
    , icon_(icon)
    , title_(title)
    , value_(value)
{
    setFixedHeight(shape == Shape::stacked ? stackedHeight : rowHeight);
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
    return {AccountLook::contentWidth - 12, height()};
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

QFont MenuRow::sized(double pixels) const
{
    QFont sized = font();
    sized.setPixelSize(qRound(pixels));
    return sized;
}

void MenuRow::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (hovering_ || hasFocus()) {
        QColor wash = palette().color(QPalette::WindowText);
        wash.setAlphaF(0.06f);
        painter.setPen(Qt::NoPen);
        painter.setBrush(wash);
        painter.drawRoundedRect(QRectF(rect()), 8, 8);
    }
    const QRect slot(sideInset, 0, iconSlot, height());
    paintIcon(painter, slot);
    const QPixmap chevron = tinted(u"chevron-right"_s, chevronSize, Look::secondaryText(palette()));
    const QSizeF chevronRoom = chevron.deviceIndependentSize();
    const qreal chevronLeft = width() - sideInset - chevronRoom.width();
    painter.drawPixmap(QPointF(chevronLeft, (height() - chevronRoom.height()) / 2), chevron);
    paintTexts(painter, slot.right() + 1 + spacing, int(chevronLeft) - spacing);
}

void MenuRow::paintIcon(QPainter &painter, const QRect &slot)
{
    const QPointF centre(slot.center().x() + 0.5, height() / 2.0);
    if (unread_) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(palette().color(QPalette::Highlight));
        painter.drawEllipse(centre, dotSize / 2.0, dotSize / 2.0);
        return;
    }
    const QPixmap icon = tinted(spriteFor(icon_), iconSize, Look::secondaryText(palette()));
    painter.drawPixmap(centre - QPointF(icon.deviceIndependentSize().width(), icon.deviceIndependentSize().height()) / 2,
                       icon);
}

void MenuRow::paintTexts(QPainter &painter, int left, int right)
{
    const QFont titleFont = sized(14);
    const QFont valueFont = sized(12);
    const QFontMetrics titleMetrics(titleFont);
    const QFontMetrics valueMetrics(valueFont);
    const QColor secondary = Look::secondaryText(palette());
    const int room = right - left;
    QRect titleBox(left, 0, room, height());
    QRect valueBox = titleBox;
    Qt::Alignment valueAlign = Qt::AlignVCenter | Qt::AlignRight;
    if (shape_ == Shape::stacked) {
        titleBox = QRect(left, 8, room, height() / 2 - 6);
        valueBox = QRect(left, height() / 2 + 1, room, height() / 2 - 9);
        valueAlign = Qt::AlignTop | Qt::AlignLeft;
    } else if (!value_.isEmpty()) {
        // The value keeps its whole width when it can; the title gives way first.
        const int valueWidth = std::min(valueMetrics.horizontalAdvance(value_) + 4, room / 2);
        valueBox = QRect(right - valueWidth, 0, valueWidth, height());
        titleBox.setRight(valueBox.left() - spacing);
    }
    painter.setFont(valueFont);
    painter.setPen(secondary);
    painter.drawText(valueBox, valueAlign, valueMetrics.elidedText(value_, Qt::ElideRight, valueBox.width()));
    painter.setFont(titleFont);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(titleBox, (shape_ == Shape::stacked ? Qt::AlignBottom : Qt::AlignVCenter) | Qt::AlignLeft,
                     titleMetrics.elidedText(title_, Qt::ElideRight, titleBox.width()));
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
