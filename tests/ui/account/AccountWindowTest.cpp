#include "RelayFixture.h"

#include "EventLoop.h"
#include "account/Account.h"
#include "platform/Http.h"
#include "ui/account/AccountHome.h"
#include "ui/account/AccountWindow.h"
#include "ui/account/CatGrid.h"
#include "ui/account/CatPicker.h"
#include "ui/account/EmailPage.h"
#include "ui/account/MenuRow.h"
#include "ui/account/PasswordPage.h"
#include "ui/art/AvatarButton.h"
#include "ui/art/PixelCat.h"

#include <QLineEdit>
#include <QPushButton>
#include <QThreadPool>

using namespace Qt::StringLiterals;
using Tone = ToneLabel::Tone;

namespace {

enum class Act { openPassword, save, openEmail, send, confirm };
enum class Input { old, fresh, again, emailPassword, newEmail, code };

struct Stage
{
    Act act;
    QList<std::pair<Input, QString>> typed;
    QList<std::pair<int, QByteArray>> replies;
    int requests;
    QString message;
    Tone tone;
    bool home;  // back on the home page afterwards
};

QLineEdit *input(const AccountWindow &window, Input which)
{
    switch (which) {
    case Input::old: return window.passwordPage()->oldPassword();
    case Input::fresh: return window.passwordPage()->newPassword();
    case Input::again: return window.passwordPage()->againPassword();
    case Input::emailPassword: return window.emailPage()->emailPassword();
    case Input::newEmail: return window.emailPage()->newEmail();
    case Input::code: return window.emailPage()->code();
    }
    return nullptr;
}

void act(AccountWindow &window, Act action)
{
    switch (action) {
    case Act::openPassword: window.openPassword(); break;
    case Act::save: window.passwordPage()->saveButton()->click(); break;
    case Act::openEmail: window.openEmail(); break;
    case Act::send: window.emailPage()->sendButton()->click(); break;
    case Act::confirm: window.emailPage()->confirmButton()->click(); break;
    }
}

QByteArray word(const char *text)
{
    return R"({"error": {"message": ")" + QByteArray(text) + R"("}})";
}

} // namespace

class AccountWindowTest : public RelayFixture
{
protected:
    void SetUp() override
    {
        RelayFixture::SetUp();
        signIn(u"mei@example.com"_s);
    }

    // Shown, with the service's answer about the password taken in.
    void open(AccountWindow &window)
    {
        const qsizetype before = requests().size();
        window.show();
        ASSERT_TRUE(server->waitForRequests(int(before) + 1));
        runEventsFor(std::chrono::milliseconds(50));
    }
};

TEST_F(AccountWindowTest, PasswordAndEmailPagesCheckFirstThenAsk)
{
    const QString longPassword = u"新密码很长很长很长"_s;
    const Stage stages[] = {
        {Act::openPassword, {}, {}, 0, {}, Tone::error, false},
        {Act::save, {{Input::fresh, u"12345678"_s}, {Input::again, u"12345678"_s}}, {}, 0, u"请先输入当前密码。"_s, Tone::error, false},
        {Act::save, {{Input::old, u"old pass"_s}, {Input::fresh, u"short"_s}}, {}, 0, u"新密码至少 8 位。"_s, Tone::error, false},
        {Act::save, {{Input::fresh, u"new pass 1"_s}, {Input::again, u"new pass 2"_s}}, {}, 0, u"两次输入的新密码不一样。"_s, Tone::error, false},
        {Act::save, {{Input::old, u"new pass 1"_s}, {Input::again, u"new pass 1"_s}}, {}, 0, u"新密码和当前密码一样。"_s, Tone::error, false},
        {Act::save, {{Input::old, u"old pass"_s}, {Input::fresh, longPassword}, {Input::again, longPassword}},
         {{403, word("wrong current password")}}, 1, u"当前密码不对。"_s, Tone::error, false},
        {Act::save, {}, {}, 1, u"密码已修改。"_s, Tone::secondary, true},
        {Act::openEmail, {}, {}, 0, {}, Tone::error, false},
        {Act::send, {{Input::newEmail, u"new@example.com"_s}}, {}, 0, u"请先输入当前密码。"_s, Tone::error, false},
        {Act::send, {{Input::emailPassword, u"pw"_s}, {Input::newEmail, u"nope"_s}}, {}, 0, u"请输入新邮箱。"_s, Tone::error, false},
        {Act::send, {{Input::newEmail, u" MEI@example.com "_s}}, {}, 0, u"这就是现在的邮箱。"_s, Tone::error, false},
        {Act::send, {{Input::newEmail, u" New@Example.COM "_s}}, {{409, word("email already in use")}}, 1,
         u"这个邮箱已经注册过了。"_s, Tone::error, false},
        {Act::send, {}, {}, 1, u"验证码已发到 new@example.com，10 分钟内有效。"_s, Tone::secondary, false},
        {Act::confirm, {}, {}, 0, u"请输入验证码。"_s, Tone::error, false},
        {Act::confirm, {{Input::code, u" 123456 "_s}}, {{400, word("wrong code")}}, 1, u"验证码不对，请再看一下邮件。"_s,
         Tone::error, false},
        {Act::confirm, {}, {}, 1, u"邮箱已换成 new@example.com。录音和笔记都还在。"_s, Tone::secondary, true},
    };
    AccountWindow window;
    int changed = 0;
    window.onChanged = [&] { ++changed; };
    open(window);
    for (const Stage &stage : stages) {
        SCOPED_TRACE(stage.message.toStdString());
        for (const auto &[status, body] : stage.replies)
            queue(status, body);
        for (const auto &[which, text] : stage.typed)
            input(window, which)->setText(text);
        const qsizetype expected = requests().size() + stage.requests;
        act(window, stage.act);
        // Confirming shows no progress text, so wait for the answer itself to be taken in.
        ASSERT_TRUE(runEventsUntil([&] {
            return requests().size() == expected && Http::taskPool().activeThreadCount() == 0;
        }));
        runEventsFor(std::chrono::milliseconds(30));
        EXPECT_EQ(window.message(), stage.message);
        EXPECT_EQ(window.messageTone(), stage.tone);
        EXPECT_EQ(window.currentPage() == window.home(), stage.home);
    }
    const QStringList sent = paths();
    ASSERT_EQ(sent.size(), 7);
    EXPECT_EQ(body(2), (QJsonObject{{u"password"_s, longPassword}, {u"current"_s, u"old pass"_s}}));
    EXPECT_EQ(sent[4], u"/auth/email/start"_s);
    EXPECT_EQ(body(4), (QJsonObject{{u"email"_s, u"new@example.com"_s}, {u"current"_s, u"pw"_s}}));
    EXPECT_EQ(body(6), (QJsonObject{{u"email"_s, u"new@example.com"_s}, {u"code"_s, u"123456"_s}}));
    EXPECT_EQ(Account::email(), u"new@example.com"_s);
    EXPECT_EQ(window.home()->email(), u"new@example.com"_s);
    EXPECT_EQ(changed, 1);
    EXPECT_TRUE(window.emailPage()->code()->text().isEmpty()) << "going home wipes every field";
    EXPECT_FALSE(window.emailPage()->pendingEmail());
}

TEST_F(AccountWindowTest, AnAccountWithoutPasswordGetsOneAndTheFieldComesBack)
{
    queue(200, R"({"hasPassword": false, "avatar": 9, "email": "mei@example.com"})");
    AccountWindow window;
    open(window);
    EXPECT_FALSE(window.hasPassword());
    EXPECT_EQ(window.home()->avatar()->cat(), 9) << "the cat follows the account";
    window.openPassword();
    EXPECT_TRUE(window.passwordPage()->oldPassword()->isHidden());
    EXPECT_EQ(window.focusWidget(), window.passwordPage()->newPassword());
    window.openEmail();
    EXPECT_TRUE(window.emailPage()->emailPassword()->isHidden());

    window.openPassword();
    window.passwordPage()->newPassword()->setText(u"first password"_s);
    window.passwordPage()->againPassword()->setText(u"first password"_s);
    window.passwordPage()->save();
    ASSERT_TRUE(runEventsUntil([&] { return window.currentPage() == window.home(); }));
    EXPECT_EQ(body(1), (QJsonObject{{u"password"_s, u"first password"_s}, {u"current"_s, u""_s}}));
    EXPECT_TRUE(window.hasPassword());
    window.openPassword();
    EXPECT_FALSE(window.passwordPage()->oldPassword()->isHidden());
}

TEST_F(AccountWindowTest, HomeChoosesACatKeepsItsTopEdgeAndSignsOut)
{
    AccountWindow window;
    int changed = 0, signedOut = 0;
    window.onChanged = [&] { ++changed; };
    window.onSignOut = [&] { ++signedOut; };
    open(window);
    EXPECT_EQ(window.home()->avatar()->letter(), u"M"_s);
    EXPECT_EQ(window.home()->avatar()->cat(), PixelCat::index(u"mei@example.com"_s));

    const int top = window.geometry().top();
    const int homeHeight = window.height();
    window.openPlans();
    EXPECT_LT(window.height(), homeHeight);
    EXPECT_EQ(window.geometry().top(), top);
    window.goHome();
    EXPECT_EQ(window.height(), homeHeight);

    window.pickCat();
    ASSERT_TRUE(window.catPicker());
    EXPECT_TRUE(window.catPicker()->isVisible());
    EXPECT_EQ(window.catPicker()->cats()->chosen(), PixelCat::index(u"mei@example.com"_s));
    window.catPicker()->cats()->buttons()[17]->click();
    EXPECT_FALSE(window.catPicker()->isVisible());
    EXPECT_EQ(window.home()->avatar()->cat(), 17);
    EXPECT_EQ(changed, 1);
    ASSERT_TRUE(server->waitForRequests(2));
    EXPECT_EQ(body(1), (QJsonObject{{u"avatar"_s, u"17"_s}}));

    const auto rows = window.home()->rows();
    const auto signOut = std::find_if(rows.cbegin(), rows.cend(), [](MenuRow *row) { return row->title() == u"退出登录"; });
    ASSERT_NE(signOut, rows.cend());
    (*signOut)->activate();
    EXPECT_TRUE(window.isHidden());
    EXPECT_EQ(signedOut, 1);
}
