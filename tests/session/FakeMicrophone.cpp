#include "FakeMicrophone.h"

#include <stdexcept>
#include <thread>

AudioRecorder::Microphone FakeMicrophone::microphone()
{
    return {
        [this] { return sampleRate; },
        [this](AudioRecorder::Listener listener) {
            if (failure)
                throw std::runtime_error(*failure);
            std::scoped_lock lock(mutex_);
            const QUuid id = QUuid::createUuid();
            listeners_.insert(id, std::move(listener));
            return id;
        },
        [this](const QUuid &id) {
            std::scoped_lock lock(mutex_);
            listeners_.remove(id);
        },
    };
}

void FakeMicrophone::play(const std::vector<float> &samples, qsizetype frames)
{
    std::thread audio([&] {
        const qsizetype total = qsizetype(samples.size()) / channels;
        for (qsizetype used = 0; used < total; used += frames)
            deliver(samples.data() + used * channels, std::min(frames, total - used));
    });
    audio.join();
}

int FakeMicrophone::listeners() const
{
    std::scoped_lock lock(mutex_);
    return int(listeners_.size());
}

void FakeMicrophone::deliver(const float *samples, qsizetype frames)
{
    QList<AudioRecorder::Listener> called;
    {
        std::scoped_lock lock(mutex_);
        called = listeners_.values();
    }
    for (const AudioRecorder::Listener &listener : called)
        listener(samples, frames, sampleRate, channels);
}
