#pragma once

// The home page of the account window: the avatar (a click opens the cat chooser), the address,
// and the menu: message centre, points and plans, password, e-mail and sign-out. It only shows
// and reports; the window decides. Main thread only.

#include <QWidget>

#include <functional>
#include <optional>

class AvatarButton;
class MenuRow;
class ToneLabel;

class AccountHome final : public QWidget
{
    Q_OBJECT

public:
    explicit AccountHome(QWidget *parent = nullptr);

    // The signed-in address (none: an empty label) and how many messages are unread.
    void refresh(const std::optional<QString> &email, int unread);
    AvatarButton *avatar() const { return avatar_; }
    QString email() const { return email_; }
    MenuRow *inboxRow() const { return inboxRow_; }
    QList<MenuRow *> rows() const;

    std::function<void()> onPickCat = [] {};
    std::function<void()> onInbox = [] {};
    std::function<void()> onPlans = [] {};
    std::function<void()> onPassword = [] {};
    std::function<void()> onEmail = [] {};
    std::function<void()> onSignOut = [] {};

private:
    MenuRow *row(const QString &icon, const QString &title, const QString &value, std::function<void()> *action);

    AvatarButton *avatar_;
    ToneLabel *emailLabel_;
    MenuRow *inboxRow_ = nullptr;
    QString email_;
};
