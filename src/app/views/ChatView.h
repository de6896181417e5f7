#pragma once

// The chat window as the coordinator sees it: the same feed as the panel, its name, and whether
// it floats with the subtitle bar. Main thread only.

#include "app/views/FeedSurface.h"

#include <functional>

class ChatView : public FeedSurface
{
public:
    virtual void setName(const QString &name) = 0;
    virtual void toggle() = 0;
    virtual void setFloating(bool floating) = 0;

    std::function<void(const QString &text, const QList<Attachment> &attachments)> onSend =
        [](const QString &, const QList<Attachment> &) {};
    std::function<void(const QString &id)> onAddEvent = [](const QString &) {};
    std::function<void(const QString &path)> onSlidesFile = [](const QString &) {};
};
