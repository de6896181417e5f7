#include "ui/slides/SlideFiles.h"

#include <QFileInfo>

namespace SlideFiles {

bool isSlides(const QString &path)
{
    return isPresentation(path) || QFileInfo(path).suffix().compare(u"pdf", Qt::CaseInsensitive) == 0;
}

bool isPresentation(const QString &path)
{
    const QString extension = QFileInfo(path).suffix().toLower();
    return extension == u"ppt" || extension == u"pptx" || extension == u"key" || extension == u"odp";
}

} // namespace SlideFiles
