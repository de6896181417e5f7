#pragma once

// What the screenshot tests share: whether a picture shows anything, and keeping it for a look
// when QUILLET_SCREENSHOT_DIR names a folder.

#include <QImage>
#include <QString>

namespace Screenshots {

// How many colours a sample of every third pixel holds: a blank or one-colour window has few.
int colours(const QImage &image);
// Saves `image` as <QUILLET_SCREENSHOT_DIR>/<name>.png when that variable is set.
void keep(const QImage &image, const QString &name);

} // namespace Screenshots
