#include "ui/account/PasswordPage.h"

#include "account/Account.h"
#include "text/Characters.h"
#include "ui/account/AccountLook.h"
#include "ui/account/PageTitle.h"

#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype minPasswordLength = 8;

QLineEdit *passwordField(const QString &placeholder, QWidget *parent)
{
    auto *edit = new QLineEdit(parent);
    AccountLook::field(edit, placeholder, AccountLook::contentWidth);
    edit->setEchoMode(QLineEdit::Password);
    return edit;
}

} // namespace

PasswordPage::PasswordPage(QWidget *parent)
    : QWidget(parent)
    , title_(new PageTitle(u"修改密码"_s, this))
    , old_(passwordField(u"当前密码"_s, this))
    , new_(passwordField(u"新密码（至少 8 位）"_s, this))
    , again_(passwordField(u"再输入一次新密码"_s, this))
    , save_(AccountLook::mainButton(u"保存"_s, AccountLook::contentWidth, this))
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(10);
    column->addWidget(title_, 0, Qt::AlignHCenter);
    column->addSpacing(8);
    for (QWidget *widget : {static_cast<QWidget *>(old_), static_cast<QWidget *>(new_),
                            static_cast<QWidget *>(again_)})
        column->addWidget(widget, 0, Qt::AlignHCenter);
    column->addSpacing(6);
    column->addWidget(save_, 0, Qt::AlignHCenter);
    connect(save_, &QPushButton::clicked, this, &PasswordPage::save);
    for (QLineEdit *edit : {old_, new_, again_})
        connect(edit, &QLineEdit::returnPressed, save_, &QPushButton::click);
}

void PasswordPage::setHasPassword(bool hasPassword)
{
    hasPassword_ = hasPassword;
    old_->setVisible(hasPassword);
}

void PasswordPage::clear()
{
    for (QLineEdit *edit : {old_, new_, again_})
        edit->clear();
}

void PasswordPage::focusFirst()
{
    (hasPassword_ ? old_ : new_)->setFocus();
}

std::optional<QString> PasswordPage::check() const
{
    if (hasPassword_ && old_->text().isEmpty())
        return u"请先输入当前密码。"_s;
    if (Text::characterCount(new_->text()) < minPasswordLength)
        return u"新密码至少 8 位。"_s;
    if (again_->text() != new_->text())
        return u"两次输入的新密码不一样。"_s;
    if (new_->text() == old_->text())
        return u"新密码和当前密码一样。"_s;
    return std::nullopt;
}

void PasswordPage::save()
{
    if (const auto problem = check())
        return onSay(*problem, ToneLabel::Tone::error);
    onSay(u"正在保存…"_s, ToneLabel::Tone::secondary);
    const QString current = hasPassword_ ? old_->text() : QString();
    Account::setPassword(new_->text(), current, this, [this](const Account::Outcome &failure) {
        if (failure)
            return onSay(*failure, ToneLabel::Tone::error);
        onSaved();
    });
}
