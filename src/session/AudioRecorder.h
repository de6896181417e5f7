#pragma once

// Records the shared microphone into a class folder's "录音.m4a": mono AAC at the microphone's
// sample rate and the given bit rate, in a fragmented MPEG-4 file that still plays if the
// program dies before stop().
//
// start() and stop() run on the main thread. The hub calls the recorder's listener on its audio
// thread, which only mixes each buffer down to mono and queues it, never waiting on the file; a
// writer thread of the recorder's own encodes and writes. stop() lets that thread write what is
// queued and close the file, so the file is complete when stop() returns. The listener holds the
// recorder's queue weakly, so a buffer in flight after stop() or after the recorder is gone is
// dropped. The hub must outlive the recorder.

#include <QString>
#include <QUuid>

#include <memory>
#include <optional>
#include <thread>

class MicHub;

class AudioRecorder final
{
public:
    explicit AudioRecorder(MicHub &hub);
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
    // What went wrong with the file while recording, worded for the user (a full disk: first the
    // sound waits in memory, then, past its limit, the recording stops); absent while all is well
    // and again once the disk has taken what waited. Callable from any thread.
    std::optional<QString> problem() const;

private:
    class Feed;
    void stopWriting();

    MicHub &hub_;
    int bitRate_ = 64'000;
    std::optional<QUuid> listener_;
    const std::shared_ptr<Feed> feed_;
    std::jthread writer_;
};
