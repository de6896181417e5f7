#include "EventLoop.h"
#include "QtPrinters.h"
#include "TestServer.h"
#include "account/Account.h"
#include "account/PixelCatChoice.h"
#include "account/Relay.h"
#include "platform/FileSecretStore.h"
#include "platform/Keychain.h"
#include "settings/UserDefaults.h"
#include "text/Json.h"

#include <QSettings>
#include <QSysInfo>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(AccountMessage, TheServiceWordDecidesInTheTablesOrder)
{
    const auto word = [](const char *text) {
        return QJsonObject{{u"error"_s, QJsonObject{{u"message"_s, QString::fromUtf8(text)}}}};
    };
    const struct
    {
        int status;
        QJsonObject json;
        QString expected;
    } cases[] = {
        {0, word("invalid email"), u"连不上网络，请检查后再试。"_s},
        {400, word("invalid email address"), u"邮箱格式不对。"_s},
        {429, word("please wait a minute"), u"验证码刚发过，请一分钟后再试。"_s},
        {403, word("wrong current password"), u"当前密码不对。"_s},
        {429, word("too many wrong passwords"), u"密码输错太多次，请 15 分钟后再试。"_s},
        {409, word("email already in use"), u"这个邮箱已经注册过了。"_s},
        {403, word("account suspended"), u"这个账户已被停用，请联系 support@marrowline.com。"_s},
        {429, word("daily AI limit reached"), u"今天的 AI 用量已经到上限，明天会自动恢复。"_s},
        {429, word("too many attempts"), u"密码错误次数太多，请 15 分钟后再试，或用验证码登录。"_s},
        {429, word("too many codes today"), u"今天发送次数太多了，明天再试。"_s},
        {400, word("code expired"), u"验证码已过期，请重新获取。"_s},
        {400, word("wrong code"), u"验证码不对，请再看一下邮件。"_s},
        {502, word("could not send mail"), u"邮件发送失败，请稍后再试。"_s},
        {401, word("wrong email or password"), u"邮箱或密码不对。"_s},
        {400, word("no password set"), u"这个邮箱还没有设置密码：请用邮箱验证码登录，登录后设置密码。"_s},
        {400, word("password too short"), u"密码至少 8 位。"_s},
        {409, word("name already in use"), u"这个邮箱已经注册过了。"_s},
        {200, word("not signed in"), u"登录已过期，请重新登录。"_s},
        {401, word("Not Signed In"), u"出了点问题（401），请稍后再试。"_s},
        {500, word("something else"), u"出了点问题（500），请稍后再试。"_s},
        {500, {}, u"出了点问题（500），请稍后再试。"_s},
        {400, QJsonObject{{u"error"_s, u"wrong code"_s}}, u"出了点问题（400），请稍后再试。"_s},
    };
    for (const auto &[status, json, expected] : cases)
        EXPECT_EQ(Account::message(status, json), expected) << status << ' ' << json.value(u"error").toObject().value(u"message").toString();
}

namespace {

class AccountTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        Keychain::useStore(std::make_unique<FileSecretStore>(folder.filePath(u"secrets.json"_s)));
        QSettings().setValue(QString::fromLatin1(UserDefaults::relayURL), server.url());
        QSettings().remove(QString::fromLatin1(UserDefaults::accountEmail));
    }
    void TearDown() override
    {
        Keychain::useStore(nullptr);
        QSettings().remove(QString::fromLatin1(UserDefaults::relayURL));
    }

    template<typename T, typename Start>
    T await(Start start)
    {
        std::optional<T> result;
        bool onMain = false;
        start(&context, [&](const T &value) {
            onMain = QThread::currentThread() == context.thread();
            result = value;
        });
        EXPECT_TRUE(runEventsUntil([&] { return result.has_value(); }));
        EXPECT_TRUE(onMain);
        return result.value_or(T());
    }

    Account::Outcome sendCode(const QString &to)
    {
        return await<Account::Outcome>([&](QObject *c, Account::Done done) { Account::sendCode(to, c, done); });
    }

    QJsonObject body(int index) const { return *Text::Json::parseObject(server.requests()[index].body); }
    QByteArray session(int index) const { return server.requests()[index].header("x-quillet-session"); }

    QTemporaryDir folder;
    TestServer server;
    QObject context;
};

} // namespace

TEST_F(AccountTest, RelayAnswersBecomeSentences)
{
    TestServer::Response notHttp;
    notHttp.raw = true;
    notHttp.body = "<html>maintenance</html>";
    server.enqueue(TestServer::Response::json("{}"));
    server.enqueue(TestServer::Response::json(R"({"error": {"message": "wait a minute"}})", 429));
    server.enqueue(TestServer::Response::json("<html>Internal error</html>", 500));
    server.enqueue(notHttp);
    TestServer::Response reset;
    reset.raw = true;  // the connection closes without a byte
    server.enqueue(reset);
    EXPECT_EQ(sendCode(u"a@b.c"_s), std::nullopt);
    EXPECT_EQ(sendCode(u"a@b.c"_s), u"验证码刚发过，请一分钟后再试。"_s);
    EXPECT_EQ(sendCode(u"a@b.c"_s), u"出了点问题（500），请稍后再试。"_s);
    EXPECT_EQ(sendCode(u"a@b.c"_s), u"连不上网络，请检查后再试。"_s);
    EXPECT_EQ(sendCode(u"a@b.c"_s), u"连不上网络，请检查后再试。"_s);
    EXPECT_EQ(server.requests()[0].path, "/auth/start");
    EXPECT_EQ(body(0), (QJsonObject{{u"email"_s, u"a@b.c"_s}}));
    EXPECT_TRUE(session(0).isEmpty());

    QSettings().setValue(QString::fromLatin1(UserDefaults::relayURL), u"http://127.0.0.1:1"_s);
    EXPECT_EQ(sendCode(u"a@b.c"_s), u"连不上网络，请检查后再试。"_s);
    EXPECT_FALSE(Account::signedIn());
}

TEST_F(AccountTest, SignsInByCodeOrPasswordAndOutAgain)
{
    server.enqueue(TestServer::Response::json(R"({"error": {"message": "wrong email or password"}})", 401));
    server.enqueue(TestServer::Response::json(R"({"hasPassword": true})"));
    server.enqueue(TestServer::Response::json(R"({"token": "T1", "hasPassword": true, "email": "mei@example.com"})"));
    const auto login = [&](const QString &password) {
        return await<Account::Outcome>(
            [&](QObject *c, Account::Done done) { Account::login(u"Mei@Example.com"_s, password, c, done); });
    };
    EXPECT_EQ(login(u"bad"_s), u"邮箱或密码不对。"_s);
    EXPECT_EQ(login(u"good"_s), u"出了点问题（200），请稍后再试。"_s) << "a 200 without a token";
    EXPECT_FALSE(Account::signedIn());
    EXPECT_EQ(login(u"good"_s), std::nullopt);
    EXPECT_EQ(Account::token(), u"T1"_s);
    EXPECT_EQ(Account::email(), u"mei@example.com"_s);
    EXPECT_TRUE(Account::lastHadPassword());
    EXPECT_EQ(server.requests()[2].path, "/auth/login");
    EXPECT_EQ(body(2), (QJsonObject{{u"email"_s, u"Mei@Example.com"_s}, {u"password"_s, u"good"_s},
                                    {u"device"_s, QString(u"Linux · " + QSysInfo::prettyProductName())}}));

    server.enqueue(TestServer::Response::json(R"({"hasPassword": false, "avatar": 11, "email": "mei@example.com"})"));
    const auto hasPassword = [&] {
        return await<std::optional<bool>>([](QObject *c, auto done) { Account::hasPassword(c, done); });
    };
    EXPECT_EQ(hasPassword(), false);
    EXPECT_EQ(server.requests()[3].method, "GET");
    EXPECT_EQ(server.requests()[3].path, "/auth/me");
    EXPECT_EQ(session(3), "T1");
    EXPECT_EQ(PixelCatChoice::index(u"MEI@example.com"_s), 11) << "the avatar follows the account";

    server.enqueue(TestServer::Response::json("{}"));
    EXPECT_EQ(await<Account::Outcome>([](QObject *c, Account::Done done) {
                  Account::confirmEmail(u"new@example.com"_s, u"123456"_s, c, done);
              }),
              std::nullopt);
    EXPECT_EQ(Account::email(), u"new@example.com"_s) << "the typed address when the answer has none";
    EXPECT_EQ(session(4), "T1");

    server.enqueue(TestServer::Response::json("{}"));
    Account::signOut();
    EXPECT_FALSE(Account::signedIn());
    EXPECT_FALSE(Account::email());
    ASSERT_TRUE(server.waitForRequests(6));
    EXPECT_EQ(server.requests()[5].path, "/auth/signout");
    EXPECT_EQ(session(5), "T1");
    EXPECT_EQ(hasPassword(), std::nullopt);
    EXPECT_EQ(server.requests().size(), 6) << "no request without a session";

    server.enqueue(TestServer::Response::json(R"({"token": "T2"})"));
    EXPECT_EQ(await<Account::Outcome>([](QObject *c, Account::Done done) {
                  Account::verify(u"li@example.com"_s, u"654321"_s, c, done);
              }),
              std::nullopt);
    EXPECT_EQ(Account::email(), u"li@example.com"_s);
    EXPECT_FALSE(Account::lastHadPassword());
    EXPECT_EQ(body(6).value(u"code").toString(), u"654321"_s);
}

TEST_F(AccountTest, AvatarChangesHereEvenOfflineAndAvailabilityAsksHealth)
{
    QSettings().setValue(QString::fromLatin1(UserDefaults::accountEmail), u"li@example.com"_s);
    QSettings().setValue(QString::fromLatin1(UserDefaults::relayURL), u"http://127.0.0.1:1"_s);
    Account::setAvatar(17);
    EXPECT_EQ(PixelCatChoice::index(u"li@example.com"_s), 17);

    const auto available = [&] { return await<bool>([](QObject *c, auto done) { Account::available(c, done); }); };
    EXPECT_FALSE(available()) << "no answer";
    QSettings().setValue(QString::fromLatin1(UserDefaults::relayURL), server.url());
    server.enqueue(TestServer::Response::json(R"({"accounts": true, "mail": true})"));
    server.enqueue(TestServer::Response::json(R"({"accounts": true, "mail": "yes"})"));
    EXPECT_TRUE(available());
    EXPECT_FALSE(available());
    EXPECT_EQ(server.requests()[0].path, "/health");
    QSettings().remove(QString::fromLatin1(UserDefaults::relayURL));
    EXPECT_FALSE(available());
    EXPECT_EQ(server.requests().size(), 2);
}
