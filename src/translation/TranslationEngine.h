#pragma once

// What a translation lane asks to turn one text from one language into another. Languages are
// the lane codes of Translator::code ("ko", "en", "zh-Hans").
//
// translate() blocks until the answer is in: lanes call it on their worker task, never on the
// main thread. Engines hold no state a call changes, so one engine may serve several lanes at once.

#include <QString>

class TranslationEngine
{
public:
    enum class Outcome {
        Translated,
        Failed,       // the engine answered, but gave no translation of this text
        Unreachable,  // no engine answered at all: the next engine may take the text
    };

    struct Result
    {
        Outcome outcome = Outcome::Failed;
        QString text;  // the translation, when Translated
    };

    TranslationEngine() = default;
    virtual ~TranslationEngine();
    TranslationEngine(const TranslationEngine &) = delete;
    TranslationEngine &operator=(const TranslationEngine &) = delete;
    TranslationEngine(TranslationEngine &&) = delete;
    TranslationEngine &operator=(TranslationEngine &&) = delete;

    virtual Result translate(const QString &text, const QString &source, const QString &target) const = 0;
};
