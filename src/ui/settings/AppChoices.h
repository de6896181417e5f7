#pragma once

// The names offered for the application whose caption window is read: what runs now, then what
// is installed, after the current choice. The window source finds an application by its window
// class name, so these are window class names and desktop entry names. Main thread only.

#include <QStringList>

namespace AppChoices {

// `current`, then the window class names of the windows on the X display, then the names of the
// desktop entries in the user's and the system's application folders (without ".desktop"), each
// list sorted by lower-cased name. Empty names drop out; of names equal in lower case the first
// stays. A display or folder that can't be read gives no names.
QStringList choices(const QString &current);

} // namespace AppChoices
