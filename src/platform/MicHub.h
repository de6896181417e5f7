#pragma once

// The one shared tap on the microphone. The sound sources and the audio recorder listen to it at
// the same time, so a class can be recognised and recorded from the same input.
//
// Every listener receives the same buffers: interleaved float samples with their format (see
// AudioBuffer), called on the input's audio thread in no particular order between listeners. A
// listener must copy or convert what it needs and return quickly (it may wait for its consumer
// only when the buffer says so: a file input read as fast as taken); it may call remove(), also its
// own, since no lock of the hub is held while listeners run. A listener may be called once more
// after its remove() returns, so it holds what it feeds weakly.
//
// The first add() starts the input and the last remove() stops it. add() and remove() may be
// called from any thread (add() not from a listener); add() blocks while the input opens. The hub
// owns its input and lives as long as the program; whoever owns it outlives every listener.

#include "platform/AudioInput.h"

#include <QHash>
#include <QList>
#include <QUuid>

#include <memory>
#include <mutex>
#include <stdexcept>

class MicHub final
{
public:
    using Listener = std::function<void(const AudioBuffer &)>;

    // Why the input would not start, worded for the user (UTF-8 in what()).
    class Error final : public std::runtime_error
    {
    public:
        explicit Error(const QString &message);
        QString message() const;
    };

    explicit MicHub(std::unique_ptr<AudioInput> input);
    ~MicHub();
    MicHub(const MicHub &) = delete;
    MicHub &operator=(const MicHub &) = delete;
    MicHub(MicHub &&) = delete;
    MicHub &operator=(MicHub &&) = delete;

    // The format of the buffers the input gives now, asked afresh on each call; invalid when
    // there is no input device.
    AudioFormat format();
    // Registers the listener and returns its id; starts the input for the first one. Throws
    // Error with everything put back when the input won't start.
    QUuid add(Listener listener);
    // Unregisters it; stops the input when it was the last one. An unknown id does nothing.
    void remove(const QUuid &id);

    bool running() const;

private:
    using Listeners = QList<Listener>;
    void deliver(const AudioBuffer &buffer) const;
    // Under mutex_: makes the snapshot the audio thread reads.
    void publish();

    std::unique_ptr<AudioInput> input_;
    std::mutex starting_;           // one add() at a time may start the input
    mutable std::mutex mutex_;      // guards the fields below; never held while waiting
    QHash<QUuid, Listener> listeners_;
    std::shared_ptr<const Listeners> snapshot_;
    bool running_ = false;
};
