#pragma once

// Turns microphone buffers into 16-bit mono sound at the rate a recogniser or an upload wants,
// with FFmpeg's resampler. Built for one input format; convert() runs on the audio thread, one
// buffer after another, and reuses its memory, so it allocates nothing once warmed up.

#include "platform/AudioBuffer.h"

#include <memory>
#include <span>
#include <vector>

struct SwrContext;

class AudioConverter final
{
public:
    // None when the resampler can't be set up for these formats.
    [[nodiscard]] static std::unique_ptr<AudioConverter> create(AudioFormat from, int toSampleRate);
    ~AudioConverter();
    AudioConverter(const AudioConverter &) = delete;
    AudioConverter &operator=(const AudioConverter &) = delete;
    AudioConverter(AudioConverter &&) = delete;
    AudioConverter &operator=(AudioConverter &&) = delete;

    // The converted samples, valid until the next call. A buffer in another format gives none.
    std::span<const qint16> convert(const AudioBuffer &buffer);

private:
    AudioConverter(SwrContext *context, AudioFormat from);

    SwrContext *context_;
    const AudioFormat from_;
    std::vector<qint16> converted_;
};
