#pragma once

// How the web views are drawn. Without a GPU, Qt's GL path runs through a software emulation of
// OpenGL, which costs about half again what Qt's own software renderer does; so on a machine
// without a GPU render node the software renderer is chosen. A choice in the environment wins.
// Call before the application object is made.

namespace Rendering {

void choose();

} // namespace Rendering
