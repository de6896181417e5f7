#pragma once

// What the engine polls for the words of a class: finished lines and the unfinished draft.
//
// All operations are called on the engine's own thread; start() and read() may block for a
// while. read() hands each finished line out exactly once, joined by "\n"; no line contains a
// "\n". A draft is display text only and never enters the transcript.

#include <QString>

#include <optional>

class CaptionSource
{
public:
    CaptionSource() = default;
    virtual ~CaptionSource();
    CaptionSource(const CaptionSource &) = delete;
    CaptionSource &operator=(const CaptionSource &) = delete;
    CaptionSource(CaptionSource &&) = delete;
    CaptionSource &operator=(CaptionSource &&) = delete;

    // No value when the source runs; otherwise the problem worded for the user.
    virtual std::optional<QString> start() = 0;
    // The finished lines that are new since the last call; empty when there are none.
    virtual QString read() = 0;
    virtual QString draft() { return {}; }
    virtual void stop() {}
    // A lasting trouble worded for the user; no value when all is well.
    virtual std::optional<QString> problem() { return std::nullopt; }
};
