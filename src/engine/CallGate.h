#pragma once

// Lets an engine's callbacks through until it is stopped. close() waits for the calls under way
// and lets no new one start, so once it returns nothing of the engine reaches its owner any more,
// however late a model call answers. A callback passed through the gate must not wait for the
// thread that closes it (it should only hand its arguments on).

#include <functional>
#include <memory>
#include <mutex>
#include <shared_mutex>

class CallGate final
{
public:
    void close()
    {
        std::unique_lock lock(mutex_);
        closed_ = true;
    }

    // fn wrapped so that it runs only while the gate is open; the gate lives as long as the wrapper.
    template<typename... Args>
    static std::function<void(Args...)> guard(std::shared_ptr<CallGate> gate, std::function<void(Args...)> fn)
    {
        return [gate = std::move(gate), fn = std::move(fn)](Args... args) {
            // Shared, so callbacks of the loop and of model tasks don't wait for each other.
            std::shared_lock lock(gate->mutex_);
            if (!gate->closed_)
                fn(args...);
        };
    }

private:
    std::shared_mutex mutex_;
    bool closed_ = false;
};
