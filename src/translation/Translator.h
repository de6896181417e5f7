#pragma once

// Turns every line and draft sentence into the answer language on this machine. A class may mix
// source languages while an engine pair translates one direction only, so each source language
// has a lane of its own, and each text goes to its lane after a language detection limited to the
// languages in play.
//
// Main thread only: setLanguages(), translate() and every completion run there; translate() never
// blocks. Texts of one lane complete in order, lanes independently. The owner (one Translator for
// the application's life) sets onNote and the fallback provider, which it shares.

#include "settings/Language.h"
#include "translation/Lane.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <map>
#include <memory>
#include <optional>

class AIProvider;
class LibreTranslateEngine;

class Translator final
{
public:
    using Done = Lane::Done;

    Translator();
    ~Translator();
    Translator(const Translator &) = delete;
    Translator &operator=(const Translator &) = delete;
    Translator(Translator &&) = delete;
    Translator &operator=(Translator &&) = delete;

    // The lane code of a locale id: its language code, every Chinese as "zh-Hans" ("ko-KR" → "ko").
    static QString code(const QString &id);
    // The row of the language table with this lane code.
    static std::optional<Language> language(const QString &code);

    // The fast model that translates when no translation server answers, or none; used by the
    // lanes of the next setLanguages().
    void setFallback(std::shared_ptr<const AIProvider> provider);
    // Replaces every lane (texts still waiting in the old ones get no completion), reads the
    // server address "translate.url" again and checks which languages the server has installed.
    void setLanguages(const QStringList &sources, const QString &target);
    // done gets the translation, or no value when there is none; it is called exactly once, at
    // once for a text already in the answer language (or blank), for which it gets the text itself.
    void translate(const QString &text, Done done);

    std::function<void(const QString &)> onNote = [](const QString &) {};

private:
    QString detect(const QString &text) const;
    void checkInstalled(const QStringList &codes);

    std::map<QString, std::unique_ptr<Lane>> lanes_;
    QString primary_;
    QString target_;
    QStringList candidates_;
    std::shared_ptr<const AIProvider> fallback_;
    std::shared_ptr<const LibreTranslateEngine> server_;
    int generation_ = 0;  // of setLanguages, so a late availability answer for older lanes is dropped
    QObject context_;     // owns the watchers of availability checks: none answers a Translator that is gone
};
