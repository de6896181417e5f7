#include "engine/Batch.h"

#include <utility>

void Batch::add(const QString &text, Duration now)
{
    if (items.isEmpty())
        first = now;
    items << text;
    last = now;
}

bool Batch::ready(Duration settle, Duration maxWait, Duration now) const
{
    if (items.isEmpty())
        return false;
    return now - last >= settle || now - first >= maxWait;
}

QStringList Batch::take()
{
    return std::exchange(items, {});
}
