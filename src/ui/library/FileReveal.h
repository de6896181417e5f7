#pragma once

// Shows a file or folder selected in the desktop's file manager (org.freedesktop.FileManager1 over
// the session bus); where no file manager answers, opens the folder that holds it instead. Never
// waits for the answer. Main thread only.

#include <QString>

namespace FileReveal {

void reveal(const QString &path);

} // namespace FileReveal
