#pragma once

// Speech recognition of one language on the device: the recogniser takes 16-bit mono sound at
// its own rate and gives volatile results (the words so far, which may still change) and final
// results (an utterance ended by a pause), each as runs of text with a confidence per run.
// Several recognisers may run side by side on the same sound.
//
// feed() and finish() may come from any thread and never wait for recognition: feed() is meant
// for the audio thread; waitForRoom() waits, for a file input only. next() is called by one thread, the recogniser's reader, which does the
// recognising inside it. The recogniser is owned by whoever made it.

#include <QList>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <stop_token>
#include <variant>

class SpeechRecognizer
{
public:
    struct Piece
    {
        QString text;              // a word with the blank that leads it, if any
        double confidence = 1.0;   // 0 to 1
        friend bool operator==(const Piece &, const Piece &) = default;
    };

    struct Result
    {
        QList<Piece> pieces;
        bool isFinal = false;
    };

    using Made = std::variant<std::unique_ptr<SpeechRecognizer>, QString>;

    // Where recognisers come from: whether a locale can be recognised, and making a recogniser
    // for it, or the problem worded for the user. Both may block while models load.
    struct Factory
    {
        std::function<bool(const QString &locale)> supports;
        std::function<Made(const QString &locale)> make;
    };

    SpeechRecognizer() = default;
    virtual ~SpeechRecognizer();
    SpeechRecognizer(const SpeechRecognizer &) = delete;
    SpeechRecognizer &operator=(const SpeechRecognizer &) = delete;
    SpeechRecognizer(SpeechRecognizer &&) = delete;
    SpeechRecognizer &operator=(SpeechRecognizer &&) = delete;

    // Samples per second that feed() takes.
    virtual int sampleRate() const = 0;
    // Queues the sound without waiting; false when it was dropped because recognition is too far
    // behind (minutes of sound already queued).
    virtual bool feed(std::span<const qint16> samples) = 0;
    // Waits until the queue is short (a few seconds of sound) or finish() is called. Only for
    // sound that may wait, a file read as fast as it is taken; never the audio thread of a device.
    virtual void waitForRoom() = 0;
    // No more sound will come: next() gives what is left and then ends.
    virtual void finish() = 0;
    // Waits for the next result; none once the sound is finished and recognised, or on stop.
    virtual std::optional<Result> next(std::stop_token stop) = 0;
    // A lasting trouble of the recogniser worded for the user; none while all is well. Any thread.
    virtual std::optional<QString> problem() const { return std::nullopt; }
};
