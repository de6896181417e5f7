#pragma once

// Other applications' windows: the list of them, and a picture of one window by itself, also
// when another window covers it. The window source reads captions from these pictures.
//
// One thread at a time (the engine's); whoever opened the capture owns it. Nothing fails loudly:
// a window that closed, or a display that went away, gives an empty list or no picture.

#include <QImage>
#include <QList>
#include <QSize>
#include <QString>

#include <memory>
#include <optional>
#include <variant>

class WindowCapture
{
public:
    struct Window
    {
        quint32 id = 0;
        QString application;   // the name of the program that shows the window
        QSize size;            // of the window's contents, in pixels
    };

    // A capture, or why there is none, worded for the user.
    using Opened = std::variant<std::unique_ptr<WindowCapture>, QString>;

    WindowCapture() = default;
    virtual ~WindowCapture();
    WindowCapture(const WindowCapture &) = delete;
    WindowCapture &operator=(const WindowCapture &) = delete;
    WindowCapture(WindowCapture &&) = delete;
    WindowCapture &operator=(WindowCapture &&) = delete;

    // Every window of every application, hidden ones too, front to back.
    virtual QList<Window> windows() = 0;
    // The window's contents scaled to `size`; none when it can't be captured.
    virtual std::optional<QImage> capture(const Window &window, QSize size) = 0;
};
