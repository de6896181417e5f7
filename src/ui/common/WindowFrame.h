#pragma once

// Saves and restores a window's frame under a name, and keeps a restored frame on a screen that
// exists now: a window dragged off screen, or left on a monitor since unplugged, comes back where
// the student can reach it. Main thread only.

#include <QRect>
#include <QString>

class QWidget;

namespace WindowFrame {

// Restores the frame saved under `name`; false (and nothing changed) when none is saved.
bool restore(QWidget *window, const QString &name);
void save(const QWidget *window, const QString &name);
// `frame` moved (not resized, unless larger than the screen) so that it lies on the screen it
// overlaps most, or on the primary screen when it overlaps none.
QRect onScreen(const QRect &frame);
// Above every other window or an ordinary one; a shown window stays shown where it was.
void setFloating(QWidget *window, bool floating);

} // namespace WindowFrame
