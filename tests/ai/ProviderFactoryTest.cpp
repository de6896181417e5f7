#include "ai/AIError.h"
#include "ai/ProviderFactory.h"
#include "platform/Keychain.h"

#include "VendorTest.h"

#include <QSettings>

// Whole bodies are checked with the requests of each client.
TEST_F(VendorTest, FactoriesPickTheRelayOrTheOwnKeyAndTheFastModel)
{
    using Factory = decltype(&makeProvider);
    // On the relay the model setting is ignored, and without a built-in choice it is Claude.
    const Config claude{.builtinAI = QStringLiteral("claude")}, openAI{.builtinAI = QStringLiteral("openai")};
    const Config none{.builtinAI = std::nullopt};
    const QString own = QStringLiteral("own");
    const Config ownOpenAI{.provider = QStringLiteral("openai"), .model = QStringLiteral("gpt-5"), .keySource = own};
    const Config ownGemini{.provider = QStringLiteral("gemini"), .model = QStringLiteral("gem"), .keySource = own};
    // An unknown provider falls to Claude.
    const Config stale{.provider = QStringLiteral("mistral"), .model = QStringLiteral("claude-opus-5-5"),
                       .effort = QStringLiteral("high"), .keySource = own};
    // What one question sends: the path, the model, the effort, and every key or session header.
    const auto sent = [this](Factory make, const Config &config) {
        try {
            ask(*make(config));
        } catch (const AIError &error) {
            return QString(QStringLiteral("no key for ") + error.displayName());
        }
        const TestServer::Request request = server.requests().last();
        const QJsonObject body = object(request.body);
        QStringList parts{QString::fromLatin1(request.path), body.value(u"model").toString(),
                          body.value(u"output_config")[u"effort"].toString(),
                          body.value(u"reasoning")[u"effort"].toString()};
        for (const char *header : {"x-api-key", "authorization", "x-goog-api-key", "x-quillet-session"})
            parts << QString::fromLatin1(request.header(header));
        parts.removeAll(QString());
        return parts.join(u' ');
    };
    EXPECT_EQ(sent(makeProvider, ownOpenAI), QStringLiteral("no key for ChatGPT"));
    EXPECT_EQ(sent(makeFastProvider, ownGemini), QStringLiteral("no key for Gemini"));
    EXPECT_EQ(sent(makeProvider, stale), QStringLiteral("no key for Claude"));

    ASSERT_TRUE(Keychain::set(QStringLiteral("quillet-session"), QStringLiteral("tok")));
    ASSERT_TRUE(Keychain::set(QStringLiteral("openai"), QStringLiteral("sk-o")));
    ASSERT_TRUE(Keychain::set(QStringLiteral("gemini"), QStringLiteral("AIza")));
    ASSERT_TRUE(Keychain::set(QStringLiteral("claude"), QStringLiteral("sk-a")));
    const std::tuple<Factory, Config, const char *> rows[] = {
        {makeProvider, claude, "/relay/anthropic/v1/messages claude-sonnet-5-5 low tok"},
        {makeFastProvider, claude, "/relay/anthropic/v1/messages claude-haiku-4-5 tok"},
        {makeProvider, openAI, "/relay/openai/v1/responses gpt-5 tok"},
        {makeFastProvider, openAI, "/relay/openai/v1/responses gpt-5-mini minimal tok"},
        {makeProvider, none, "/relay/anthropic/v1/messages claude-sonnet-5-5 low tok"},
        {makeProvider, ownOpenAI, "/v1/responses gpt-5 Bearer sk-o"},
        {makeFastProvider, ownOpenAI, "/v1/responses gpt-5-mini minimal Bearer sk-o"},
        {makeProvider, ownGemini, "/v1beta/models/gem:generateContent AIza"},
        {makeFastProvider, ownGemini, "/v1beta/models/gemini-2.5-flash:generateContent AIza"},
        {makeProvider, stale, "/v1/messages claude-opus-5-5 high sk-a"},
        {makeFastProvider, stale, "/v1/messages claude-haiku-4-5 sk-a"},
    };
    for (const auto &[make, config, expected] : rows)
        EXPECT_EQ(sent(make, config), QString::fromLatin1(expected));

    Keychain::remove(QStringLiteral("quillet-session"));
    EXPECT_EQ(sent(makeProvider, none), QStringLiteral("/relay/anthropic/v1/messages claude-sonnet-5-5 low"));
    // Without a relay the built-in choice runs on the user's own key.
    QSettings().remove(QStringLiteral("relay.url"));
    EXPECT_EQ(sent(makeProvider, Config()), QStringLiteral("/v1/messages claude-opus-5-5 low sk-a"));
    Keychain::remove(QStringLiteral("claude"));
    EXPECT_EQ(sent(makeFastProvider, Config()), QStringLiteral("no key for Claude"));
}
