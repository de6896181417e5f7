#include "X11Client.h"

#include <X11/Xlib.h>

#include <cstring>

namespace {

// Walks the whole tree: under Xvfb there is no window manager to keep a client list.
Window findIn(Display *display, Window root, const char *title)
{
    Window parent = 0;
    Window *children = nullptr;
    unsigned int count = 0;
    if (!XQueryTree(display, root, &root, &parent, &children, &count))
        return 0;
    Window found = 0;
    for (unsigned int i = 0; i < count && !found; ++i) {
        char *name = nullptr;
        XWindowAttributes attributes;
        if (XFetchName(display, children[i], &name) && name && std::strcmp(name, title) == 0
            && XGetWindowAttributes(display, children[i], &attributes) && attributes.map_state == IsViewable)
            found = children[i];
        if (name)
            XFree(name);
        if (!found)
            found = findIn(display, children[i], title);
    }
    if (children)
        XFree(children);
    return found;
}

} // namespace

X11Client::X11Client()
    : display_(XOpenDisplay(nullptr))
{
}

X11Client::~X11Client()
{
    if (display_)
        XCloseDisplay(static_cast<Display *>(display_));
}

unsigned long X11Client::find(const char *title) const
{
    auto *display = static_cast<Display *>(display_);
    return display ? findIn(display, DefaultRootWindow(display), title) : 0;
}

bool X11Client::hasWindow(const char *title) const
{
    return find(title) != 0;
}

bool X11Client::requestClose(const char *title) const
{
    const Window window = find(title);
    if (!window)
        return false;
    auto *display = static_cast<Display *>(display_);
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = XInternAtom(display, "WM_PROTOCOLS", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = long(XInternAtom(display, "WM_DELETE_WINDOW", False));
    event.xclient.data.l[1] = CurrentTime;
    XSendEvent(display, window, False, NoEventMask, &event);
    XFlush(display);
    return true;
}
