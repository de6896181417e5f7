#include "ui/account/Card.h"

#include "ui/account/AccountLook.h"
#include "ui/common/Look.h"

#include <QPainter>
#include <QVBoxLayout>

Card::Card(const QList<QWidget *> &rows, QWidget *parent)
    : QFrame(parent)
{
    setFixedWidth(AccountLook::contentWidth);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(6, 6, 6, 6);
    column->setSpacing(2);
    for (QWidget *row : rows)
        column->addWidget(row);
}

void Card::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool dark = Look::isDark(palette());
    QColor fill = dark ? QColor(255, 255, 255, 14) : QColor(255, 255, 255, 235);
    QColor edge = palette().color(QPalette::Mid);
    edge.setAlphaF(dark ? 0.45f : 0.6f);
    painter.setPen(QPen(edge, 1));
    painter.setBrush(fill);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 10, 10);
}
