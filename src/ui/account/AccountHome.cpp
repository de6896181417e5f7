#include "ui/account/AccountHome.h"

#include "text/Characters.h"
#include "ui/account/AccountLook.h"
#include "ui/account/Card.h"
#include "ui/account/MenuRow.h"
#include "ui/art/AvatarButton.h"
#include "ui/art/PixelCat.h"

#include <QVBoxLayout>

using namespace Qt::StringLiterals;

AccountHome::AccountHome(QWidget *parent)
    : QWidget(parent)
    , avatar_(new AvatarButton(72, this))
    , emailLabel_(AccountLook::label({}, 15, ToneLabel::Tone::text, this))
{
    avatar_->setToolTip(u"换一只猫"_s);
    connect(avatar_, &AvatarButton::clicked, this, [this] { onPickCat(); });
    emailLabel_->setFont(AccountLook::font(15, QFont::DemiBold));
    emailLabel_->setWordWrap(false);
    emailLabel_->setAlignment(Qt::AlignCenter);
    emailLabel_->setFixedWidth(AccountLook::contentWidth);
    auto *caption = AccountLook::label(u"Quillet 账户"_s, 12, ToneLabel::Tone::secondary, this);
    caption->setAlignment(Qt::AlignCenter);

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(avatar_, 0, Qt::AlignHCenter);
    column->addSpacing(10);
    column->addWidget(emailLabel_, 0, Qt::AlignHCenter);
    column->addSpacing(3);
    column->addWidget(caption, 0, Qt::AlignHCenter);
    column->addSpacing(18);

    inboxRow_ = row(u"pixel:mail"_s, u"消息中心"_s, {}, &onInbox);
    const QList<QList<QWidget *>> groups{
        {inboxRow_},
        {row(u"pixel:fish"_s, u"积分"_s, u"Beta 免费"_s, &onPlans), row(u"pixel:crown"_s, u"升级套餐"_s, {}, &onPlans)},
        {row(u"key"_s, u"修改密码"_s, {}, &onPassword), row(u"envelope"_s, u"更换邮箱"_s, {}, &onEmail),
         row(u"rectangle.portrait.and.arrow.right"_s, u"退出登录"_s, {}, &onSignOut)},
    };
    for (qsizetype i = 0; i < groups.size(); ++i) {
        column->addSpacing(i == 0 ? 0 : 12);
        column->addWidget(new Card(groups[i], this), 0, Qt::AlignHCenter);
    }
}

MenuRow *AccountHome::row(const QString &icon, const QString &title, const QString &value,
                          std::function<void()> *action)
{
    auto *menuRow = new MenuRow(icon, title, value, this);
    // Through the member, so that a callback set later is the one that runs.
    menuRow->onClick = [action] { (*action)(); };
    return menuRow;
}

QList<MenuRow *> AccountHome::rows() const
{
    return findChildren<MenuRow *>();
}

void AccountHome::refresh(const std::optional<QString> &email, int unread)
{
    email_ = email.value_or(QString());
    emailLabel_->setText(
        emailLabel_->fontMetrics().elidedText(email_, Qt::ElideMiddle, AccountLook::contentWidth));
    emailLabel_->setToolTip(email_);
    avatar_->setLetter(email_.isEmpty() ? std::nullopt : std::optional(Text::prefix(email_, 1).toUpper()));
    avatar_->setCat(PixelCat::index(email));
    inboxRow_->setValue(unread > 0 ? QString::number(unread) + u" 条新消息" : QString());
}
