#pragma once

// The chosen audio input device through Qt Multimedia (the user default "mic.device", else the
// default device). The device is opened, read and closed on a thread of the input's own with an
// event loop: the audio thread, on which the receiver runs.
// Samples come in the device's preferred rate and channel count, as floats where the device
// offers them and otherwise converted from its integers.
//
// Built and destroyed on one thread, which must not be the audio thread.

#include "platform/AudioInput.h"

#include <QThread>

#include <functional>
#include <memory>

class QAudioSource;
class QObject;

class QtAudioInput final : public AudioInput
{
public:
    QtAudioInput();
    ~QtAudioInput() override;
    QtAudioInput(const QtAudioInput &) = delete;
    QtAudioInput &operator=(const QtAudioInput &) = delete;
    QtAudioInput(QtAudioInput &&) = delete;
    QtAudioInput &operator=(QtAudioInput &&) = delete;

    AudioFormat format() override;
    std::optional<QString> start(Receiver receiver) override;
    void stop() override;

private:
    class Sink;
    // Runs `work` on the audio thread and waits for it, or runs it at once when already there.
    void onAudioThread(const std::function<void()> &work);
    void close();

    QThread thread_;
    std::unique_ptr<QObject> context_;   // lives on the audio thread
    // Touched on the audio thread only.
    std::unique_ptr<Sink> sink_;
    std::unique_ptr<QAudioSource> source_;
};
