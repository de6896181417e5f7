#pragma once

// The one window through which a user signs in, creates an account or sets a new password: a
// small state machine over six steps and two flows, with one form area and one main button that
// change on every step. It talks only to Account and reports the end through onSignedIn, or
// onClose when the user closes it before finishing.
//
// Main thread only. Requests run on the network pool and come back here; their results are
// dropped if the window is gone. The window lives as long as its owner and can be shown again
// after a sign-out. Return anywhere in the window acts as the main button.

#include "app/views/LoginView.h"
#include "ui/account/LoginSteps.h"

#include <QWidget>

#include <chrono>

class AvatarButton;
class CatGrid;
class QLabel;
class QLineEdit;
class QPushButton;
class StepProgress;
class ToneLabel;

class LoginWindow final : public QWidget, public LoginView
{
    Q_OBJECT

public:
    using Step = LoginSteps::Step;
    using Flow = LoginSteps::Flow;

    explicit LoginWindow(QWidget *parent = nullptr);

    void show() override;
    void showSetPassword() override;

    // How long "already registered" stays in view before the window finishes on its own.
    std::chrono::milliseconds welcomeBackPause = std::chrono::seconds(1);

    // What the window shows, for tests and for accessibility checks.
    Step step() const { return step_; }
    Flow flow() const { return flow_; }
    QString email() const { return email_; }
    int avatar() const { return avatar_; }
    QLineEdit *emailField() const { return emailField_; }
    QLineEdit *loginPassword() const { return loginPassword_; }
    QLineEdit *codeField() const { return codeField_; }
    QLineEdit *newPassword() const { return newPassword_; }
    QLineEdit *againPassword() const { return againPassword_; }
    QPushButton *mainButton() const { return mainButton_; }
    QPushButton *backButton() const { return back_; }
    // The links under the form that this step shows.
    QList<QPushButton *> links() const;
    CatGrid *cats() const { return catGrid_; }
    QString title() const;
    QString subtitle() const;
    QString counter() const;
    bool counterShown() const;
    QString message() const;

    // The actions behind the buttons: the main button (and Return), "‹ 返回", the links, a cat.
    void primary();
    void goBack();
    void startSignUp();
    void startReset();
    void resend();
    void catPicked(int index);

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void build();
    QWidget *buildForm();
    void go(Step step);
    void showFields(Step step);
    void showPicture(Step step);
    void showLinks(const QStringList &words);
    void focusFor(Step step);
    void fadeInTitle();
    void present();

    void login();
    void sendCode();
    void verify();
    void savePassword();
    void saveAvatar();
    void finish();

    QString typedAddress() const;
    void fail(const QString &text);
    void busy(const QString &progress);
    // Ends a request: the button comes back, and a failure is shown. True on success.
    bool settle(const std::optional<QString> &failure);

    Step step_ = Step::login;
    Flow flow_ = Flow::signUp;
    QString email_;
    int avatar_ = 0;
    bool finished_ = false;

    QPushButton *back_ = nullptr;
    StepProgress *progress_ = nullptr;
    QWidget *picture_ = nullptr;
    QLabel *appIcon_ = nullptr;
    AvatarButton *bigCat_ = nullptr;
    AvatarButton *doneCat_ = nullptr;
    ToneLabel *titleLabel_ = nullptr;
    ToneLabel *subtitle_ = nullptr;
    QLineEdit *emailField_ = nullptr;
    QLineEdit *loginPassword_ = nullptr;
    QLineEdit *codeField_ = nullptr;
    QLineEdit *newPassword_ = nullptr;
    QLineEdit *againPassword_ = nullptr;
    CatGrid *catGrid_ = nullptr;
    QPushButton *mainButton_ = nullptr;
    QWidget *linkRow_ = nullptr;
    QList<QPushButton *> links_;
    ToneLabel *message_ = nullptr;
};
