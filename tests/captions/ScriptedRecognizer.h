#pragma once

// Recognisers whose results the test says, for checking what the microphone source makes of
// them. The factory supports the locales it is given and keeps every recogniser it made, so the
// test can speak through it; they live as long as the source that owns them.

#include "platform/SpeechRecognizer.h"

#include <QHash>
#include <QStringList>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>

class ScriptedRecognizer final : public SpeechRecognizer
{
public:
    explicit ScriptedRecognizer(int sampleRate);

    int sampleRate() const override { return sampleRate_; }
    void feed(std::span<const qint16> samples) override { fed += qsizetype(samples.size()); }
    void finish() override;
    std::optional<Result> next(std::stop_token stop) override;

    // One run of text per word, every word with the same confidence.
    void say(const QString &text, bool isFinal, double confidence = 1.0);
    void say(const Result &result);
    // Waits until the reader has handled everything said and asks for more; false after 5 s.
    bool waitUntilHeard();

    std::atomic<qsizetype> fed = 0;   // samples

private:
    const int sampleRate_;
    std::mutex mutex_;
    std::condition_variable_any changed_;
    std::deque<Result> said_;
    bool finished_ = false;
    bool waiting_ = false;
};

struct ScriptedRecognizers
{
    QStringList supported;
    QHash<QString, int> sampleRates;        // 16 kHz unless given
    QHash<QString, QString> failures;       // make() fails for these with the text
    QHash<QString, ScriptedRecognizer *> made;

    SpeechRecognizer::Factory factory();
};
