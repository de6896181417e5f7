#pragma once

// A WAV file standing in for the microphone, for demos and tests on machines without one. Each
// start() plays the file from its beginning on a thread of its own, in buffers of 50 ms, either
// at the pace of real time or as fast as the receiver takes them (the buffers then say that
// listeners may wait, so a recogniser holds the file back instead of losing sound); after its end
// the input goes on like a microphone in a quiet room, with silence in real time, until stop().
//
// The clock paces real time and must outlive the input.

#include "platform/AudioInput.h"
#include "text/Clock.h"

#include <thread>

class WavFileInput final : public AudioInput
{
public:
    enum class Pace { RealTime, AsFastAsPossible };

    WavFileInput(QString path, Pace pace, Text::Clock &clock);
    ~WavFileInput() override;
    WavFileInput(const WavFileInput &) = delete;
    WavFileInput &operator=(const WavFileInput &) = delete;
    WavFileInput(WavFileInput &&) = delete;
    WavFileInput &operator=(WavFileInput &&) = delete;

    AudioFormat format() override;
    std::optional<QString> start(Receiver receiver) override;
    void stop() override;

private:
    const QString path_;
    const Pace pace_;
    Text::Clock &clock_;
    std::jthread player_;
};
