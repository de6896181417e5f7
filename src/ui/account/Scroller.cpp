#include "ui/account/Scroller.h"

#include "ui/account/AccountLook.h"

#include <QScrollBar>

using namespace Qt::StringLiterals;

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
    // A slim bar without arrows; its grey reads on both looks.
    verticalScrollBar()->setStyleSheet(
        u"QScrollBar:vertical { background: transparent; width: 8px; margin: 2px 0; }"
        u"QScrollBar::handle:vertical { background: rgba(128, 128, 128, 0.45); border-radius: 3px; min-height: 28px;"
        u" margin: 0 1px; }"
        u"QScrollBar::handle:vertical:hover { background: rgba(128, 128, 128, 0.7); }"
        u"QScrollBar::add-line:vertical, QScrollBar::sub-line:vertical { height: 0; }"
        u"QScrollBar::add-page:vertical, QScrollBar::sub-page:vertical { background: transparent; }"_s);
}
