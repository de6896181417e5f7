#include "CompositorSelection.h"

#include <QGuiApplication>

#include <X11/Xlib.h>

namespace {

Display *display()
{
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->display() : nullptr;
}

Atom selection(Display *x11)
{
    return XInternAtom(x11, "_NET_WM_CM_S0", False);
}

} // namespace

CompositorSelection::CompositorSelection()
{
    Display *x11 = display();
    if (!x11)
        return;
    window_ = XCreateSimpleWindow(x11, DefaultRootWindow(x11), 0, 0, 1, 1, 0, 0, 0);
    XSetSelectionOwner(x11, selection(x11), window_, CurrentTime);
    XSync(x11, False);
}

CompositorSelection::~CompositorSelection()
{
    if (Display *x11 = display(); x11 && window_) {
        XDestroyWindow(x11, window_);  // the selection goes with its owner
        XSync(x11, False);
    }
}
