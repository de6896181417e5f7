#include "VendorTest.h"

#include "platform/FileSecretStore.h"
#include "platform/Keychain.h"
#include "text/Json.h"

#include <QSettings>

void VendorTest::SetUp()
{
    Keychain::useStore(std::make_unique<FileSecretStore>(folder.filePath(QStringLiteral("secrets.json"))));
    QSettings settings;
    for (const char *key : {"ai.claude.url", "ai.openai.url", "ai.gemini.url"})
        settings.setValue(QString::fromLatin1(key), server.url());
    settings.setValue(QStringLiteral("relay.url"), QString(server.url() + QStringLiteral("/relay")));
}

void VendorTest::TearDown()
{
    QSettings settings;
    for (const char *key : {"ai.claude.url", "ai.openai.url", "ai.gemini.url", "relay.url"})
        settings.remove(QString::fromLatin1(key));
}

TestServer::Request VendorTest::onlyRequest() const
{
    const QList<TestServer::Request> requests = server.requests();
    EXPECT_EQ(requests.size(), 1);
    return requests.value(0);
}

QJsonObject VendorTest::onlyBody() const
{
    const auto body = Text::Json::parseObject(onlyRequest().body);
    EXPECT_TRUE(body) << onlyRequest().body.constData();
    return body.value_or(QJsonObject());
}

void VendorTest::answer(const QByteArray &json, int status)
{
    server.enqueue(TestServer::Response::json(json, status));
}

QJsonObject VendorTest::object(const char *json)
{
    const auto parsed = Text::Json::parseObject(QByteArray(json));
    EXPECT_TRUE(parsed) << json;
    return parsed.value_or(QJsonObject());
}

Turn VendorTest::user(const QString &content, const QList<Attachment> &attachments)
{
    return {QStringLiteral("user"), content, attachments};
}

Turn VendorTest::assistant(const QString &content, const QList<Attachment> &attachments)
{
    return {QStringLiteral("assistant"), content, attachments};
}

Attachment VendorTest::file(const QString &name, const QString &mediaType, const QByteArray &data)
{
    return {name, mediaType, data};
}
