#include "ui/account/AccountWindow.h"

#include "account/Account.h"
#include "report/Inbox.h"
#include "ui/account/AccountHome.h"
#include "ui/account/AccountLook.h"
#include "ui/account/CatPicker.h"
#include "ui/account/EmailPage.h"
#include "ui/account/InboxPage.h"
#include "ui/account/MessagePage.h"
#include "ui/account/PageTitle.h"
#include "ui/account/PasswordPage.h"
#include "ui/account/PlansPage.h"
#include "ui/art/AvatarButton.h"
#include "ui/art/PixelCat.h"

#include <QGuiApplication>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;
using Tone = ToneLabel::Tone;

AccountWindow::AccountWindow(QWidget *parent)
    : QWidget(parent, Qt::Window)
{
    setWindowTitle(u"Quillet"_s);
    setFont(AccountLook::font(13));
    build();
    wire();
    refresh();
    goHome();
}

void AccountWindow::build()
{
    home_ = new AccountHome(this);
    passwordPage_ = new PasswordPage(this);
    emailPage_ = new EmailPage(this);
    plansPage_ = new PlansPage(this);
    inboxPage_ = new InboxPage(this);
    messagePage_ = new MessagePage(this);
    pages_ = {home_, passwordPage_, emailPage_, plansPage_, inboxPage_, messagePage_};

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(20, 22, 20, 20);
    column->setSpacing(0);
    for (QWidget *page : std::as_const(pages_))
        column->addWidget(page, 0, Qt::AlignHCenter);
    message_ = AccountLook::label({}, 12, Tone::error, this);
    message_->setAlignment(Qt::AlignCenter);
    message_->setFixedWidth(AccountLook::accountWindowWidth - 40);
    message_->setContentsMargins(0, 12, 0, 0);
    column->addWidget(message_, 0, Qt::AlignHCenter);
}

void AccountWindow::wire()
{
    home_->onPickCat = [this] { pickCat(); };
    home_->onInbox = [this] { openInbox(); };
    home_->onPlans = [this] { openPlans(); };
    home_->onPassword = [this] { openPassword(); };
    home_->onEmail = [this] { openEmail(); };
    home_->onSignOut = [this] { signOutClicked(); };
    for (PageTitle *title : {passwordPage_->title(), emailPage_->title(), plansPage_->title(), inboxPage_->title()})
        title->onBack = [this] { goHome(); };
    messagePage_->title()->onBack = [this] { openInbox(); };

    const auto sayHere = [this](const QString &text, Tone tone) { say(text, tone); };
    passwordPage_->onSay = sayHere;
    emailPage_->onSay = sayHere;
    messagePage_->onSay = sayHere;
    passwordPage_->onSaved = [this] {
        setHasPassword(true);
        goHome();
        say(u"密码已修改。"_s, Tone::secondary);
    };
    emailPage_->onResize = [this] { fitHeight(); };
    emailPage_->onChanged = [this](const QString &address) {
        refresh();
        onChanged();
        goHome();
        say(u"邮箱已换成 " + address + u"。录音和笔记都还在。", Tone::secondary);
    };
    inboxPage_->onOpen = [this](const QUuid &id) { openMessage(id); };
    messagePage_->onDeleted = [this] {
        refresh();
        openInbox();
    };
}

void AccountWindow::show()
{
    refresh();
    goHome();
    present();
    askHasPassword();
}

void AccountWindow::showInbox()
{
    refresh();
    goHome();
    present();
    askHasPassword();
    openInbox();
}

void AccountWindow::present()
{
    if (const QScreen *screen = QGuiApplication::primaryScreen())
        move(screen->availableGeometry().center() - rect().center());
    QWidget::show();
    raise();
    activateWindow();
}

void AccountWindow::askHasPassword()
{
    Account::hasPassword(this, [this](std::optional<bool> answer) {
        if (!answer)
            return;
        setHasPassword(*answer);
        // The answer may have brought the account's cat from another device.
        refresh();
    });
}

void AccountWindow::setHasPassword(bool hasPassword)
{
    hasPassword_ = hasPassword;
    passwordPage_->setHasPassword(hasPassword);
    emailPage_->setHasPassword(hasPassword);
    fitHeight();
}

void AccountWindow::refresh()
{
    home_->refresh(Account::email(), Inbox::unread());
}

QWidget *AccountWindow::currentPage() const
{
    const auto shown = std::find_if(pages_.cbegin(), pages_.cend(), [](QWidget *page) { return !page->isHidden(); });
    return shown == pages_.cend() ? nullptr : *shown;
}

QString AccountWindow::message() const
{
    return message_->text();
}

ToneLabel::Tone AccountWindow::messageTone() const
{
    return message_->tone();
}

void AccountWindow::showPage(QWidget *page)
{
    for (QWidget *each : std::as_const(pages_))
        each->setVisible(each == page);
    message_->clear();
    message_->setTone(Tone::error);
    message_->hide();
    fitHeight();
}

void AccountWindow::fitHeight()
{
    // Resizing keeps the top-left corner where it is, so the top edge stays put.
    layout()->invalidate();
    layout()->activate();
    const int height = layout()->hasHeightForWidth() ? layout()->totalHeightForWidth(AccountLook::accountWindowWidth)
                                                     : layout()->totalSizeHint().height();
    setFixedSize(AccountLook::accountWindowWidth, height);
}

void AccountWindow::say(const QString &text, Tone tone)
{
    message_->setTone(tone);
    message_->setText(text);
    message_->setVisible(!text.isEmpty());
    fitHeight();
}

void AccountWindow::goHome()
{
    passwordPage_->clear();
    emailPage_->clear();
    showPage(home_);
    // Nothing ringed on arrival; Tab still reaches the avatar and the rows.
    home_->setFocus();
}

void AccountWindow::openInbox()
{
    inboxPage_->reload();
    showPage(inboxPage_);
}

void AccountWindow::openMessage(const QUuid &id)
{
    const QList<InboxMessage> messages = Inbox::all();
    const auto found = std::find_if(messages.cbegin(), messages.cend(),
                                    [&](const InboxMessage &message) { return message.id == id; });
    if (found == messages.cend())
        return;
    InboxMessage message = *found;
    if (!message.read) {
        message.read = true;
        Inbox::update(message);
        refresh();
    }
    messagePage_->display(message);
    showPage(messagePage_);
}

void AccountWindow::openPlans()
{
    showPage(plansPage_);
}

void AccountWindow::openPassword()
{
    showPage(passwordPage_);
    passwordPage_->focusFirst();
}

void AccountWindow::openEmail()
{
    showPage(emailPage_);
    emailPage_->focusFirst();
}

void AccountWindow::pickCat()
{
    const auto email = Account::email();
    if (!email)
        return;
    if (!catPicker_) {
        catPicker_ = new CatPicker(this);
        catPicker_->onPicked = [this](int index) {
            Account::setAvatar(index);
            refresh();
            onChanged();
        };
    }
    catPicker_->open(PixelCat::index(email), home_->avatar());
}

void AccountWindow::signOutClicked()
{
    hide();
    onSignOut();
}
