#pragma once

// The request that sends one segment of speech to the cloud transcription service: a multipart
// POST of a 16 kHz mono 16-bit WAV with the model and the prompt, to OpenAI's transcription
// endpoint with the user's key, or to the relay's with the session header. The user default
// "speech.url" replaces OpenAI's address (no trailing path), so an OpenAI-compatible
// transcription server, a local one included, can stand in for it.
//
// A value; make() reads the settings and keychain afresh and may be called from any thread.

#include "platform/Http.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <chrono>
#include <span>

class CloudRequest final
{
public:
    static constexpr std::chrono::milliseconds defaultTimeout = std::chrono::seconds(30);

    struct Settings
    {
        QString model;
        QString prompt;
        bool viaRelay = false;
        QString key;   // the OpenAI key; unused through the relay
        std::chrono::milliseconds timeout = defaultTimeout;
    };

    explicit CloudRequest(Settings settings);

    // The prompt sent with every segment of a class in these locales (the lecture's first):
    // a sample sentence in the lecture language, naming the extra languages in English.
    static QString prompt(const QStringList &locales);
    // The samples as a WAV file: mono, 16-bit, at rate samples per second.
    static QByteArray wav(std::span<const qint16> samples, int rate = 16'000);

    // The whole request for one segment, with a new boundary.
    Http::Request make(std::span<const qint16> samples) const;
    // The multipart body for this boundary, byte for byte.
    QByteArray body(std::span<const qint16> samples, const QByteArray &boundary) const;

    const Settings &settings() const { return settings_; }

private:
    QUrl endpoint() const;

    Settings settings_;
};
