#include "RelayFixture.h"

#include "account/Relay.h"
#include "platform/FileSecretStore.h"
#include "platform/Keychain.h"
#include "report/Inbox.h"
#include "settings/UserDefaults.h"
#include "text/Json.h"

#include <QFile>
#include <QSettings>

using namespace Qt::StringLiterals;

namespace {

QString key(const char *name)
{
    return QString::fromLatin1(name);
}

TestServer::Response yes(const TestServer::Request &request)
{
    if (request.path == "/auth/verify" || request.path == "/auth/login")
        return TestServer::Response::json(R"({"token": "T1", "hasPassword": false})");
    if (request.path == "/auth/me")
        return TestServer::Response::json(R"({"hasPassword": true})");
    return TestServer::Response::json("{}");
}

} // namespace

void RelayFixture::SetUp()
{
    QFile::remove(folder.filePath(u"secrets.json"_s));
    Keychain::useStore(std::make_unique<FileSecretStore>(folder.filePath(u"secrets.json"_s)));
    QSettings settings;
    settings.setValue(key(UserDefaults::relayURL), server->url());
    settings.remove(key(UserDefaults::accountEmail));
    QFile::remove(Inbox::path());
    server->setHandler(yes);
}

void RelayFixture::TearDown()
{
    Keychain::useStore(nullptr);
    QSettings().remove(key(UserDefaults::relayURL));
    QFile::remove(Inbox::path());
}

void RelayFixture::freshStart()
{
    server = std::make_unique<TestServer>();
    SetUp();
}

void RelayFixture::signIn(const QString &email)
{
    Keychain::set(key(Relay::sessionAccount), u"T1"_s);
    QSettings().setValue(key(UserDefaults::accountEmail), email);
}

void RelayFixture::queue(int status, const QByteArray &body)
{
    server->enqueue(TestServer::Response::json(body, status));
}

QJsonObject RelayFixture::body(qsizetype index) const
{
    return Text::Json::parseObject(server->requests().value(index).body).value_or(QJsonObject());
}

QStringList RelayFixture::paths() const
{
    QStringList all;
    for (const TestServer::Request &request : server->requests())
        all.append(QString::fromLatin1(request.path));
    return all;
}
