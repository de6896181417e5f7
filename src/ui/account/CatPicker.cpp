#include "ui/account/CatPicker.h"

#include "ui/account/AccountLook.h"
#include "ui/account/CatGrid.h"
#include "ui/common/Look.h"

#include <QPainter>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

CatPicker::CatPicker(QWidget *parent)
    : QFrame(parent, Qt::Popup | Qt::FramelessWindowHint)
    , grid_(new CatGrid(44, 10, this))
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(18, 14, 18, 18);
    column->setSpacing(12);
    auto *heading = AccountLook::label(u"选一只小猫"_s, 13, ToneLabel::Tone::text, this);
    heading->setFont(AccountLook::font(13, QFont::DemiBold));
    heading->setAlignment(Qt::AlignCenter);
    column->addWidget(heading);
    column->addWidget(grid_);
    grid_->onPicked = [this](int index) {
        close();
        onPicked(index);
    };
}

void CatPicker::open(int current, const QWidget *anchor)
{
    grid_->setChosen(current);
    adjustSize();
    const QPoint below = anchor->mapToGlobal(QPoint(anchor->width() / 2, anchor->height() + 6));
    move(below.x() - width() / 2, below.y());
    show();
}

void CatPicker::paintEvent(QPaintEvent *)
{
    // Square corners: a pop-up has no see-through corners without a compositor.
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::Mid));
    painter.setBrush(Look::isDark(palette()) ? palette().color(QPalette::Base) : QColor(Qt::white));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}
