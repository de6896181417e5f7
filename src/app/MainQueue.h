#pragma once

// The coordinator's one way back to the main thread for callbacks that arrive on other threads
// (the engine's loop and model calls, account and report tasks). bind() wraps a function so that
// calling it from any thread queues the call to the main thread; there it runs only if the queue
// still exists and no newer generation began since the wrap was made. So results of a stopped or
// replaced engine never reach the windows, and nothing runs into a coordinator that is gone.
//
// Construct, bind(), expire() and destroy on the main thread; the wrapped functions may be called
// from any thread, also after the queue is gone (they then do nothing).

#include <QCoreApplication>
#include <QMetaObject>

#include <functional>
#include <memory>

class MainQueue final
{
public:
    MainQueue();
    ~MainQueue();
    MainQueue(const MainQueue &) = delete;
    MainQueue &operator=(const MainQueue &) = delete;
    MainQueue(MainQueue &&) = delete;
    MainQueue &operator=(MainQueue &&) = delete;

    // Calls of everything bound so far are dropped from now on, queued ones included.
    void expire();

    // bind<const QString &>(fn): the arguments of the wrapped call are named, fn takes them.
    template<typename... Args, typename Function>
    std::function<void(Args...)> bind(Function fn) const
    {
        return [weak = std::weak_ptr<Generation>(generation_), born = generation_->value,
                fn = std::move(fn)](Args... args) {
            QCoreApplication *application = QCoreApplication::instance();
            if (!application)
                return;
            // The arguments are copied: the caller's may be gone before the main thread runs.
            QMetaObject::invokeMethod(
                application,
                [weak, born, fn, copies = std::make_tuple(std::decay_t<Args>(args)...)] {
                    const auto generation = weak.lock();
                    if (generation && generation->value == born)
                        std::apply(fn, copies);
                },
                Qt::QueuedConnection);
        };
    }

private:
    struct Generation
    {
        unsigned long long value = 0;  // read and written on the main thread only
    };

    const std::shared_ptr<Generation> generation_ = std::make_shared<Generation>();
};
