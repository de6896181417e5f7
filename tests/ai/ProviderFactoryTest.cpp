#include "ai/AIError.h"
#include "ai/ProviderFactory.h"
#include "ai/ProviderInfo.h"
#include "platform/Keychain.h"

#include "VendorTest.h"

#include <QJsonDocument>
#include <QSettings>

namespace {

class ProviderFactoryTest : public VendorTest
{
protected:
    // Sends one chat through the client and returns what the server received.
    TestServer::Request sent(const std::shared_ptr<const AIProvider> &provider)
    {
        const qsizetype before = server.requests().size();
        provider->chat(QStringLiteral("S"), {user(QStringLiteral("Q"))});
        EXPECT_EQ(server.requests().size(), before + 1);
        return server.requests().last();
    }

    static QJsonObject body(const TestServer::Request &request)
    {
        return QJsonDocument::fromJson(request.body).object();
    }

    static Config ownKey(const QString &provider, const QString &model)
    {
        Config config;
        config.keySource = QStringLiteral("own");
        config.provider = provider;
        config.model = model;
        config.effort = QStringLiteral("high");
        return config;
    }

    static QString missingKeyName(const std::function<void()> &make)
    {
        try {
            make();
        } catch (const AIError &error) {
            EXPECT_EQ(error.kind(), AIError::Kind::MissingKey);
            return error.displayName();
        }
        return QStringLiteral("(no error)");
    }
};

} // namespace

TEST(ProviderInfo, UnknownIdsFallToClaude)
{
    EXPECT_EQ(ProviderInfo::find(QStringLiteral("gemini")).displayName, QStringLiteral("Gemini"));
    EXPECT_EQ(ProviderInfo::find(QStringLiteral("mistral")).id, QStringLiteral("claude"));
    EXPECT_EQ(ProviderInfo::find(QString()).id, QStringLiteral("claude"));
}

TEST_F(ProviderFactoryTest, BuiltInAIRunsOnTheRelayWithoutAnyKey)
{
    Config config;  // keySource "quillet", and the fixture sets a relay address
    ASSERT_TRUE(config.usesQuilletAI());
    config.model = QStringLiteral("gpt-5");  // ignored on the relay

    const TestServer::Request main = sent(makeProvider(config));
    EXPECT_EQ(main.path, "/relay/anthropic/v1/messages");
    EXPECT_EQ(body(main).value(u"model").toString(), QStringLiteral("claude-sonnet-5-5"));
    EXPECT_EQ(body(main).value(u"output_config").toObject().value(u"effort").toString(), QStringLiteral("low"));
    EXPECT_FALSE(main.headers.contains("x-api-key"));

    const TestServer::Request fast = sent(makeFastProvider(config));
    EXPECT_EQ(body(fast).value(u"model").toString(), QStringLiteral("claude-haiku-4-5"));
    EXPECT_FALSE(body(fast).contains(u"output_config"));

    config.builtinAI = QStringLiteral("openai");
    const TestServer::Request openAI = sent(makeProvider(config));
    EXPECT_EQ(openAI.path, "/relay/openai/v1/responses");
    EXPECT_EQ(body(openAI).value(u"model").toString(), QStringLiteral("gpt-5"));
    EXPECT_FALSE(body(openAI).contains(u"reasoning"));
    const TestServer::Request openAIFast = sent(makeFastProvider(config));
    EXPECT_EQ(body(openAIFast).value(u"model").toString(), QStringLiteral("gpt-5-mini"));
    EXPECT_EQ(body(openAIFast).value(u"reasoning").toObject().value(u"effort").toString(), QStringLiteral("minimal"));

    for (const std::optional<QString> &other : {std::optional(QStringLiteral("gemini")), std::optional<QString>()}) {
        config.builtinAI = other;
        EXPECT_EQ(sent(makeProvider(config)).path, "/relay/anthropic/v1/messages");
    }
}

TEST_F(ProviderFactoryTest, OwnKeysRunDirectAndMissingKeysThrow)
{
    EXPECT_EQ(missingKeyName([] { makeProvider(ownKey(QStringLiteral("openai"), QStringLiteral("gpt-5"))); }),
              QStringLiteral("ChatGPT"));
    EXPECT_EQ(missingKeyName([] { makeFastProvider(ownKey(QStringLiteral("gemini"), QStringLiteral("gemini-2.5-pro"))); }),
              QStringLiteral("Gemini"));
    // A stale provider id falls to Claude and its key.
    EXPECT_EQ(missingKeyName([] { makeProvider(ownKey(QStringLiteral("mistral"), QStringLiteral("claude-opus-5-5"))); }),
              QStringLiteral("Claude"));

    ASSERT_TRUE(Keychain::set(QStringLiteral("openai"), QStringLiteral("sk-oa")));
    ASSERT_TRUE(Keychain::set(QStringLiteral("gemini"), QStringLiteral("AIza")));
    ASSERT_TRUE(Keychain::set(QStringLiteral("claude"), QStringLiteral("sk-ant")));

    const Config openAIConfig = ownKey(QStringLiteral("openai"), QStringLiteral("gpt-5"));
    const TestServer::Request openAI = sent(makeProvider(openAIConfig));
    EXPECT_EQ(openAI.path, "/v1/responses");
    EXPECT_EQ(openAI.header("authorization"), "Bearer sk-oa");
    EXPECT_EQ(body(openAI).value(u"model").toString(), QStringLiteral("gpt-5"));
    EXPECT_FALSE(body(openAI).contains(u"reasoning"));
    const TestServer::Request openAIFast = sent(makeFastProvider(openAIConfig));
    EXPECT_EQ(body(openAIFast).value(u"model").toString(), QStringLiteral("gpt-5-mini"));
    EXPECT_EQ(body(openAIFast).value(u"reasoning").toObject().value(u"effort").toString(), QStringLiteral("minimal"));

    const Config geminiConfig = ownKey(QStringLiteral("gemini"), QStringLiteral("gemini-2.5-pro"));
    EXPECT_EQ(sent(makeProvider(geminiConfig)).path, "/v1beta/models/gemini-2.5-pro:generateContent");
    const TestServer::Request geminiFast = sent(makeFastProvider(geminiConfig));
    EXPECT_EQ(geminiFast.path, "/v1beta/models/gemini-2.5-flash:generateContent");
    EXPECT_EQ(geminiFast.header("x-goog-api-key"), "AIza");

    const Config stale = ownKey(QStringLiteral("mistral"), QStringLiteral("claude-opus-5-5"));
    const auto claude = makeProvider(stale);
    EXPECT_EQ(claude->displayName(), QStringLiteral("Claude"));
    const TestServer::Request main = sent(claude);
    EXPECT_EQ(main.header("x-api-key"), "sk-ant");
    EXPECT_EQ(body(main).value(u"model").toString(), QStringLiteral("claude-opus-5-5"));
    EXPECT_EQ(body(main).value(u"output_config").toObject().value(u"effort").toString(), QStringLiteral("high"));
    const TestServer::Request fast = sent(makeFastProvider(stale));
    EXPECT_EQ(body(fast).value(u"model").toString(), QStringLiteral("claude-haiku-4-5"));
    EXPECT_FALSE(fast.headers.contains("anthropic-beta"));
}

TEST_F(ProviderFactoryTest, WithoutARelayTheBuiltInChoiceFallsToOwnKeys)
{
    QSettings().remove(QStringLiteral("relay.url"));
    Config config;
    ASSERT_FALSE(config.usesQuilletAI());
    EXPECT_EQ(missingKeyName([&] { makeProvider(config); }), QStringLiteral("Claude"));
    ASSERT_TRUE(Keychain::set(QStringLiteral("claude"), QStringLiteral("sk-ant")));
    EXPECT_EQ(sent(makeProvider(config)).path, "/v1/messages");
}
