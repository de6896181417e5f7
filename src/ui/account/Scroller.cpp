#include "ui/account/Scroller.h"

#include "ui/account/AccountLook.h"

Scroller::Scroller(QWidget *content, int height, QWidget *parent)
    : QScrollArea(parent)
{
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setWidgetResizable(true);
    setFixedSize(AccountLook::contentWidth + 12, height);
    // The page's own background shows through.
    viewport()->setAutoFillBackground(false);
    content->setAutoFillBackground(false);
    setWidget(content);
}
