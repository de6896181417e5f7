#pragma once

// The shared microphone hub over an input the test plays sound into.

#include "captions/MicHub.h"

#include "FakeAudioInput.h"

class FakeMicrophone final
{
public:
    FakeMicrophone();

    FakeAudioInput &input() { return *input_; }
    MicHub &hub() { return hub_; }

private:
    explicit FakeMicrophone(std::unique_ptr<FakeAudioInput> input);

    FakeAudioInput *input_;   // owned by the hub
    MicHub hub_;
};
