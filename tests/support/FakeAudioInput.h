#pragma once

// An input the test plays buffers into, counting how often the hub starts and stops it. play()
// calls the receiver on a thread of its own, as an audio thread would, and returns when done.

#include "platform/AudioInput.h"

#include <mutex>
#include <vector>

class FakeAudioInput final : public AudioInput
{
public:
    struct Counts
    {
        int starts = 0;
        int stops = 0;
        bool running = false;
    };

    AudioFormat format() override;
    std::optional<QString> start(Receiver receiver) override;
    void stop() override;

    // Plays the samples in buffers of `frames` to the running receiver; nothing when stopped.
    void play(const std::vector<float> &samples, qsizetype frames);
    Counts counts() const;

    AudioFormat delivered{48'000, 2};
    // When set, there is no input device: the format is invalid and start() fails with it.
    std::optional<QString> failure;
    // When set, the device is there but start() fails with it.
    std::optional<QString> busy;

private:
    mutable std::mutex mutex_;
    Receiver receiver_;
    Counts counts_;
};
