#pragma once

// One source of microphone sound behind the shared microphone hub: the default input device, or
// a WAV file standing in for it. The hub is the only caller and serialises start() and stop().
//
// start() and format() may block briefly and are called from any thread but the audio thread.
// The receiver runs on the input's own audio thread, one buffer after another; it must not wait
// unless the buffer says it may (a file read as fast as it is taken). stop() never
// waits for that thread, so it may be called from the receiver itself; a buffer already under
// way may still arrive after it. A start() after a stop() begins a fresh run. The destructor
// returns once the audio thread has ended: no receiver call follows it.

#include "platform/AudioBuffer.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>

class AudioInput
{
public:
    using Receiver = std::function<void(const AudioBuffer &)>;

    AudioInput() = default;
    virtual ~AudioInput();
    AudioInput(const AudioInput &) = delete;
    AudioInput &operator=(const AudioInput &) = delete;
    AudioInput(AudioInput &&) = delete;
    AudioInput &operator=(AudioInput &&) = delete;

    // The format buffers will have, asked afresh; invalid when there is no input.
    virtual AudioFormat format() = 0;
    // No value once sound flows to the receiver; otherwise the reason, worded for the user.
    virtual std::optional<QString> start(Receiver receiver) = 0;
    virtual void stop() = 0;

    // The WAV file named by the user default "mic.file", played in real time, when it is set;
    // the default input device otherwise.
    [[nodiscard]] static std::unique_ptr<AudioInput> create();
};
