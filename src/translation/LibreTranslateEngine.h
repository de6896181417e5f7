#pragma once

// Translation by a LibreTranslate-compatible server, the usual private, offline set-up on Linux:
// POST /translate for a text, GET /languages for the pairs the server has installed. An address
// where no such server answers (no connection, or an answer that isn't JSON) is Unreachable, so
// the lane's next engine takes over.
//
// Any thread but the main one: every call is a blocking request. The server's language list is
// fetched once, on first need, and kept for the engine's life.

#include "translation/TranslationEngine.h"

#include <QStringList>
#include <QUrl>

#include <chrono>
#include <mutex>
#include <optional>

class LibreTranslateEngine final : public TranslationEngine
{
public:
    // The user default "translate.url", or the server a local install listens on.
    static QUrl configuredUrl();

    explicit LibreTranslateEngine(QUrl base);

    Result translate(const QString &text, const QString &source, const QString &target) const override;

    // Which of the sources the server can't translate into target; no value when no server answers.
    std::optional<QStringList> missing(const QStringList &sources, const QString &target) const;

    QUrl base() const { return base_; }

private:
    struct Language
    {
        QString code;
        std::optional<QStringList> targets;  // absent: older servers translate every pair
    };

    std::optional<QList<Language>> languages() const;
    static QString wireCode(const QString &code, const QList<Language> &known);

    const QUrl base_;
    mutable std::mutex mutex_;
    mutable std::optional<QList<Language>> languages_;
};
