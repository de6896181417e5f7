#include "ui/account/LoginWindow.h"

#include "account/Account.h"
#include "text/Characters.h"
#include "ui/account/AccountLook.h"
#include "ui/account/CatGrid.h"
#include "ui/account/StepProgress.h"
#include "ui/common/ToneLabel.h"
#include "ui/art/AvatarButton.h"
#include "ui/art/PixelCat.h"

#include <QCloseEvent>
#include <QGraphicsOpacityEffect>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QPropertyAnimation>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QTimer>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;
using Tone = ToneLabel::Tone;

namespace {

constexpr int iconSide = 84;
constexpr int bigCatSide = 96;
constexpr int doneCatSide = 110;
constexpr int codeLength = 6;
constexpr qsizetype minPasswordLength = 8;

QLineEdit *makeField(const QString &placeholder, QWidget *parent, QLineEdit::EchoMode mode = QLineEdit::Normal,
                     double pixels = 14)
{
    auto *edit = new QLineEdit(parent);
    AccountLook::field(edit, placeholder, AccountLook::formWidth, pixels);
    edit->setEchoMode(mode);
    return edit;
}

QWidget *centred(QWidget *widget)
{
    auto *holder = new QWidget;
    auto *row = new QHBoxLayout(holder);
    row->setContentsMargins(0, 0, 0, 0);
    row->addStretch();
    row->addWidget(widget);
    row->addStretch();
    return holder;
}

} // namespace

LoginWindow::LoginWindow(QWidget *parent)
    : QWidget(parent, Qt::Window)
{
    setWindowTitle(u"Quillet"_s);
    setFont(AccountLook::font(13));
    setFixedSize(420, 560);
    build();
    for (const auto key : {Qt::Key_Return, Qt::Key_Enter}) {
        auto *shortcut = new QShortcut(QKeySequence(key), this);
        connect(shortcut, &QShortcut::activated, mainButton_, &QPushButton::click);
    }
    go(Step::login);
}

void LoginWindow::build()
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(24, 14, 24, 26);
    column->setSpacing(0);

    back_ = AccountLook::linkButton(u"‹ 返回"_s, this);
    connect(back_, &QPushButton::clicked, this, &LoginWindow::goBack);
    QSizePolicy keep = back_->sizePolicy();
    keep.setRetainSizeWhenHidden(true);
    back_->setSizePolicy(keep);
    auto *top = new QHBoxLayout;
    top->addWidget(back_);
    top->addStretch();
    column->addLayout(top);
    column->addStretch(2);

    progress_ = new StepProgress(this);
    column->addWidget(progress_);
    column->addSpacing(18);

    picture_ = new QWidget(this);
    auto *pictures = new QHBoxLayout(picture_);
    pictures->setContentsMargins(0, 0, 0, 16);
    appIcon_ = new QLabel(picture_);
    appIcon_->setPixmap(QIcon(u":/quillet.svg"_s).pixmap(QSize(iconSide, iconSide), devicePixelRatioF()));
    appIcon_->setFixedSize(iconSide, iconSide);
    bigCat_ = new AvatarButton(bigCatSide, picture_);
    bigCat_->setLetter(u"•"_s);
    bigCat_->setAttribute(Qt::WA_TransparentForMouseEvents);
    bigCat_->setFocusPolicy(Qt::NoFocus);
    doneCat_ = new AvatarButton(doneCatSide, picture_);
    doneCat_->setLetter(u"•"_s);
    // Only a picture here: it takes no clicks, and stays at full strength.
    doneCat_->setAttribute(Qt::WA_TransparentForMouseEvents);
    doneCat_->setFocusPolicy(Qt::NoFocus);
    doneCat_->setCursor(Qt::ArrowCursor);
    pictures->addStretch();
    for (QWidget *picture : {static_cast<QWidget *>(appIcon_), static_cast<QWidget *>(bigCat_),
                             static_cast<QWidget *>(doneCat_)})
        pictures->addWidget(picture);
    pictures->addStretch();
    column->addWidget(picture_);

    titleLabel_ = AccountLook::label({}, 22, Tone::text, this);
    titleLabel_->setFont(AccountLook::font(22, QFont::DemiBold));
    titleLabel_->setAlignment(Qt::AlignCenter);
    column->addWidget(titleLabel_);
    column->addSpacing(8);
    subtitle_ = AccountLook::label({}, 13, Tone::secondary, this);
    subtitle_->setAlignment(Qt::AlignCenter);
    column->addWidget(subtitle_);
    column->addSpacing(22);

    column->addWidget(buildForm());
    column->addSpacing(16);
    mainButton_ = AccountLook::mainButton({}, AccountLook::formWidth, this);
    connect(mainButton_, &QPushButton::clicked, this, &LoginWindow::primary);
    column->addWidget(centred(mainButton_));

    linkRow_ = new QWidget(this);
    auto *linkLine = new QHBoxLayout(linkRow_);
    linkLine->setContentsMargins(0, 8, 0, 0);
    linkLine->setSpacing(14);
    linkLine->addStretch();
    const std::pair<QString, void (LoginWindow::*)()> actions[] = {
        {u"创建新账号"_s, &LoginWindow::startSignUp},
        {u"忘记密码？"_s, &LoginWindow::startReset},
        {u"重新发送验证码"_s, &LoginWindow::resend},
    };
    for (const auto &[word, action] : actions) {
        auto *link = AccountLook::linkButton(word, linkRow_);
        connect(link, &QPushButton::clicked, this, action);
        linkLine->addWidget(link);
        links_.append(link);
    }
    linkLine->addStretch();
    column->addWidget(linkRow_);

    message_ = AccountLook::label({}, 12.5, Tone::error, this);
    message_->setAlignment(Qt::AlignCenter);
    message_->setMinimumHeight(34);
    column->addSpacing(6);
    column->addWidget(message_);
    column->addStretch(3);
}

QWidget *LoginWindow::buildForm()
{
    auto *form = new QWidget(this);
    auto *fields = new QVBoxLayout(form);
    fields->setContentsMargins(0, 0, 0, 0);
    fields->setSpacing(10);
    emailField_ = makeField(u"邮箱地址"_s, form);
    loginPassword_ = makeField(u"密码"_s, form, QLineEdit::Password);
    codeField_ = makeField(u"6 位验证码"_s, form, QLineEdit::Normal, 22);
    codeField_->setAlignment(Qt::AlignCenter);
    newPassword_ = makeField(u"密码（至少 8 位）"_s, form, QLineEdit::Password);
    againPassword_ = makeField(u"再输入一次"_s, form, QLineEdit::Password);
    for (QLineEdit *edit : {emailField_, loginPassword_, codeField_, newPassword_, againPassword_})
        fields->addWidget(edit, 0, Qt::AlignHCenter);
    catGrid_ = new CatGrid(40, 8, form);
    catGrid_->onPicked = [this](int index) { catPicked(index); };
    fields->addWidget(catGrid_, 0, Qt::AlignHCenter);
    return form;
}

void LoginWindow::show()
{
    go(Step::login);
    present();
}

void LoginWindow::showSetPassword()
{
    flow_ = Flow::reset;
    go(Step::password);
    subtitle_->setText(u"为了账户安全，请先设置一个密码。以后用邮箱和密码登录。"_s);
    back_->hide();
    present();
}

void LoginWindow::present()
{
    if (const QScreen *screen = QGuiApplication::primaryScreen())
        move(screen->availableGeometry().center() - rect().center());
    QWidget::show();
    raise();
    activateWindow();
}

QString LoginWindow::title() const
{
    return titleLabel_->text();
}

QString LoginWindow::subtitle() const
{
    return subtitle_->text();
}

QString LoginWindow::counter() const
{
    return progress_->text();
}

bool LoginWindow::counterShown() const
{
    return !progress_->isHidden();
}

QList<QPushButton *> LoginWindow::links() const
{
    QList<QPushButton *> shown;
    for (QPushButton *link : links_)
        if (!link->isHidden())
            shown.append(link);
    return shown;
}

QString LoginWindow::message() const
{
    return message_->text();
}

void LoginWindow::go(Step step)
{
    step_ = step;
    titleLabel_->setGraphicsEffect(nullptr);
    message_->clear();
    message_->setTone(Tone::error);
    mainButton_->setEnabled(true);
    back_->setVisible(step != Step::login && step != Step::done);

    const LoginSteps::Words words = LoginSteps::words(step, flow_, email_);
    progress_->setVisible(words.counter.has_value());
    if (words.counter)
        progress_->setStep(*words.counter, LoginSteps::total(flow_));
    titleLabel_->setText(words.title);
    subtitle_->setText(words.subtitle);
    mainButton_->setText(words.button);
    showLinks(words.links);
    if (step == Step::avatar) {
        avatar_ = PixelCat::index(email_);
        catPicked(avatar_);
        fadeInTitle();
    }
    showPicture(step);
    showFields(step);
    focusFor(step);
}

void LoginWindow::showFields(Step step)
{
    emailField_->setVisible(step == Step::login || step == Step::email);
    loginPassword_->setVisible(step == Step::login);
    codeField_->setVisible(step == Step::code);
    newPassword_->setVisible(step == Step::password);
    againPassword_->setVisible(step == Step::password);
    catGrid_->setVisible(step == Step::avatar);
    if (step == Step::code)
        codeField_->clear();
    if (step == Step::password) {
        newPassword_->clear();
        againPassword_->clear();
    }
}

void LoginWindow::showPicture(Step step)
{
    appIcon_->setVisible(step == Step::login);
    bigCat_->setVisible(step == Step::avatar);
    doneCat_->setVisible(step == Step::done);
    doneCat_->setCat(avatar_);
    picture_->setVisible(step == Step::login || step == Step::avatar || step == Step::done);
}

void LoginWindow::showLinks(const QStringList &words)
{
    for (QPushButton *link : std::as_const(links_))
        link->setVisible(words.contains(link->text()));
    linkRow_->setVisible(!words.isEmpty());
}

void LoginWindow::focusFor(Step step)
{
    switch (step) {
    case Step::login:
        (emailField_->text().isEmpty() ? emailField_ : loginPassword_)->setFocus();
        break;
    case Step::email: emailField_->setFocus(); break;
    case Step::code: codeField_->setFocus(); break;
    case Step::password: newPassword_->setFocus(); break;
    case Step::avatar:
    case Step::done: setFocus(); break;
    }
}

void LoginWindow::fadeInTitle()
{
    auto *effect = new QGraphicsOpacityEffect(titleLabel_);
    titleLabel_->setGraphicsEffect(effect);
    auto *fade = new QPropertyAnimation(effect, "opacity", effect);
    fade->setDuration(450);
    fade->setStartValue(0.0);
    fade->setEndValue(1.0);
    fade->start();
}

void LoginWindow::primary()
{
    switch (step_) {
    case Step::login: login(); break;
    case Step::email: sendCode(); break;
    case Step::code: verify(); break;
    case Step::password: savePassword(); break;
    case Step::avatar: saveAvatar(); break;
    case Step::done: finish(); break;
    }
}

void LoginWindow::goBack()
{
    if (step_ == Step::avatar)
        go(Step::password);
    else if (step_ == Step::code)
        go(Step::email);
    else
        go(Step::login);
}

void LoginWindow::startSignUp()
{
    flow_ = Flow::signUp;
    go(Step::email);
}

void LoginWindow::startReset()
{
    flow_ = Flow::reset;
    go(Step::email);
}

void LoginWindow::catPicked(int index)
{
    avatar_ = index;
    bigCat_->setCat(index);
    catGrid_->setChosen(index);
}

QString LoginWindow::typedAddress() const
{
    return Text::trimmed(emailField_->text()).toLower();
}

void LoginWindow::fail(const QString &text)
{
    message_->setTone(Tone::error);
    message_->setText(text);
}

void LoginWindow::busy(const QString &progress)
{
    mainButton_->setEnabled(false);
    message_->setTone(Tone::secondary);
    message_->setText(progress);
}

bool LoginWindow::settle(const std::optional<QString> &failure)
{
    mainButton_->setEnabled(true);
    if (failure) {
        fail(*failure);
        return false;
    }
    message_->clear();
    return true;
}

void LoginWindow::login()
{
    const QString address = typedAddress();
    if (address.isEmpty())
        return fail(u"请先填写邮箱。"_s);
    const QString password = loginPassword_->text();
    if (password.isEmpty())
        return fail(u"请输入密码。"_s);
    busy(u"正在登录…"_s);
    Account::login(address, password, this, [this](const Account::Outcome &failure) {
        if (!settle(failure))
            return;
        loginPassword_->clear();
        mainButton_->setEnabled(false);
        Account::hasPassword(this, [this](std::optional<bool>) {
            mainButton_->setEnabled(true);
            finish();
        });
    });
}

void LoginWindow::sendCode()
{
    const QString address = typedAddress();
    if (!address.contains(u'@'))
        return fail(u"请输入正确的邮箱地址。"_s);
    busy(u"正在发送…"_s);
    Account::sendCode(address, this, [this, address](const Account::Outcome &failure) {
        if (!settle(failure))
            return;
        email_ = address;
        go(Step::code);
    });
}

void LoginWindow::resend()
{
    busy(u"正在重新发送…"_s);
    Account::sendCode(email_, this, [this](const Account::Outcome &failure) {
        if (!settle(failure))
            return;
        message_->setTone(Tone::secondary);
        message_->setText(u"已重新发送。"_s);
    });
}

void LoginWindow::verify()
{
    const QString code = Text::trimmed(codeField_->text());
    if (Text::characterCount(code) != codeLength)
        return fail(u"请输入 6 位验证码。"_s);
    busy(u"正在验证…"_s);
    Account::verify(email_, code, this, [this](const Account::Outcome &failure) {
        if (!settle(failure))
            return;
        if (flow_ != Flow::signUp || !Account::lastHadPassword())
            return go(Step::password);
        mainButton_->setEnabled(false);
        Account::hasPassword(this, [this](std::optional<bool>) {
            message_->setTone(Tone::secondary);
            message_->setText(u"这个邮箱已经注册过，已为你登录。"_s);
            QTimer::singleShot(welcomeBackPause, this, [this] {
                mainButton_->setEnabled(true);
                finish();
            });
        });
    });
}

void LoginWindow::savePassword()
{
    const QString password = newPassword_->text();
    if (Text::characterCount(password) < minPasswordLength)
        return fail(u"密码至少 8 位。"_s);
    if (againPassword_->text() != password)
        return fail(u"两次输入的密码不一样。"_s);
    busy(u"正在保存…"_s);
    Account::setPassword(password, QString(), this, [this](const Account::Outcome &failure) {
        if (!settle(failure))
            return;
        if (flow_ == Flow::signUp)
            go(Step::avatar);
        else
            finish();
    });
}

void LoginWindow::saveAvatar()
{
    // Shown here at once; the service hears of it in the background, and a failure isn't news.
    Account::setAvatar(avatar_);
    go(Step::done);
}

void LoginWindow::finish()
{
    finished_ = true;
    hide();
    finished_ = false;
    onSignedIn();
}

void LoginWindow::closeEvent(QCloseEvent *event)
{
    QWidget::closeEvent(event);
    if (!finished_)
        onClose();
}
