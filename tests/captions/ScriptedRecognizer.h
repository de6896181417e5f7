#pragma once

// Recognisers whose results the test says, for checking what the microphone sources make of
// them. The factory supports the locales it is given and keeps every recogniser it made, so the
// test can speak through it; they live as long as the source that owns them.

#include "platform/SpeechRecognizer.h"

#include <QHash>
#include <QStringList>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>

class ScriptedRecognizer final : public SpeechRecognizer
{
public:
    explicit ScriptedRecognizer(int sampleRate)
        : sampleRate_(sampleRate)
    {
    }

    int sampleRate() const override { return sampleRate_; }
    bool feed(std::span<const qint16> samples) override
    {
        if (behind)
            return false;
        fed += qsizetype(samples.size());
        return true;
    }
    void waitForRoom() override {}
    void finish() override
    {
        std::scoped_lock lock(mutex_);
        finished_ = true;
        changed_.notify_all();
    }
    std::optional<Result> next(std::stop_token stop) override
    {
        std::unique_lock lock(mutex_);
        waiting_ = true;
        changed_.notify_all();
        changed_.wait(lock, stop, [this] { return !said_.empty() || finished_; });
        waiting_ = false;
        if (said_.empty() || stop.stop_requested())
            return std::nullopt;
        Result result = said_.front();
        said_.pop_front();
        return result;
    }

    // One run of text per word, every word with the same confidence.
    void say(const QString &text, bool isFinal, double confidence = 1.0)
    {
        Result result{{}, isFinal};
        for (const QString &word : text.split(u' ', Qt::SkipEmptyParts))
            result.pieces.append({result.pieces.isEmpty() ? word : u' ' + word, confidence});
        say(result);
    }
    void say(const Result &result)
    {
        std::scoped_lock lock(mutex_);
        said_.push_back(result);
        waiting_ = false;
        changed_.notify_all();
    }
    // Waits until the reader has handled everything said and asks for more; false after 5 s.
    bool waitUntilHeard()
    {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, std::chrono::seconds(5), [this] { return said_.empty() && waiting_; });
    }

    std::atomic<qsizetype> fed = 0;   // samples
    std::atomic<bool> behind = false;  // drops what it is fed, as one far behind would

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
    QHash<QString, int> sampleRates;    // 16 kHz unless given
    QHash<QString, QString> failures;   // make() fails for these with the text
    QHash<QString, ScriptedRecognizer *> made;

    SpeechRecognizer::Factory factory()
    {
        return {
            [this](const QString &locale) { return supported.contains(locale); },
            [this](const QString &locale) -> SpeechRecognizer::Made {
                if (failures.contains(locale))
                    return failures.value(locale);
                auto recognizer = std::make_unique<ScriptedRecognizer>(sampleRates.value(locale, 16'000));
                made.insert(locale, recognizer.get());
                return std::unique_ptr<SpeechRecognizer>(std::move(recognizer));
            },
        };
    }
};
