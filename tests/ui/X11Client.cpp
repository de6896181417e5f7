#include "X11Client.h"

#include <QGuiApplication>

#include <X11/Xlib.h>

#include <cstring>

namespace {

// Qt's own connection to the display the tests run on.
Display *display()
{
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->display() : nullptr;
}

// Walks the whole tree: without a window manager there is no client list to ask, and with one the
// window sits inside its frame.
Window findIn(Display *display, Window parent, const char *title)
{
    Window root = 0;
    Window *children = nullptr;
    unsigned int count = 0;
    if (!XQueryTree(display, parent, &root, &parent, &children, &count))
        return 0;
    Window found = 0;
    for (unsigned int i = 0; i < count && !found; ++i) {
        char *name = nullptr;
        XWindowAttributes attributes;
        if (XFetchName(display, children[i], &name) && std::strcmp(name, title) == 0
            && XGetWindowAttributes(display, children[i], &attributes) && attributes.map_state == IsViewable)
            found = children[i];
        XFree(name);
        if (!found)
            found = findIn(display, children[i], title);
    }
    XFree(children);
    return found;
}

} // namespace

unsigned long X11Client::find(const char *title)
{
    Display *x11 = display();
    return x11 ? findIn(x11, DefaultRootWindow(x11), title) : 0;
}

void X11Client::requestClose(unsigned long window)
{
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = XInternAtom(display(), "WM_PROTOCOLS", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = long(XInternAtom(display(), "WM_DELETE_WINDOW", False));
    event.xclient.data.l[1] = CurrentTime;
    XSendEvent(display(), window, False, NoEventMask, &event);
    XFlush(display());
}
