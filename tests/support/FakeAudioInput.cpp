#include "FakeAudioInput.h"

#include <thread>

AudioFormat FakeAudioInput::format()
{
    return failure ? AudioFormat() : delivered;
}

std::optional<QString> FakeAudioInput::start(Receiver receiver)
{
    std::scoped_lock lock(mutex_);
    ++counts_.starts;
    if (failure || busy)
        return failure ? failure : busy;
    receiver_ = std::move(receiver);
    counts_.running = true;
    return std::nullopt;
}

void FakeAudioInput::stop()
{
    std::scoped_lock lock(mutex_);
    ++counts_.stops;
    counts_.running = false;
}

void FakeAudioInput::play(const std::vector<float> &samples, qsizetype frames)
{
    std::thread audio([&] {
        const qsizetype total = qsizetype(samples.size()) / delivered.channels;
        for (qsizetype used = 0; used < total; used += frames) {
            Receiver receiver;
            {
                std::scoped_lock lock(mutex_);
                if (!counts_.running)
                    return;
                receiver = receiver_;
            }
            receiver(AudioBuffer{samples.data() + used * delivered.channels, std::min(frames, total - used),
                                 delivered});
        }
    });
    audio.join();
}

FakeAudioInput::Counts FakeAudioInput::counts() const
{
    std::scoped_lock lock(mutex_);
    return counts_;
}
