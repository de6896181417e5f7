#pragma once

// Records the shared microphone into a class folder's "录音.m4a": mono AAC at the microphone's
// sample rate and the given bit rate, in a fragmented MPEG-4 file that still plays if the
// program dies before stop().
//
// start() and stop() run on the main thread. The microphone calls the listener on its audio
// thread, which only mixes each buffer down to mono and queues it, never waiting on the file; a
// writer thread of the recorder's own encodes and writes. stop() lets that thread write what is
// queued and close the file, so the file is complete when stop() returns. The listener holds the
// recorder's queue weakly, so a buffer in flight after stop() or after the recorder is gone is
// dropped. What the microphone's functions refer to must outlive the recorder.

#include <QString>
#include <QUuid>

#include <functional>
#include <memory>
#include <optional>
#include <thread>

class AudioRecorder final
{
public:
    // One microphone buffer: interleaved float samples and their format.
    using Listener = std::function<void(const float *samples, qsizetype frames, int sampleRate, int channels)>;

    // What the recorder needs of the shared microphone: the sample rate it delivers now (0 when
    // there is no microphone), and the registration of a listener, which starts the input and
    // throws the platform's error when it can't.
    struct Microphone
    {
        std::function<int()> sampleRate;
        std::function<QUuid(Listener)> add;
        std::function<void(const QUuid &)> remove;
    };

    explicit AudioRecorder(Microphone microphone);
    ~AudioRecorder();   // stops
    AudioRecorder(const AudioRecorder &) = delete;
    AudioRecorder &operator=(const AudioRecorder &) = delete;
    AudioRecorder(AudioRecorder &&) = delete;
    AudioRecorder &operator=(AudioRecorder &&) = delete;

    // Bits per second; 64,000 until set. Takes effect at the next start().
    int bitRate() const { return bitRate_; }
    void setBitRate(int bitRate) { bitRate_ = bitRate; }

    // Starts recording into a new file at `path`; the problem worded for the user, or no value.
    std::optional<QString> start(const QString &path);
    void stop();

    // One microphone buffer: what the listener hands on, and the way in for sound that doesn't
    // come through the microphone. Any thread; never blocks on the writer. Buffers at another
    // sample rate than the file's, or while not recording, are dropped.
    void append(const float *samples, qsizetype frames, int sampleRate, int channels);

private:
    class Feed;
    void stopWriting();

    Microphone microphone_;
    int bitRate_ = 64'000;
    std::optional<QUuid> listener_;
    const std::shared_ptr<Feed> feed_;
    std::jthread writer_;
};
