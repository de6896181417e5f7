#include "account/Account.h"

#include "account/PixelCatChoice.h"
#include "platform/PoolTask.h"
#include "account/Relay.h"
#include "platform/Keychain.h"
#include "settings/UserDefaults.h"
#include "text/Json.h"

#include <QSettings>
#include <QSysInfo>
#include <QThreadPool>

#include <array>
#include <atomic>
#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace Account {

namespace {

using Body = QMap<QString, QString>;

struct Reply
{
    int status = 0;  // 0: no answer
    QJsonObject json;
};

constexpr auto supportAddress = u"support@marrowline.com";

std::atomic<bool> hadPassword{false};

QString key(const char *name)
{
    return QString::fromLatin1(name);
}

QString sessionAccount()
{
    return key(Relay::sessionAccount);
}

void storeEmail(const QString &address)
{
    QSettings().setValue(key(UserDefaults::accountEmail), address);
}

Http::Headers sessionHeaders(bool session)
{
    return session ? Relay::headers() : Http::Headers();
}

Reply post(const QString &path, const Body &body, bool session)
{
    QJsonObject object;
    for (auto it = body.cbegin(); it != body.cend(); ++it)
        object.insert(it.key(), it.value());
    const auto reply = Http::postJSON(Relay::url(path), sessionHeaders(session), object, 20s);
    if (!reply)
        return {};
    return {reply->status, reply->json};
}

Reply get(const QString &path, bool session, std::chrono::milliseconds timeout)
{
    const auto response = Http::send({"GET", Relay::url(path), sessionHeaders(session), {}, timeout});
    if (!response)
        return {};
    return {response->status, Text::Json::parseObject(response->body).value_or(QJsonObject())};
}

Outcome outcome(const Reply &reply)
{
    return reply.status == 200 ? Outcome() : Outcome(message(reply.status, reply.json));
}

Outcome finishSignIn(const Reply &reply, const QString &address)
{
    const auto token = Text::Json::string(reply.json, u"token");
    if (reply.status != 200 || !token)
        return message(reply.status, reply.json);
    hadPassword = Text::Json::boolean(reply.json, u"hasPassword").value_or(false);
    Keychain::set(sessionAccount(), *token);
    storeEmail(Text::Json::string(reply.json, u"email").value_or(address));
    return std::nullopt;
}

QFuture<Outcome> run(QObject *context, std::function<Outcome()> work, Done done)
{
    return PoolTask::start<Outcome>(context, std::move(work), std::move(done));
}

struct Rule
{
    const char16_t *word;
    const char16_t *message;
};

// In this order: the first word contained wins, so the longer phrases stand before their parts.
constexpr std::array rules{
    Rule{u"invalid email", u"邮箱格式不对。"},
    Rule{u"wait a minute", u"验证码刚发过，请一分钟后再试。"},
    Rule{u"wrong current password", u"当前密码不对。"},
    Rule{u"too many wrong passwords", u"密码输错太多次，请 15 分钟后再试。"},
    Rule{u"email already in use", u"这个邮箱已经注册过了。"},
    Rule{u"account suspended", nullptr},
    Rule{u"daily AI limit", u"今天的 AI 用量已经到上限，明天会自动恢复。"},
    Rule{u"too many attempts", u"密码错误次数太多，请 15 分钟后再试，或用验证码登录。"},
    Rule{u"too many", u"今天发送次数太多了，明天再试。"},
    Rule{u"expired", u"验证码已过期，请重新获取。"},
    Rule{u"wrong code", u"验证码不对，请再看一下邮件。"},
    Rule{u"could not send", u"邮件发送失败，请稍后再试。"},
    Rule{u"wrong email or password", u"邮箱或密码不对。"},
    Rule{u"no password set", u"这个邮箱还没有设置密码：请用邮箱验证码登录，登录后设置密码。"},
    Rule{u"password too short", u"密码至少 8 位。"},
    Rule{u"already in use", u"这个邮箱已经注册过了。"},
    Rule{u"not signed in", u"登录已过期，请重新登录。"},
};

QString errorWord(const QJsonObject &json)
{
    const auto error = Text::Json::object(json, u"error");
    return error ? Text::Json::string(*error, u"message").value_or(QString()) : QString();
}

} // namespace

std::optional<QString> token()
{
    return Keychain::get(sessionAccount());
}

std::optional<QString> email()
{
    const QVariant stored = QSettings().value(key(UserDefaults::accountEmail));
    return stored.isValid() ? std::optional(stored.toString()) : std::nullopt;
}

bool signedIn()
{
    return token().has_value();
}

bool lastHadPassword()
{
    return hadPassword;
}

QString device()
{
    return u"Linux · " + QSysInfo::prettyProductName();
}

QString message(int status, const QJsonObject &json)
{
    if (status == 0)
        return QStringLiteral("连不上网络，请检查后再试。");
    const QString word = errorWord(json);
    for (const Rule &rule : rules) {
        if (!word.contains(QStringView(rule.word)))
            continue;
        if (!rule.message)
            return u"这个账户已被停用，请联系 " + QStringView(supportAddress) + u"。";
        return QString::fromUtf16(rule.message);
    }
    return u"出了点问题（" + QString::number(status) + u"），请稍后再试。";
}

QFuture<bool> available(QObject *context, std::function<void(bool)> done)
{
    const bool configured = Relay::available();
    return PoolTask::start<bool>(context, [configured] {
        if (!configured)
            return false;
        const Reply reply = get(QStringLiteral("/health"), false, Http::defaultTimeout);
        return Text::Json::boolean(reply.json, u"accounts").value_or(false)
               && Text::Json::boolean(reply.json, u"mail").value_or(false);
    }, std::move(done));
}

QFuture<Outcome> sendCode(const QString &to, QObject *context, Done done)
{
    return run(context, [to] { return outcome(post(QStringLiteral("/auth/start"), {{u"email"_s, to}}, false)); },
               std::move(done));
}

QFuture<Outcome> verify(const QString &email, const QString &code, QObject *context, Done done)
{
    return run(context, [email, code] {
        const Body body{{u"email"_s, email}, {u"code"_s, code}, {u"device"_s, device()}};
        return finishSignIn(post(QStringLiteral("/auth/verify"), body, false), email);
    }, std::move(done));
}

QFuture<Outcome> login(const QString &email, const QString &password, QObject *context, Done done)
{
    return run(context, [email, password] {
        const Body body{{u"email"_s, email}, {u"password"_s, password}, {u"device"_s, device()}};
        return finishSignIn(post(QStringLiteral("/auth/login"), body, false), email);
    }, std::move(done));
}

QFuture<std::optional<bool>> hasPassword(QObject *context, std::function<void(std::optional<bool>)> done)
{
    const bool session = signedIn();
    return PoolTask::start<std::optional<bool>>(context, [session]() -> std::optional<bool> {
        if (!session)
            return std::nullopt;
        const Reply reply = get(QStringLiteral("/auth/me"), true, 15s);
        if (reply.status != 200)
            return std::nullopt;
        const auto avatar = Text::Json::integer(reply.json, u"avatar");
        const auto address = Text::Json::string(reply.json, u"email");
        if (avatar && address)
            PixelCatChoice::choose(int(*avatar), *address);
        return Text::Json::boolean(reply.json, u"hasPassword");
    }, std::move(done));
}

void setAvatar(int index)
{
    if (const auto address = email())
        PixelCatChoice::choose(index, *address);
    Http::taskPool().start([index] { post(QStringLiteral("/auth/profile"), {{u"avatar"_s, QString::number(index)}}, true); });
}

QFuture<Outcome> setPassword(const QString &password, const QString &current, QObject *context, Done done)
{
    return run(context, [password, current] {
        return outcome(post(QStringLiteral("/auth/password"), {{u"password"_s, password}, {u"current"_s, current}},
                            true));
    }, std::move(done));
}

QFuture<Outcome> changeEmail(const QString &to, const QString &password, QObject *context, Done done)
{
    return run(context, [to, password] {
        return outcome(post(QStringLiteral("/auth/email/start"), {{u"email"_s, to}, {u"current"_s, password}}, true));
    }, std::move(done));
}

QFuture<Outcome> confirmEmail(const QString &email, const QString &code, QObject *context, Done done)
{
    return run(context, [email, code]() -> Outcome {
        const Reply reply = post(QStringLiteral("/auth/email/verify"), {{u"email"_s, email}, {u"code"_s, code}}, true);
        if (reply.status != 200)
            return message(reply.status, reply.json);
        storeEmail(Text::Json::string(reply.json, u"email").value_or(email));
        return std::nullopt;
    }, std::move(done));
}

void signOut()
{
    const Http::Headers headers = Relay::headers();
    if (!headers.isEmpty()) {
        const Http::Request request{"POST", Relay::url(QStringLiteral("/auth/signout")), headers, {}, 60s};
        Http::taskPool().start([request] { Http::send(request); });
    }
    Keychain::remove(sessionAccount());
    QSettings().remove(key(UserDefaults::accountEmail));
}

} // namespace Account
