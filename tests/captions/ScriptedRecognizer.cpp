#include "ScriptedRecognizer.h"

#include <chrono>

ScriptedRecognizer::ScriptedRecognizer(int sampleRate)
    : sampleRate_(sampleRate)
{
}

void ScriptedRecognizer::finish()
{
    std::scoped_lock lock(mutex_);
    finished_ = true;
    changed_.notify_all();
}

std::optional<SpeechRecognizer::Result> ScriptedRecognizer::next(std::stop_token stop)
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

void ScriptedRecognizer::say(const QString &text, bool isFinal, double confidence)
{
    Result result{{}, isFinal};
    for (const QString &word : text.split(u' ', Qt::SkipEmptyParts))
        result.pieces.append({result.pieces.isEmpty() ? word : u' ' + word, confidence});
    say(result);
}

void ScriptedRecognizer::say(const Result &result)
{
    std::scoped_lock lock(mutex_);
    said_.push_back(result);
    waiting_ = false;
    changed_.notify_all();
}

bool ScriptedRecognizer::waitUntilHeard()
{
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, std::chrono::seconds(5), [this] { return said_.empty() && waiting_; });
}

SpeechRecognizer::Factory ScriptedRecognizers::factory()
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
