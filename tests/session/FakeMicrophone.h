#pragma once

// A microphone the test plays sound into, in the shape the recorder needs: every listener gets
// each buffer, called from a thread of its own as the hub's audio thread would call it.

#include "session/AudioRecorder.h"

#include <QHash>

#include <mutex>
#include <optional>
#include <string>
#include <vector>

class FakeMicrophone final
{
public:
    AudioRecorder::Microphone microphone();

    // Hands interleaved sound to the listeners in buffers of `frames` and returns when done.
    void play(const std::vector<float> &samples, qsizetype frames = 4'096);
    int listeners() const;

    int sampleRate = 48'000;
    int channels = 1;
    // When set, adding a listener fails with this error.
    std::optional<std::string> failure;

private:
    void deliver(const float *samples, qsizetype frames);

    mutable std::mutex mutex_;
    QHash<QUuid, AudioRecorder::Listener> listeners_;
};
