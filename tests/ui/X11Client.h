#pragma once

// The tests' X display seen as a window manager sees it: finds windows by title and asks them to
// close. Xlib stays inside the source file, away from GoogleTest.

namespace X11Client {

// The viewable window with the title, or 0 (also when the tests do not run on an X display).
unsigned long find(const char *title);
// Sends WM_DELETE_WINDOW, as a close button does.
void requestClose(unsigned long window);

} // namespace X11Client
