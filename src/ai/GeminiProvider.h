#pragma once

// The chat client for the Google generateContent interface, always direct with the user's key
// (the relay has no path for it). An immutable value: chat() may run on any number of worker
// threads at once and leaves nothing behind. It never gives "no value".

#include "ai/AIProvider.h"
#include "platform/Http.h"

#include <QJsonObject>

#include <chrono>

class GeminiProvider final : public AIProvider
{
public:
    struct Settings
    {
        QString key{};
        QString model{};
        std::chrono::milliseconds timeout = Http::defaultTimeout;
    };

    explicit GeminiProvider(Settings settings);

    QString displayName() const override { return QStringLiteral("Gemini"); }
    int contextChars() const override { return 6000; }
    std::optional<QString> chat(const QString &system, const QList<Turn> &turns) const override;

    // The text parts of the first candidate, joined; empty when it was blocked or nothing is usable.
    static QString readReply(const QJsonObject &reply);

private:
    QUrl endpoint() const;
    static QJsonObject body(const QString &system, const QList<Turn> &turns);

    Settings settings_;
};
