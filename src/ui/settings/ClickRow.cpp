#include "ui/settings/ClickRow.h"

#include "ui/common/IconButton.h"
#include "ui/common/Look.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>

namespace {

// A sprite that only shows: the row under it takes the clicks.
IconButton *mark(const QString &symbol, const QString &description, QWidget *parent, int size)
{
    auto *icon = new IconButton(symbol, description, parent, size);
    icon->setAttribute(Qt::WA_TransparentForMouseEvents);
    icon->setFocusPolicy(Qt::NoFocus);
    return icon;
}

} // namespace

ClickRow::ClickRow(const QString &symbol, const QString &title, QWidget *parent)
    : QWidget(parent)
    , value_(new QLabel(this))
{
    setObjectName(title);
    setAccessibleName(title);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(2, 4, 0, 4);
    layout->setSpacing(10);
    if (!symbol.isEmpty())
        layout->addWidget(mark(symbol, title, this, 15));
    layout->addWidget(new QLabel(title, this));
    layout->addStretch(1);
    value_->setForegroundRole(QPalette::PlaceholderText);
    layout->addWidget(value_);
    layout->addWidget(mark(QStringLiteral("chevron.right"), title, this, 9));
}

void ClickRow::setValue(const QString &value)
{
    value_->setText(value);
}

QString ClickRow::value() const
{
    return value_->text();
}

void ClickRow::mousePressEvent(QMouseEvent *event)
{
    pressed_ = event->button() == Qt::LeftButton;
    update();
}

void ClickRow::mouseReleaseEvent(QMouseEvent *event)
{
    const bool click = pressed_ && event->button() == Qt::LeftButton && rect().contains(event->position().toPoint());
    pressed_ = false;
    update();
    if (click)
        onClick();
}

void ClickRow::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Space || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        onClick();
    else
        QWidget::keyPressEvent(event);
}

void ClickRow::paintEvent(QPaintEvent *)
{
    if (!pressed_ && !hasFocus())
        return;
    // A faint wash while pressed, so the row answers the hand; a ring when the keyboard is on it.
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor wash = palette().color(QPalette::WindowText);
    wash.setAlphaF(pressed_ ? 0.08f : 0.0f);
    QColor ring = palette().color(QPalette::Highlight);
    ring.setAlphaF(hasFocus() ? 0.6f : 0.0f);
    painter.setPen(QPen(ring, 1.5));
    painter.setBrush(wash);
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), 6, 6);
}
