#include "ui/account/PageTitle.h"

#include "ui/account/AccountLook.h"

#include <QGridLayout>
#include <QPushButton>

using namespace Qt::StringLiterals;

PageTitle::PageTitle(const QString &title, QWidget *parent)
    : QWidget(parent)
    , back_(AccountLook::linkButton(u"‹ 返回"_s, this))
{
    setFixedWidth(AccountLook::contentWidth + 20);
    // Both in one cell: the title stays centred on the row whatever the button's width.
    auto *grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    auto *label = AccountLook::label(title, 15, ToneLabel::Tone::text, this);
    label->setFont(AccountLook::font(15, QFont::DemiBold));
    label->setWordWrap(false);
    label->setAlignment(Qt::AlignCenter);
    grid->addWidget(label, 0, 0);
    grid->addWidget(back_, 0, 0, Qt::AlignLeft | Qt::AlignVCenter);
    connect(back_, &QPushButton::clicked, this, [this] { onBack(); });
}
