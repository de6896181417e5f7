#pragma once

// The plain text of every page of a PDF, in page order (empty for a page without text).
// Blocking file work: call it on a worker thread. QtPdf serialises its own library calls, so
// it may run while a window shows the same file.

#include <QStringList>

namespace SlideTexts {

QStringList read(const QString &pdfPath);

} // namespace SlideTexts
