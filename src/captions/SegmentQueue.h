#pragma once

// The segments the audio thread has cut, in order, on their way to the one uploader. Unbounded:
// push() never waits for the uploader, and holds the lock only to append.
//
// Shared by the audio thread (push), the uploader (next) and the source (finish); owned jointly
// through shared_ptr, so a late buffer or a late upload never outlives it.

#include "captions/Segmenter.h"

#include <QDateTime>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>

class SegmentQueue final
{
public:
    struct Segment
    {
        Segmenter::Cut cut;
        QDateTime time;   // when it was cut
    };

    // Ignored once finished.
    void push(Segment segment);
    // No more segments will come; next() gives what is queued and then none.
    void finish();
    // Waits for the next segment; none once finished and empty.
    std::optional<Segment> next();

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Segment> segments_;
    bool finished_ = false;
};
