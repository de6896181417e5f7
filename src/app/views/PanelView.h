#pragma once

// The main panel as the coordinator sees it: its transcript and feed, the status and recording
// clock, the language row and switches, and the window relations it takes part in. The callbacks
// are the panel's buttons and choices; each starts as a function that does nothing. Main thread
// only.

#include "app/views/FeedSurface.h"
#include "app/views/TranscriptSurface.h"
#include "engine/Switches.h"

#include <QRect>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

class PanelView : public FeedSurface
{
public:
    virtual TranscriptSurface &transcript() = 0;

    virtual void setTitle(const QString &title) = 0;
    virtual void setStatus(const QString &text) = 0;
    // The recording clock ("00:00"); empty when not recording.
    virtual void setRecording(bool recording, const QString &time) = 0;
    virtual void setLanguages(const QString &lecture, const QString &answer, const QStringList &extras) = 0;
    virtual void setSwitches(const Switches &switches) = 0;
    virtual void setUnread(bool unread) = 0;
    // The signed-in address, or none.
    virtual void setAccount(const std::optional<QString> &email) = 0;
    virtual void setPinned(bool pinned) = 0;
    virtual void setMerged(bool merged) = 0;
    virtual void setLayout(const QString &layout) = 0;
    virtual void applyShow(const QString &show) = 0;
    virtual void placeDivider() = 0;
    virtual void setBackground(const QString &background) = 0;
    virtual void setTranscriptFont(const QString &fontID, double size) = 0;

    // In front and focused; hidden (while the sign-in window stands instead).
    virtual void bringToFront() = 0;
    virtual void orderOut() = 0;
    virtual bool isMinimized() const = 0;
    // The window's frame in screen points, top-left origin.
    virtual QRect frame() const = 0;

    std::function<void(const QString &text, const QList<Attachment> &attachments)> onSend =
        [](const QString &, const QList<Attachment> &) {};
    std::function<void()> onToggleAI = [] {};
    std::function<void()> onSettings = [] {};
    std::function<void()> onToggleSubtitles = [] {};
    std::function<void()> onToggleMerge = [] {};
    std::function<void()> onTogglePin = [] {};
    std::function<void()> onRecord = [] {};
    std::function<void()> onLibrary = [] {};
    std::function<void()> onAccount = [] {};
    std::function<void(const QString &id)> onAddEvent = [](const QString &) {};
    std::function<void()> onSlides = [] {};
    std::function<void(const QString &path)> onSlidesFile = [](const QString &) {};
    std::function<void()> onClose = [] {};
    std::function<void(const QString &lecture, const QString &answer)> onLanguages = [](const QString &, const QString &) {};
    std::function<void(const QStringList &extras)> onExtras = [](const QStringList &) {};
    std::function<void(const Switches &switches)> onSwitches = [](const Switches &) {};
    // The window is about to be minimized, or its frame changed.
    std::function<void()> onMinimize = [] {};
    std::function<void()> onFrameChanged = [] {};
};
