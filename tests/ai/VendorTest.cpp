#include "VendorTest.h"

#include "ai/ClaudeProvider.h"
#include "ai/GeminiProvider.h"
#include "ai/OpenAIProvider.h"
#include "platform/FileSecretStore.h"
#include "platform/Keychain.h"
#include "text/Json.h"

#include <QSettings>

using namespace Qt::StringLiterals;

void VendorTest::SetUp()
{
    Keychain::useStore(std::make_unique<FileSecretStore>(folder.filePath(u"secrets.json"_s)));
    QSettings settings;
    for (const char *key : {"ai.claude.url", "ai.openai.url", "ai.gemini.url"})
        settings.setValue(QString::fromLatin1(key), server.url());
    settings.setValue(u"relay.url"_s, QString(server.url() + u"/relay"_s));
}

std::optional<QString> VendorTest::ask(const AIProvider &provider)
{
    return provider.chat(u"S"_s, {user(u"Q"_s)});
}

QJsonObject VendorTest::object(const QByteArray &json)
{
    const auto parsed = Text::Json::parseObject(json);
    EXPECT_TRUE(parsed) << json.left(200).constData();
    return parsed.value_or(QJsonObject());
}

Turn VendorTest::user(const QString &content, const QList<Attachment> &attachments)
{
    return {u"user"_s, content, attachments};
}

std::vector<std::unique_ptr<AIProvider>> VendorTest::vendors(std::chrono::milliseconds timeout)
{
    std::vector<std::unique_ptr<AIProvider>> all;
    all.push_back(std::make_unique<ClaudeProvider>(ClaudeProvider::Settings{.timeout = timeout}));
    all.push_back(std::make_unique<OpenAIProvider>(OpenAIProvider::Settings{.timeout = timeout}));
    all.push_back(std::make_unique<GeminiProvider>(GeminiProvider::Settings{.timeout = timeout}));
    return all;
}
