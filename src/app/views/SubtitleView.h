#pragma once

// The subtitle bar as the coordinator sees it: a second transcript, its font, and its place
// relative to the panel (docked when merged) and above other windows. Main thread only.

#include "app/views/TranscriptSurface.h"

#include <QRect>
#include <QString>

#include <functional>

class SubtitleView
{
public:
    SubtitleView() = default;
    virtual ~SubtitleView() = default;
    SubtitleView(const SubtitleView &) = delete;
    SubtitleView &operator=(const SubtitleView &) = delete;
    SubtitleView(SubtitleView &&) = delete;
    SubtitleView &operator=(SubtitleView &&) = delete;

    virtual TranscriptSurface &transcript() = 0;
    virtual void toggle() = 0;
    virtual void show() = 0;
    virtual bool isVisible() const = 0;
    virtual QString fontID() const = 0;
    virtual void setFontFamily(const QString &fontID) = 0;
    virtual void setTextSize(double points) = 0;
    virtual QRect frame() const = 0;
    virtual void setFrame(const QRect &frame, bool animated) = 0;
    // Above every other window, or an ordinary one.
    virtual void setFloating(bool floating) = 0;

    std::function<void(const QString &fontID)> onFont = [](const QString &) {};
};
