#pragma once

// A test's own connection to the X display: finds top-level windows by title and asks them to
// close the way a window manager does. Xlib stays inside the source file, away from GoogleTest.

class X11Client final
{
public:
    X11Client();
    ~X11Client();
    X11Client(const X11Client &) = delete;
    X11Client &operator=(const X11Client &) = delete;
    X11Client(X11Client &&) = delete;
    X11Client &operator=(X11Client &&) = delete;

    bool connected() const { return display_ != nullptr; }
    bool hasWindow(const char *title) const;
    // Sends WM_DELETE_WINDOW, as a close button does; false when there is no such window.
    bool requestClose(const char *title) const;

private:
    unsigned long find(const char *title) const;

    void *display_;
};
