#pragma once

// Translation by the fast chat model, one short prompt per text: the fallback that keeps
// translation working for a user with a key when no translation server answers.
//
// Any thread but the main one: translate() waits for the model. Shares the provider with its owner.

#include "ai/AIProvider.h"
#include "translation/TranslationEngine.h"

#include <memory>

class ModelTranslationEngine final : public TranslationEngine
{
public:
    explicit ModelTranslationEngine(std::shared_ptr<const AIProvider> provider);

    // A failure text, a refusal or an empty reply is Failed: the model is the last engine.
    Result translate(const QString &text, const QString &source, const QString &target) const override;

private:
    const std::shared_ptr<const AIProvider> provider_;
};
