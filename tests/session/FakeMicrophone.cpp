#include "FakeMicrophone.h"

FakeMicrophone::FakeMicrophone()
    : FakeMicrophone(std::make_unique<FakeAudioInput>())
{
}

FakeMicrophone::FakeMicrophone(std::unique_ptr<FakeAudioInput> input)
    : input_(input.get())
    , hub_(std::move(input))
{
}
