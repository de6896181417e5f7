#pragma once

// Speech recognition of a whole sound file in one language on the device, for the second pass
// over a class's recording: the final results in the order they were said, each as runs of text
// with a confidence and, where known, the time range of the run in the file.
//
// A recogniser is made for one file and one locale and read by one thread, whose next() calls do
// the recognising; the sound is streamed from the file, never held whole. Owned by whoever made it.

#include "platform/SpeechRecognizer.h"

#include <QList>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <variant>

class FileRecognizer
{
public:
    // Seconds from the start of the file.
    struct TimeRange
    {
        double start = 0;
        double end = 0;
        friend bool operator==(const TimeRange &, const TimeRange &) = default;
    };

    struct Run
    {
        SpeechRecognizer::Piece piece;   // the text with its leading blank, and its confidence
        std::optional<TimeRange> time;
    };

    struct Result
    {
        QList<Run> runs;
        TimeRange range;   // of the whole result
    };

    using Made = std::variant<std::unique_ptr<FileRecognizer>, QString>;

    // Whether a locale can be recognised, and making a recogniser of a file for it, or the problem
    // worded for the user (no model, a file that can't be read). Both may block while models load.
    struct Factory
    {
        std::function<bool(const QString &locale)> supports;
        std::function<Made(const QString &path, const QString &locale)> make;
    };

    FileRecognizer() = default;
    virtual ~FileRecognizer();
    FileRecognizer(const FileRecognizer &) = delete;
    FileRecognizer &operator=(const FileRecognizer &) = delete;
    FileRecognizer(FileRecognizer &&) = delete;
    FileRecognizer &operator=(FileRecognizer &&) = delete;

    // Recognises up to the next final result; none at the end of the sound, or on stop.
    virtual std::optional<Result> next(std::stop_token stop) = 0;
};
