#pragma once

// The chat client for the OpenAI Responses interface, directly with the user's key or through the
// relay with the session token. An immutable value: chat() may run on any number of worker threads
// at once and leaves nothing behind. It never gives "no value": there is no refusal case here.

#include "ai/AIProvider.h"
#include "platform/Http.h"

#include <QJsonObject>

#include <chrono>

class OpenAIProvider final : public AIProvider
{
public:
    struct Settings
    {
        QString key{};  // the user's API key; empty through the relay
        QString model{};
        std::optional<QString> reasoningEffort{};  // reasoning.effort; no reasoning member without it
        bool viaRelay = false;
        std::chrono::milliseconds timeout = Http::defaultTimeout;
    };

    explicit OpenAIProvider(Settings settings);

    QString displayName() const override { return QStringLiteral("ChatGPT"); }
    int contextChars() const override { return 6000; }
    std::optional<QString> chat(const QString &system, const QList<Turn> &turns) const override;

    // The "output_text" blocks of every output item, joined; empty when nothing is usable.
    static QString readReply(const QJsonObject &reply);

private:
    QUrl endpoint() const;
    Http::Headers headers() const;
    QJsonObject body(const QString &system, const QList<Turn> &turns) const;

    Settings settings_;
};
