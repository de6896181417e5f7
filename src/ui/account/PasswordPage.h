#pragma once

// The account window's page for changing the password, or setting one for an account that has
// none (then without the "当前密码" field). It checks the fields before any request and reports
// through the window's message line. Main thread only; the request comes back here and is dropped
// if the page is gone.

#include "ui/common/ToneLabel.h"

#include <QWidget>

#include <functional>

class PageTitle;
class QLineEdit;
class QPushButton;

class PasswordPage final : public QWidget
{
    Q_OBJECT

public:
    explicit PasswordPage(QWidget *parent = nullptr);

    void setHasPassword(bool hasPassword);
    void clear();
    // Focus on the first field the account needs.
    void focusFirst();
    void save();

    PageTitle *title() const { return title_; }
    QLineEdit *oldPassword() const { return old_; }
    QLineEdit *newPassword() const { return new_; }
    QLineEdit *againPassword() const { return again_; }
    QPushButton *saveButton() const { return save_; }

    std::function<void(const QString &text, ToneLabel::Tone tone)> onSay = [](const QString &, ToneLabel::Tone) {};
    // The service took the new password.
    std::function<void()> onSaved = [] {};

private:
    std::optional<QString> check() const;

    bool hasPassword_ = true;
    PageTitle *title_;
    QLineEdit *old_;
    QLineEdit *new_;
    QLineEdit *again_;
    QPushButton *save_;
};
