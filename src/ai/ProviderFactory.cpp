#include "ai/ProviderFactory.h"

#include "account/Relay.h"
#include "ai/AIError.h"
#include "ai/ClaudeProvider.h"
#include "ai/GeminiProvider.h"
#include "ai/OpenAIProvider.h"
#include "platform/Keychain.h"
#include "settings/ProviderInfo.h"

namespace {

enum class Use { Main, Fast };

const QString fastClaude = QStringLiteral("claude-haiku-4-5");
const QString fastOpenAI = QStringLiteral("gpt-5-mini");
const QString minimalEffort = QStringLiteral("minimal");

std::shared_ptr<const AIProvider> viaRelay(const Config &config, Use use)
{
    const bool fast = use == Use::Fast;
    if (config.builtinAI == u"openai") {
        return std::make_shared<OpenAIProvider>(OpenAIProvider::Settings{
            .model = fast ? fastOpenAI : QStringLiteral("gpt-5"),
            .reasoningEffort = fast ? std::optional(minimalEffort) : std::nullopt,
            .viaRelay = true});
    }
    return std::make_shared<ClaudeProvider>(ClaudeProvider::Settings{
        .model = fast ? fastClaude : QStringLiteral("claude-sonnet-5-5"),
        .effort = QStringLiteral("low"),
        .viaRelay = true});
}

std::shared_ptr<const AIProvider> direct(const Config &config, Use use)
{
    const ProviderInfo &info = ProviderInfo::find(config.provider);
    const auto key = Keychain::get(info.id);
    if (!key)
        throw AIError::missingKey(info.displayName);
    const bool fast = use == Use::Fast;
    if (info.id == u"openai") {
        return std::make_shared<OpenAIProvider>(OpenAIProvider::Settings{
            .key = *key,
            .model = fast ? fastOpenAI : config.model,
            .reasoningEffort = fast ? std::optional(minimalEffort) : std::nullopt});
    }
    if (info.id == u"gemini") {
        return std::make_shared<GeminiProvider>(GeminiProvider::Settings{
            .key = *key, .model = fast ? QStringLiteral("gemini-2.5-flash") : config.model});
    }
    return std::make_shared<ClaudeProvider>(ClaudeProvider::Settings{
        .key = *key,
        .model = fast ? fastClaude : config.model,
        .effort = fast ? QStringLiteral("low") : config.effort});
}

std::shared_ptr<const AIProvider> make(const Config &config, Use use)
{
    return config.usesQuilletAI(Relay::available()) ? viaRelay(config, use) : direct(config, use);
}

} // namespace

std::shared_ptr<const AIProvider> makeProvider(const Config &config)
{
    return make(config, Use::Main);
}

std::shared_ptr<const AIProvider> makeFastProvider(const Config &config)
{
    return make(config, Use::Fast);
}
