#include "platform/MicHub.h"

MicHub::Error::Error(const QString &message)
    : std::runtime_error(message.toStdString())
{
}

QString MicHub::Error::message() const
{
    return QString::fromUtf8(what());
}

MicHub::MicHub(std::unique_ptr<AudioInput> input)
    : input_(std::move(input))
    , snapshot_(std::make_shared<const Listeners>())
{
}

MicHub::~MicHub()
{
    // The input's destructor joins its audio thread; the listeners and the lock that thread reads
    // may only go after that.
    input_.reset();
}

AudioFormat MicHub::format()
{
    return input_->format();
}

QUuid MicHub::add(Listener listener)
{
    std::scoped_lock starting(starting_);
    const QUuid id = QUuid::createUuid();
    {
        std::scoped_lock lock(mutex_);
        listeners_.insert(id, std::move(listener));
        publish();
        if (running_)
            return id;
    }

    const auto problem = input_->start([this](const AudioBuffer &buffer) { deliver(buffer); });
    std::scoped_lock lock(mutex_);
    if (problem) {
        listeners_.remove(id);
        publish();
        throw Error(*problem);
    }
    running_ = true;
    // Every listener may have gone while the input opened.
    if (listeners_.isEmpty()) {
        input_->stop();
        running_ = false;
    }
    return id;
}

void MicHub::remove(const QUuid &id)
{
    std::scoped_lock lock(mutex_);
    if (!listeners_.remove(id))
        return;
    publish();
    // stop() doesn't wait for the audio thread, so this is safe under the lock and from a listener.
    if (listeners_.isEmpty() && running_) {
        input_->stop();
        running_ = false;
    }
}

bool MicHub::running() const
{
    std::scoped_lock lock(mutex_);
    return running_;
}

void MicHub::deliver(const AudioBuffer &buffer) const
{
    std::shared_ptr<const Listeners> listeners;
    {
        std::scoped_lock lock(mutex_);
        listeners = snapshot_;
    }
    for (const Listener &listener : *listeners)
        listener(buffer);
}

void MicHub::publish()
{
    snapshot_ = std::make_shared<const Listeners>(listeners_.values());
}
