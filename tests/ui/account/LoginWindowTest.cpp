#include "RelayFixture.h"

#include "EventLoop.h"
#include "account/Account.h"
#include "ui/account/CatGrid.h"
#include "ui/account/LoginWindow.h"
#include "ui/art/AvatarButton.h"
#include "ui/art/PixelCat.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;
using Step = LoginWindow::Step;

namespace {

enum class Act { press, signUp, reset, back, resend, cat };
enum class Input { email, password, code, newPassword, again };

struct Stage
{
    Act act;
    QList<std::pair<Input, QString>> typed;
    QList<std::pair<int, QByteArray>> replies;  // queued ahead of the relay's plain yes
    int requests;                               // how many this stage sends
    Step after;
    QString message;
};

struct Walk
{
    const char *name;
    QList<Stage> stages;
    bool signedIn;
    QList<std::pair<QString, QJsonObject>> sent;  // path and body of the requests, in order
};

QLineEdit *input(const LoginWindow &window, Input which)
{
    switch (which) {
    case Input::email: return window.emailField();
    case Input::password: return window.loginPassword();
    case Input::code: return window.codeField();
    case Input::newPassword: return window.newPassword();
    case Input::again: return window.againPassword();
    }
    return nullptr;
}

void act(LoginWindow &window, Act action)
{
    switch (action) {
    case Act::press: window.mainButton()->click(); break;
    case Act::signUp: window.startSignUp(); break;
    case Act::reset: window.startReset(); break;
    case Act::back: window.backButton()->click(); break;
    case Act::resend: window.resend(); break;
    case Act::cat: window.cats()->buttons()[5]->click(); break;
    }
}

QJsonObject device(QJsonObject body)
{
    body.insert(u"device"_s, Account::device());
    return body;
}

const QByteArray wrongCode = R"({"error": {"message": "wrong code"}})";
const QByteArray registered = R"({"token": "T9", "hasPassword": true})";

} // namespace

class LoginWindowTest : public RelayFixture
{
};

TEST_F(LoginWindowTest, WalksEveryFlowThroughTheWindow)
{
    const Walk walks[] = {
        {"sign-up by code, capitals and blanks in the address, a non-ASCII password",
         {{Act::signUp, {}, {}, 0, Step::email, {}},
          {Act::press, {{Input::email, u" New@Example.COM "_s}}, {}, 1, Step::code, {}},
          {Act::press, {{Input::code, u" 123456 "_s}}, {}, 1, Step::password, {}},
          {Act::press, {{Input::newPassword, u"pässwörd"_s}, {Input::again, u"pässwörd"_s}}, {}, 1, Step::avatar, {}},
          {Act::cat, {}, {}, 0, Step::avatar, {}},
          {Act::press, {}, {}, 1, Step::done, {}},
          {Act::press, {}, {}, 0, Step::done, {}}},
         true,
         {{u"/auth/start"_s, {{u"email"_s, u"new@example.com"_s}}},
          {u"/auth/verify"_s, device({{u"email"_s, u"new@example.com"_s}, {u"code"_s, u"123456"_s}})},
          {u"/auth/password"_s, {{u"password"_s, u"pässwörd"_s}, {u"current"_s, u""_s}}},
          {u"/auth/profile"_s, {{u"avatar"_s, u"5"_s}}}}},
        {"sign-in by password, the password's blanks kept",
         {{Act::press, {}, {}, 0, Step::login, u"请先填写邮箱。"_s},
          {Act::press, {{Input::email, u"  Mei@Example.com"_s}}, {}, 0, Step::login, u"请输入密码。"_s},
          {Act::press, {{Input::password, u" 密码 pass"_s}}, {}, 2, Step::login, {}}},
         true,
         {{u"/auth/login"_s, device({{u"email"_s, u"mei@example.com"_s}, {u"password"_s, u" 密码 pass"_s}})},
          {u"/auth/me"_s, {}}}},
        {"wrong code, expired code, resend, back",
         {{Act::signUp, {}, {}, 0, Step::email, {}},
          {Act::press, {{Input::email, u"no-at-sign"_s}}, {}, 0, Step::email, u"请输入正确的邮箱地址。"_s},
          {Act::press, {{Input::email, u"li@example.com"_s}}, {}, 1, Step::code, {}},
          {Act::press, {{Input::code, u"12345"_s}}, {}, 0, Step::code, u"请输入 6 位验证码。"_s},
          {Act::press, {{Input::code, u"1234567"_s}}, {}, 0, Step::code, u"请输入 6 位验证码。"_s},
          {Act::press, {{Input::code, u"abcdef"_s}}, {{400, wrongCode}}, 1, Step::code, u"验证码不对，请再看一下邮件。"_s},
          {Act::press, {}, {{400, R"({"error": {"message": "code expired"}})"}}, 1, Step::code,
           u"验证码已过期，请重新获取。"_s},
          {Act::resend, {}, {{429, R"({"error": {"message": "wait a minute"}})"}}, 1, Step::code,
           u"验证码刚发过，请一分钟后再试。"_s},
          {Act::resend, {}, {}, 1, Step::code, u"已重新发送。"_s},
          {Act::back, {}, {}, 0, Step::email, {}},
          {Act::back, {}, {}, 0, Step::login, {}}},
         false,
         {{u"/auth/start"_s, {{u"email"_s, u"li@example.com"_s}}},
          {u"/auth/verify"_s, device({{u"email"_s, u"li@example.com"_s}, {u"code"_s, u"abcdef"_s}})},
          {u"/auth/verify"_s, device({{u"email"_s, u"li@example.com"_s}, {u"code"_s, u"abcdef"_s}})},
          {u"/auth/start"_s, {{u"email"_s, u"li@example.com"_s}}},
          {u"/auth/start"_s, {{u"email"_s, u"li@example.com"_s}}}}},
        {"too many attempts, then a wrong password",
         {{Act::press, {{Input::email, u"li@example.com"_s}, {Input::password, u"guess"_s}},
           {{429, R"({"error": {"message": "too many attempts"}})"}}, 1, Step::login,
           u"密码错误次数太多，请 15 分钟后再试，或用验证码登录。"_s},
          {Act::press, {}, {{401, R"({"error": {"message": "wrong email or password"}})"}}, 1, Step::login,
           u"邮箱或密码不对。"_s}},
         false,
         {}},
        {"reset: three steps, no avatar",
         {{Act::reset, {}, {}, 0, Step::email, {}},
          {Act::press, {{Input::email, u"li@example.com"_s}}, {}, 1, Step::code, {}},
          {Act::press, {{Input::code, u"654321"_s}}, {{200, registered}}, 1, Step::password, {}},
          {Act::press, {{Input::newPassword, u"short"_s}}, {}, 0, Step::password, u"密码至少 8 位。"_s},
          {Act::press, {{Input::newPassword, u"long enough"_s}, {Input::again, u"long enougH"_s}}, {}, 0,
           Step::password, u"两次输入的密码不一样。"_s},
          {Act::press, {{Input::again, u"long enough"_s}}, {}, 1, Step::password, {}}},
         true,
         {}},
        {"sign-up with a registered address signs in",
         {{Act::signUp, {}, {}, 0, Step::email, {}},
          {Act::press, {{Input::email, u"mei@example.com"_s}}, {}, 1, Step::code, {}},
          {Act::press, {{Input::code, u"111111"_s}}, {{200, registered}}, 2, Step::code,
           u"这个邮箱已经注册过，已为你登录。"_s}},
         true,
         {}},
    };
    for (const Walk &walk : walks) {
        SCOPED_TRACE(walk.name);
        freshStart();
        LoginWindow window;
        window.welcomeBackPause = std::chrono::milliseconds(20);
        int signedIn = 0, closed = 0;
        window.onSignedIn = [&] { ++signedIn; };
        window.onClose = [&] { ++closed; };
        window.show();
        for (const Stage &stage : walk.stages) {
            for (const auto &[status, body] : stage.replies)
                queue(status, body);
            for (const auto &[which, text] : stage.typed)
                input(window, which)->setText(text);
            const qsizetype expected = requests().size() + stage.requests;
            act(window, stage.act);
            ASSERT_TRUE(runEventsUntil([&] {
                return requests().size() == expected && (window.mainButton()->isEnabled() || window.isHidden());
            })) << "stage ending on step " << int(stage.after);
            EXPECT_EQ(window.step(), stage.after);
            EXPECT_EQ(window.message(), stage.message);
        }
        EXPECT_EQ(signedIn, walk.signedIn ? 1 : 0);
        EXPECT_EQ(window.isHidden(), walk.signedIn);
        EXPECT_EQ(Account::signedIn(), walk.signedIn);
        EXPECT_EQ(closed, 0);
        for (qsizetype i = 0; i < walk.sent.size(); ++i) {
            EXPECT_EQ(paths().value(i), walk.sent[i].first);
            if (!walk.sent[i].second.isEmpty()) {
                EXPECT_EQ(body(i), walk.sent[i].second) << walk.sent[i].first.toStdString();
            }
        }
    }
}

TEST_F(LoginWindowTest, CountsStepsPerFlowAndClosesAsTheUserSays)
{
    LoginWindow window;
    int signedIn = 0, closed = 0;
    window.onSignedIn = [&] { ++signedIn; };
    window.onClose = [&] { ++closed; };
    const auto press = [&](Step until) {
        window.mainButton()->click();
        ASSERT_TRUE(runEventsUntil([&] { return window.step() == until; }));
    };
    window.show();
    EXPECT_FALSE(window.counterShown());
    EXPECT_EQ(window.focusWidget(), window.emailField());
    QStringList links;
    for (const QPushButton *link : window.links())
        links.append(link->text());
    EXPECT_EQ(links, (QStringList{u"创建新账号"_s, u"忘记密码？"_s}));

    window.showSetPassword();
    EXPECT_EQ(window.flow(), LoginWindow::Flow::reset);
    EXPECT_EQ(window.counter(), u"第 3 步，共 3 步"_s);
    EXPECT_TRUE(window.backButton()->isHidden());
    EXPECT_EQ(window.subtitle(), u"为了账户安全，请先设置一个密码。以后用邮箱和密码登录。"_s);
    EXPECT_EQ(window.mainButton()->text(), u"完成"_s);

    window.startSignUp();
    EXPECT_EQ(window.counter(), u"第 1 步，共 4 步"_s);
    window.emailField()->setText(u"Cat@Example.com"_s);
    press(Step::code);
    EXPECT_TRUE(window.subtitle().startsWith(u"验证码已发到 cat@example.com\n"_s));
    window.codeField()->setText(u"123456"_s);
    press(Step::password);
    window.goBack();
    EXPECT_EQ(window.step(), Step::login) << "a verified code isn't asked for twice";

    window.startSignUp();
    press(Step::code);
    window.codeField()->setText(u"123456"_s);
    press(Step::password);
    window.newPassword()->setText(u"12345678"_s);
    window.againPassword()->setText(u"12345678"_s);
    press(Step::avatar);
    EXPECT_EQ(window.counter(), u"第 4 步，共 4 步"_s);
    EXPECT_EQ(window.avatar(), PixelCat::index(u"cat@example.com"_s)) << "each address has its own first cat";
    EXPECT_EQ(window.cats()->chosen(), window.avatar());
    window.goBack();
    EXPECT_EQ(window.step(), Step::password);
    EXPECT_TRUE(window.newPassword()->text().isEmpty());

    window.close();
    EXPECT_EQ(closed, 1) << "closing before the end ends the application";
    EXPECT_EQ(signedIn, 0);
}

TEST_F(LoginWindowTest, AStalledRelayGivesTheButtonBackWithAWordedMessage)
{
    LoginWindow window;
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    window.emailField()->setText(u"li@example.com"_s);
    window.loginPassword()->setText(u"password"_s);
    TestServer::Response stall;
    stall.stall = true;
    server->enqueue(stall);
    QTest::keyClick(window.loginPassword(), Qt::Key_Return);
    ASSERT_TRUE(server->waitForRequests(1));
    runEventsFor(std::chrono::milliseconds(100));
    EXPECT_FALSE(window.mainButton()->isEnabled());
    EXPECT_EQ(window.message(), u"正在登录…"_s);
    window.emailField()->setText(u"typed while waiting"_s);
    EXPECT_EQ(window.emailField()->text(), u"typed while waiting"_s) << "the window stays usable";

    server.reset();  // the relay goes away: the waiting connection drops
    ASSERT_TRUE(runEventsUntil([&] { return window.mainButton()->isEnabled(); }));
    EXPECT_EQ(window.message(), u"连不上网络，请检查后再试。"_s);
    EXPECT_EQ(window.step(), Step::login);
    EXPECT_EQ(window.loginPassword()->text(), u"password"_s) << "nothing typed is lost";
    EXPECT_FALSE(Account::signedIn());
    server = std::make_unique<TestServer>();
}
