#pragma once

// Microphone sound as the shared microphone hands it on: interleaved 32-bit float samples in
// [-1, 1] with their rate and channel count. A buffer only borrows its samples for the length of
// the call that receives it; whoever needs them later copies or converts them.

#include <QtGlobal>

struct AudioFormat
{
    int sampleRate = 0;   // frames per second; 0 when there is no input
    int channels = 0;

    bool isValid() const { return sampleRate > 0 && channels > 0; }
    friend bool operator==(const AudioFormat &, const AudioFormat &) = default;
};

struct AudioBuffer
{
    const float *samples = nullptr;   // frames × channels values, interleaved
    qsizetype frames = 0;
    AudioFormat format;
    // A file read as fast as it is taken: a listener may wait for its consumer rather than drop
    // sound. Never set by a device, whose audio thread must not wait.
    bool mayWait = false;
};
