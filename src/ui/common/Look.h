#pragma once

// The application's two looks on the Fusion style: a light and a dark palette, or the desktop's
// own ("system"). Also the one soft content background every window shares. Main thread only.

#include <QColor>
#include <QFont>
#include <QString>

class QPalette;

namespace Look {

// "light", "dark", or anything else for the palette the desktop gave at start.
void apply(const QString &theme);
// The theme last applied ("" before the first).
QString theme();
bool isDark(const QPalette &palette);
// The opaque content background: a cool off-white, or a deep grey in the dark look. Both looks'
// window colour is this one, so an ordinary window needs nothing more.
QColor softBackground(const QPalette &palette);
// `font` made larger or smaller by `factor`, whether it was sized in points or in pixels.
QFont scaled(QFont font, double factor);
// A quieter text colour for secondary labels and icons.
QColor secondaryText(const QPalette &palette);

} // namespace Look
