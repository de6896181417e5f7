#include "translation/ModelTranslationEngine.h"

#include "text/Characters.h"
#include "translation/Translator.h"

namespace {

QString nameOf(const QString &code)
{
    const std::optional<Language> language = Translator::language(code);
    return language ? language->id : code;
}

} // namespace

ModelTranslationEngine::ModelTranslationEngine(std::shared_ptr<const AIProvider> provider)
    : provider_(std::move(provider))
{
}

TranslationEngine::Result ModelTranslationEngine::translate(const QString &text, const QString &source,
                                                            const QString &target) const
{
    static const QString system = QStringLiteral(
        "You translate live lecture captions. Reply with the translation only: no quotes, notes or explanations.");
    const QString prompt = QStringLiteral("Translate from ") + nameOf(source) + QStringLiteral(" into ")
        + nameOf(target) + QStringLiteral(":\n\n") + text;
    const std::optional<QString> reply = provider_->chat(system, {Turn{QStringLiteral("user"), prompt, {}}});
    const QString translation = reply ? Text::trimmed(*reply) : QString();
    if (translation.isEmpty() || translation.startsWith(u'（'))
        return {Outcome::Failed, {}};
    return {Outcome::Translated, translation};
}
