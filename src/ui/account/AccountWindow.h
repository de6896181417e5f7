#pragma once

// The signed-in user's account window: a home page with the menu, the message centre (the list
// and one message), changing the password, changing the e-mail address and the plans page. One
// page shows at a time; the window fits its height to the page and keeps its top edge. Results
// and failures go to one message line below the pages.
//
// Main thread only. Requests run on the network pool and come back here; results for a window
// that is gone are dropped. Closing hides the window; it lives as long as its owner.

#include "app/views/AccountView.h"
#include "ui/common/ToneLabel.h"

#include <QWidget>

class AccountHome;
class CatPicker;
class EmailPage;
class InboxPage;
class MessagePage;
class PasswordPage;
class PlansPage;

class AccountWindow final : public QWidget, public AccountView
{
    Q_OBJECT

public:
    explicit AccountWindow(QWidget *parent = nullptr);

    void show() override;
    // As show(), ending on the message centre's list (from a notification).
    void showInbox();
    // The home page's address, cat and unread count, read afresh.
    void refresh();

    void goHome();
    void openInbox();
    void openMessage(const QUuid &id);
    void openPlans();
    void openPassword();
    void openEmail();
    void pickCat();

    // What the window shows, for tests.
    QWidget *currentPage() const;
    AccountHome *home() const { return home_; }
    PasswordPage *passwordPage() const { return passwordPage_; }
    EmailPage *emailPage() const { return emailPage_; }
    InboxPage *inboxPage() const { return inboxPage_; }
    MessagePage *messagePage() const { return messagePage_; }
    CatPicker *catPicker() const { return catPicker_; }
    bool hasPassword() const { return hasPassword_; }
    QString message() const;
    ToneLabel::Tone messageTone() const;

private:
    void build();
    void wire();
    void present();
    void askHasPassword();
    void setHasPassword(bool hasPassword);
    void showPage(QWidget *page);
    void fitHeight();
    void say(const QString &text, ToneLabel::Tone tone);
    void signOutClicked();

    bool hasPassword_ = true;
    AccountHome *home_ = nullptr;
    PasswordPage *passwordPage_ = nullptr;
    EmailPage *emailPage_ = nullptr;
    PlansPage *plansPage_ = nullptr;
    InboxPage *inboxPage_ = nullptr;
    MessagePage *messagePage_ = nullptr;
    QList<QWidget *> pages_;
    ToneLabel *message_ = nullptr;
    CatPicker *catPicker_ = nullptr;  // made at first use
};
