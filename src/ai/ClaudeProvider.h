#pragma once

// The chat client for the Anthropic Messages interface, directly with the user's key or through
// the relay with the session token. An immutable value: chat() may run on any number of worker
// threads at once and leaves nothing behind.

#include "ai/AIProvider.h"
#include "platform/Http.h"

#include <QJsonObject>

#include <chrono>

class ClaudeProvider final : public AIProvider
{
public:
    struct Settings
    {
        QString key{};     // the user's API key; empty through the relay
        QString model{};
        QString effort{};  // output_config.effort; Haiku models get none
        bool viaRelay = false;
        std::chrono::milliseconds timeout = Http::defaultTimeout;
    };

    explicit ClaudeProvider(Settings settings);

    QString displayName() const override { return QStringLiteral("Claude"); }
    int contextChars() const override { return 6000; }
    // No value when the model refused.
    std::optional<QString> chat(const QString &system, const QList<Turn> &turns) const override;

    // The reply's text blocks joined; no value for a refusal; empty when nothing is usable.
    static std::optional<QString> readReply(const QJsonObject &reply);

private:
    bool isHaiku() const;
    QUrl endpoint() const;
    Http::Headers headers() const;
    QJsonObject body(const QString &system, const QList<Turn> &turns) const;

    Settings settings_;
};
