// Every sign-in step and account page, light and dark, with Chinese text: checks that each is
// drawn, and with QUILLET_SCREENSHOT_DIR set saves them there ("account-<page>-<look>.png").

#include "support/Screenshots.h"
#include "RelayFixture.h"

#include "EventLoop.h"
#include "report/Inbox.h"
#include "ui/account/AccountWindow.h"
#include "ui/account/CatPicker.h"
#include "ui/account/EmailPage.h"
#include "ui/account/LoginWindow.h"
#include "ui/account/MessagePage.h"
#include "ui/common/Look.h"

#include <QCursor>
#include <QDir>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSet>

using namespace Qt::StringLiterals;

namespace {

InboxMessage lecture()
{
    InboxMessage made;
    made.title = u"微观经济学 第三讲：边际成本与供给曲线"_s;
    made.date = QDateTime(QDate(2026, 11, 23), QTime(14, 5), Qt::UTC);
    made.report.notes = u"## 边际成本\n- **边际成本**：多生产一单位产品所增加的成本。\n- 价格高于边际成本时，企业应扩大生产。\n"
                        u"## 供给曲线\n- 供给曲线就是边际成本曲线高于平均可变成本的部分。"_s;
    made.report.events = {{u"期中考试（第三章）"_s, u"2026-11-30"_s, u"09:00"_s, {}}, {u"交作业"_s, u"2026-12-02"_s, {}, {}}};
    made.report.mindmap = MindNode{u"边际成本"_s, QList<MindNode>{{u"定义"_s, QList<MindNode>{{u"多生产一单位"_s, {}}}},
                                                               {u"供给曲线"_s, {}}, {u"企业决策"_s, {}}}};
    return made;
}

} // namespace

class AccountScreenshots : public RelayFixture
{
protected:
    void TearDown() override
    {
        Look::apply(u"light"_s);
        RelayFixture::TearDown();
    }

    void shoot(QWidget *widget, const QString &name, std::chrono::milliseconds settle = std::chrono::milliseconds(60))
    {
        runEventsFor(settle);
        const QImage image = widget->grab().toImage();
        EXPECT_GT(Screenshots::colours(image), 12) << name.toStdString();
        Screenshots::keep(image, u"account-"_s + name + u'-' + Look::theme());
    }

    void press(LoginWindow &window, LoginWindow::Step until)
    {
        window.mainButton()->click();
        ASSERT_TRUE(runEventsUntil([&] { return window.step() == until; }));
    }
};

TEST_F(AccountScreenshots, EverySignInStepAndAccountPage)
{
    QCursor::setPos(0, 0);  // no row lit up by a pointer that happens to rest on it
    for (const QString &look : {u"light"_s, u"dark"_s}) {
        Look::apply(look);
        {
            LoginWindow login;
            login.show();
            login.emailField()->setText(u"mei@example.com"_s);
            shoot(&login, u"login"_s);
            login.startSignUp();
            shoot(&login, u"signup-email"_s);
            press(login, LoginWindow::Step::code);
            login.codeField()->setText(u"12345"_s);
            login.mainButton()->click();
            shoot(&login, u"signup-code"_s);
            login.codeField()->setText(u"123456"_s);
            press(login, LoginWindow::Step::password);
            shoot(&login, u"signup-password"_s);
            login.newPassword()->setText(u"pässwörd"_s);
            login.againPassword()->setText(u"pässwörd"_s);
            press(login, LoginWindow::Step::avatar);
            shoot(&login, u"signup-avatar"_s, std::chrono::milliseconds(500));  // the title has faded in
            press(login, LoginWindow::Step::done);
            shoot(&login, u"signup-done"_s);
            login.showSetPassword();
            shoot(&login, u"set-password"_s);
        }
        Inbox::add(lecture());
        AccountWindow account;
        account.show();
        ASSERT_TRUE(runEventsUntil([&] { return account.hasPassword(); }));
        shoot(&account, u"home"_s);
        account.pickCat();
        shoot(account.catPicker(), u"cats"_s);
        account.catPicker()->close();
        account.openInbox();
        shoot(&account, u"inbox"_s);
        account.openMessage(Inbox::all()[0].id);
        shoot(&account, u"message"_s);
        QScrollBar *bar = account.messagePage()->findChild<QScrollArea *>()->verticalScrollBar();
        bar->setValue(bar->maximum());
        shoot(&account, u"message-mindmap"_s);
        account.openPassword();
        shoot(&account, u"password"_s);
        account.openEmail();
        account.emailPage()->emailPassword()->setText(u"secret"_s);
        account.emailPage()->newEmail()->setText(u"new@example.com"_s);
        account.emailPage()->sendCode();
        ASSERT_TRUE(runEventsUntil([&] { return account.emailPage()->pendingEmail().has_value(); }));
        shoot(&account, u"email"_s);
        account.openPlans();
        shoot(&account, u"plans"_s);
    }
}
