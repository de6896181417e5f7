#include "ai/AIError.h"
#include "ai/ProviderFactory.h"

#include "VendorTest.h"

using namespace Qt::StringLiterals;

// Whole bodies are checked with the requests of each client.
TEST_F(VendorTest, FactoriesPickTheRelayOrTheOwnKeyAndTheFastModel)
{
    using Factory = decltype(&makeProvider);
    // On the relay the model setting is ignored, and without a built-in choice it is Claude.
    const Config claude{.builtinAI = u"claude"_s}, openAI{.builtinAI = u"openai"_s};
    const Config none{.builtinAI = std::nullopt};
    const QString own = u"own"_s;
    const Config ownOpenAI{.provider = u"openai"_s, .model = u"gpt-5"_s, .keySource = own};
    const Config ownGemini{.provider = u"gemini"_s, .model = u"gem"_s, .keySource = own};
    // An unknown provider falls to Claude.
    const Config stale{.provider = u"mistral"_s, .model = u"opus"_s, .effort = u"high"_s, .keySource = own};
    // What one question sends: the path, the model, the effort, and every key or session header.
    const auto sent = [this](Factory make, const Config &config) {
        try {
            ask(*make(config));
        } catch (const AIError &error) {
            return QString(u"no key for "_s + error.displayName());
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
    EXPECT_EQ(sent(makeProvider, ownOpenAI), u"no key for ChatGPT"_s);
    EXPECT_EQ(sent(makeFastProvider, ownGemini), u"no key for Gemini"_s);
    EXPECT_EQ(sent(makeProvider, stale), u"no key for Claude"_s);

    ASSERT_TRUE(Keychain::set(u"quillet-session"_s, u"tok"_s));
    ASSERT_TRUE(Keychain::set(u"openai"_s, u"sk-o"_s));
    ASSERT_TRUE(Keychain::set(u"gemini"_s, u"AIza"_s));
    ASSERT_TRUE(Keychain::set(u"claude"_s, u"sk-a"_s));
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
        {makeProvider, stale, "/v1/messages opus high sk-a"},
        {makeFastProvider, stale, "/v1/messages claude-haiku-4-5 sk-a"},
    };
    for (const auto &[make, config, expected] : rows)
        EXPECT_EQ(sent(make, config), QString::fromLatin1(expected));

    Keychain::remove(u"quillet-session"_s);
    EXPECT_EQ(sent(makeProvider, none), u"/relay/anthropic/v1/messages claude-sonnet-5-5 low"_s);
    // Without a relay the built-in choice runs on the user's own key.
    QSettings().remove(u"relay.url"_s);
    EXPECT_EQ(sent(makeProvider, Config()), u"/v1/messages claude-opus-5-5 low sk-a"_s);
    Keychain::remove(u"claude"_s);
    EXPECT_EQ(sent(makeFastProvider, Config()), u"no key for Claude"_s);
}
