#pragma once

// A fixture for chat client tests: one local server standing in for all three vendors and the
// relay (the base-address user defaults point at it, the relay under "/relay"), and a keychain in
// a temporary file.

#include "ai/ClaudeProvider.h"
#include "ai/GeminiProvider.h"
#include "ai/OpenAIProvider.h"
#include "platform/FileSecretStore.h"
#include "platform/Keychain.h"
#include "text/Json.h"

#include "QtPrinters.h"
#include "TestServer.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <vector>

inline void PrintTo(const QJsonObject &json, std::ostream *out)
{
    *out << QJsonDocument(json).toJson(QJsonDocument::Compact).constData();
}

class VendorTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        Keychain::useStore(std::make_unique<FileSecretStore>(folder.filePath(QStringLiteral("secrets.json"))));
        QSettings settings;
        for (const char *key : {"ai.claude.url", "ai.openai.url", "ai.gemini.url"})
            settings.setValue(QString::fromLatin1(key), server.url());
        settings.setValue(QStringLiteral("relay.url"), QString(server.url() + QStringLiteral("/relay")));
    }

    static std::optional<QString> ask(const AIProvider &provider)
    {
        return provider.chat(QStringLiteral("S"), {user(QStringLiteral("Q"))});
    }
    static QJsonObject object(const QByteArray &json)
    {
        const auto parsed = Text::Json::parseObject(json);
        EXPECT_TRUE(parsed) << json.left(200).constData();
        return parsed.value_or(QJsonObject());
    }
    static Turn user(const QString &content, const QList<Attachment> &attachments = {})
    {
        return {QStringLiteral("user"), content, attachments};
    }
    // Claude, ChatGPT and Gemini, direct; no key or model is needed by the local server.
    using Vendors = std::vector<std::unique_ptr<AIProvider>>;
    static Vendors vendors(std::chrono::milliseconds timeout = std::chrono::seconds(30))
    {
        Vendors all;
        all.push_back(std::make_unique<ClaudeProvider>(ClaudeProvider::Settings{.timeout = timeout}));
        all.push_back(std::make_unique<OpenAIProvider>(OpenAIProvider::Settings{.timeout = timeout}));
        all.push_back(std::make_unique<GeminiProvider>(GeminiProvider::Settings{.timeout = timeout}));
        return all;
    }

    TestServer server;
    QTemporaryDir folder;
};
