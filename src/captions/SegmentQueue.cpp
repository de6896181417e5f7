#include "captions/SegmentQueue.h"

void SegmentQueue::push(Segment segment)
{
    {
        std::scoped_lock lock(mutex_);
        if (finished_)
            return;
        segments_.push_back(std::move(segment));
    }
    changed_.notify_one();
}

void SegmentQueue::finish()
{
    {
        std::scoped_lock lock(mutex_);
        finished_ = true;
    }
    changed_.notify_all();
}

std::optional<SegmentQueue::Segment> SegmentQueue::next()
{
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return finished_ || !segments_.empty(); });
    if (segments_.empty())
        return std::nullopt;
    Segment segment = std::move(segments_.front());
    segments_.pop_front();
    return segment;
}
