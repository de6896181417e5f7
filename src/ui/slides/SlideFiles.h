#pragma once

// Which files belong in the slide window: PDFs, and presentations that are converted to PDF first.

#include <QString>

namespace SlideFiles {

// pdf, ppt, pptx, key or odp, in any case.
bool isSlides(const QString &path);
// A presentation a chat can't take: ppt, pptx, key or odp.
bool isPresentation(const QString &path);

} // namespace SlideFiles
