#include "VendorTest.h"

#include "ai/ClaudeProvider.h"
#include "ai/GeminiProvider.h"
#include "ai/OpenAIProvider.h"
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

std::optional<QString> VendorTest::ask(const AIProvider &provider)
{
    return provider.chat(QStringLiteral("S"), {user(QStringLiteral("Q"))});
}

QJsonObject VendorTest::object(const QByteArray &json)
{
    const auto parsed = Text::Json::parseObject(json);
    EXPECT_TRUE(parsed) << json.left(200).constData();
    return parsed.value_or(QJsonObject());
}

Turn VendorTest::user(const QString &content, const QList<Attachment> &attachments)
{
    return {QStringLiteral("user"), content, attachments};
}

std::vector<std::unique_ptr<AIProvider>> VendorTest::vendors(std::chrono::milliseconds timeout)
{
    std::vector<std::unique_ptr<AIProvider>> all;
    all.push_back(std::make_unique<ClaudeProvider>(ClaudeProvider::Settings{
        .key = QStringLiteral("k"), .model = QStringLiteral("claude-opus-5-5"), .timeout = timeout}));
    all.push_back(std::make_unique<OpenAIProvider>(OpenAIProvider::Settings{
        .key = QStringLiteral("k"), .model = QStringLiteral("gpt-5"), .timeout = timeout}));
    all.push_back(std::make_unique<GeminiProvider>(GeminiProvider::Settings{
        .key = QStringLiteral("k"), .model = QStringLiteral("gemini-2.5-pro"), .timeout = timeout}));
    return all;
}
