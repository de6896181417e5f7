#pragma once

// The account window's page for moving the account to another e-mail address: the current
// password (not for an account without one), the new address and a send button; once a code is on
// its way, the code field with its confirm button. Addresses are trimmed and lower-cased before
// they are compared or sent. Reports through the window's message line. Main thread only; requests
// come back here and are dropped if the page is gone.

#include "ui/common/ToneLabel.h"

#include <QWidget>

#include <functional>
#include <optional>

class PageTitle;
class QLineEdit;
class QPushButton;

class EmailPage final : public QWidget
{
    Q_OBJECT

public:
    explicit EmailPage(QWidget *parent = nullptr);

    void setHasPassword(bool hasPassword);
    // Empty fields, no address waiting for its code, the code row hidden.
    void clear();
    void focusFirst();
    void sendCode();
    void confirmEmail();

    std::optional<QString> pendingEmail() const { return pendingEmail_; }
    PageTitle *title() const { return title_; }
    QLineEdit *emailPassword() const { return password_; }
    QLineEdit *newEmail() const { return newEmail_; }
    QLineEdit *code() const { return code_; }
    QPushButton *sendButton() const { return send_; }
    QPushButton *confirmButton() const { return confirm_; }

    std::function<void(const QString &text, ToneLabel::Tone tone)> onSay = [](const QString &, ToneLabel::Tone) {};
    // The page changed its height (the code row came in).
    std::function<void()> onResize = [] {};
    // The account now has this address.
    std::function<void(const QString &address)> onChanged = [](const QString &) {};

private:
    std::optional<QString> check(const QString &address) const;

    bool hasPassword_ = true;
    std::optional<QString> pendingEmail_;
    PageTitle *title_;
    QLineEdit *password_;
    QLineEdit *newEmail_;
    QPushButton *send_;
    QWidget *codeRow_;
    QLineEdit *code_;
    QPushButton *confirm_;
};
