#include "FakeProvider.h"

void FakeProvider::enqueue(std::optional<QString> reply)
{
    std::scoped_lock lock(mutex_);
    queue_.push_back(std::move(reply));
}

void FakeProvider::setHandler(Handler handler)
{
    std::scoped_lock lock(mutex_);
    handler_ = std::move(handler);
}

void FakeProvider::hold()
{
    std::scoped_lock lock(mutex_);
    held_ = true;
}

void FakeProvider::release()
{
    {
        std::scoped_lock lock(mutex_);
        held_ = false;
    }
    changed_.notify_all();
}

QList<FakeProvider::Call> FakeProvider::calls() const
{
    std::scoped_lock lock(mutex_);
    return calls_;
}

QList<FakeProvider::Call> FakeProvider::callsContaining(const QString &text) const
{
    QList<Call> found = calls();
    found.removeIf([&](const Call &call) { return !call.prompt().contains(text); });
    return found;
}

bool FakeProvider::waitForCalls(int count, std::chrono::milliseconds timeout) const
{
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, timeout, [&] { return calls_.size() >= count; });
}

std::optional<QString> FakeProvider::chat(const QString &system, const QList<Turn> &turns) const
{
    const Call call{system, turns};
    std::unique_lock lock(mutex_);
    calls_.append(call);
    changed_.notify_all();
    changed_.wait(lock, [&] { return !held_; });
    if (!queue_.empty()) {
        // Swapped out rather than move-constructed: GCC 12 at -O2 reads the moved-from
        // optional as maybe-uninitialised.
        std::optional<QString> reply;
        reply.swap(queue_.front());
        queue_.pop_front();
        return reply;
    }
    if (!handler_)
        return QString();
    const Handler handler = handler_;
    lock.unlock();
    return handler(call);
}
