#include "ui/account/EmailPage.h"

#include "account/Account.h"
#include "text/Characters.h"
#include "ui/account/AccountLook.h"
#include "ui/account/PageTitle.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;
using Tone = ToneLabel::Tone;

namespace {

constexpr int confirmWidth = 88;

QLineEdit *makeField(const QString &placeholder, QWidget *parent, int width = AccountLook::contentWidth)
{
    auto *edit = new QLineEdit(parent);
    AccountLook::field(edit, placeholder, width);
    return edit;
}

} // namespace

EmailPage::EmailPage(QWidget *parent)
    : QWidget(parent)
    , title_(new PageTitle(u"更换邮箱"_s, this))
    , password_(makeField(u"当前密码"_s, this))
    , newEmail_(makeField(u"新邮箱"_s, this))
    , send_(AccountLook::mainButton(u"发送验证码"_s, AccountLook::contentWidth, this))
    , codeRow_(new QWidget(this))
    , code_(makeField(u"新邮箱收到的 6 位验证码"_s, codeRow_, AccountLook::contentWidth - confirmWidth - 8))
    , confirm_(AccountLook::mainButton(u"确认更换"_s, confirmWidth, codeRow_))
{
    password_->setEchoMode(QLineEdit::Password);
    auto *codeLine = new QHBoxLayout(codeRow_);
    codeLine->setContentsMargins(0, 4, 0, 0);
    codeLine->setSpacing(8);
    codeLine->addWidget(code_);
    codeLine->addWidget(confirm_);
    codeRow_->setFixedWidth(AccountLook::contentWidth);
    code_->setFixedHeight(confirm_->height());

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(10);
    column->addWidget(title_, 0, Qt::AlignHCenter);
    column->addSpacing(8);
    for (QWidget *widget : {static_cast<QWidget *>(password_), static_cast<QWidget *>(newEmail_)})
        column->addWidget(widget, 0, Qt::AlignHCenter);
    column->addSpacing(6);
    column->addWidget(send_, 0, Qt::AlignHCenter);
    column->addWidget(codeRow_, 0, Qt::AlignHCenter);

    connect(send_, &QPushButton::clicked, this, &EmailPage::sendCode);
    connect(confirm_, &QPushButton::clicked, this, &EmailPage::confirmEmail);
    connect(password_, &QLineEdit::returnPressed, send_, &QPushButton::click);
    connect(newEmail_, &QLineEdit::returnPressed, send_, &QPushButton::click);
    connect(code_, &QLineEdit::returnPressed, confirm_, &QPushButton::click);
    clear();
}

void EmailPage::setHasPassword(bool hasPassword)
{
    hasPassword_ = hasPassword;
    password_->setVisible(hasPassword);
}

void EmailPage::clear()
{
    for (QLineEdit *edit : {password_, newEmail_, code_})
        edit->clear();
    pendingEmail_.reset();
    codeRow_->hide();
    send_->setText(u"发送验证码"_s);
}

void EmailPage::focusFirst()
{
    (hasPassword_ ? password_ : newEmail_)->setFocus();
}

std::optional<QString> EmailPage::check(const QString &address) const
{
    if (hasPassword_ && password_->text().isEmpty())
        return u"请先输入当前密码。"_s;
    if (!address.contains(u'@'))
        return u"请输入新邮箱。"_s;
    if (address == Account::email())
        return u"这就是现在的邮箱。"_s;
    return std::nullopt;
}

void EmailPage::sendCode()
{
    const QString address = Text::trimmed(newEmail_->text()).toLower();
    if (const auto problem = check(address))
        return onSay(*problem, Tone::error);
    onSay(u"正在发送…"_s, Tone::secondary);
    Account::changeEmail(address, password_->text(), this, [this, address](const Account::Outcome &failure) {
        if (failure)
            return onSay(*failure, Tone::error);
        pendingEmail_ = address;
        codeRow_->show();
        send_->setText(u"重新发送"_s);
        onResize();
        code_->setFocus();
        onSay(u"验证码已发到 " + address + u"，10 分钟内有效。", Tone::secondary);
    });
}

void EmailPage::confirmEmail()
{
    if (!pendingEmail_)
        return;
    const QString code = Text::trimmed(code_->text());
    if (code.isEmpty())
        return onSay(u"请输入验证码。"_s, Tone::error);
    const QString address = *pendingEmail_;
    Account::confirmEmail(address, code, this, [this, address](const Account::Outcome &failure) {
        if (failure)
            return onSay(*failure, Tone::error);
        onChanged(address);
    });
}
