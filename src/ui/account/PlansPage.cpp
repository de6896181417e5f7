#include "ui/account/PlansPage.h"

#include "ui/account/AccountLook.h"
#include "ui/account/PageTitle.h"

#include <QVBoxLayout>

using namespace Qt::StringLiterals;

PlansPage::PlansPage(QWidget *parent)
    : QWidget(parent)
    , title_(new PageTitle(u"升级套餐"_s, this))
{
    auto *text = AccountLook::label(u"Beta 测试期间所有功能免费使用。\n付费套餐和积分正在准备中，上线后会在这里购买。"_s, 13,
                                    ToneLabel::Tone::text, this);
    text->setFixedWidth(AccountLook::contentWidth);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(16);
    column->addWidget(title_, 0, Qt::AlignHCenter);
    column->addWidget(text, 0, Qt::AlignHCenter);
}
