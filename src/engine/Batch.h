#pragma once

// Sentences collected for one kind of model call, so that a teacher who keeps talking gives one
// call for a burst of sentences instead of one per line. A plain value owned by the engine's
// loop; the caller passes the current time of its clock.

#include "text/Clock.h"

#include <QStringList>

struct Batch
{
    using Duration = Text::Clock::Duration;

    QStringList items;               // oldest first
    Duration first = Duration::min();  // when the first present item came; the distant past before
    Duration last = Duration::min();   // when the newest item came; the distant past before

    void add(const QString &text, Duration now);
    // At least settle since the newest item, or maxWait since the first; never while empty.
    bool ready(Duration settle, Duration maxWait, Duration now) const;
    // The items, leaving the batch empty.
    QStringList take();
};
