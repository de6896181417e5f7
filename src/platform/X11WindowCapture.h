#pragma once

// Other applications' windows on an X display (and the XWayland windows of a Wayland session)
// through XCB. At open the server is asked to keep every top-level window's contents off screen
// (Composite's automatic redirection, which lasts as long as this connection), so a window is
// captured by itself even where another covers it. Without a window manager the windows are the
// children of the root; with one, the client windows inside its frames. A window's application
// is its WM_CLASS class (else instance) name, else the name of the process behind _NET_WM_PID.
//
// XCB reports errors per request and a lost display as a broken connection; nothing here ends
// the process. One thread at a time (the engine's).

#include "platform/WindowCapture.h"

#include <QHash>

#include <memory>

struct xcb_connection_t;

class X11WindowCapture final : public WindowCapture
{
public:
    // `display` as in DISPLAY; empty for the DISPLAY of the environment. The problem is worded for
    // the user.
    static Opened open(const QString &display = {});
    ~X11WindowCapture() override;
    X11WindowCapture(const X11WindowCapture &) = delete;
    X11WindowCapture &operator=(const X11WindowCapture &) = delete;
    X11WindowCapture(X11WindowCapture &&) = delete;
    X11WindowCapture &operator=(X11WindowCapture &&) = delete;

    QList<Window> windows() override;
    std::optional<QImage> capture(const Window &window, QSize size) override;

private:
    struct Disconnect { void operator()(xcb_connection_t *connection) const; };

    X11WindowCapture(std::unique_ptr<xcb_connection_t, Disconnect> connection, quint32 root, quint32 processAtom);
    void collect(quint32 window, quint32 topLevel, int depth, QList<Window> &windows);
    std::optional<QString> applicationOf(quint32 window);
    std::optional<QImage> contents(quint32 window, quint32 topLevel, QSize size);

    const std::unique_ptr<xcb_connection_t, Disconnect> connection_;
    const quint32 root_;
    const quint32 processAtom_;   // _NET_WM_PID
    QHash<quint32, quint32> topLevels_;   // client window → the child of the root that holds it
};
