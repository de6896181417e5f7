#include "ui/slides/SlideTexts.h"

#include <QPdfDocument>
#include <QPdfSelection>

namespace SlideTexts {

QStringList read(const QString &pdfPath)
{
    QPdfDocument document;
    if (document.load(pdfPath) != QPdfDocument::Error::None)
        return {};
    QStringList texts;
    texts.reserve(document.pageCount());
    for (int page = 0; page < document.pageCount(); ++page)
        texts.append(document.getAllText(page).text());
    return texts;
}

} // namespace SlideTexts
