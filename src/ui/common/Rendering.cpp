#include "ui/common/Rendering.h"

#include <QDir>
#include <QtGlobal>

namespace Rendering {

void choose()
{
    if (qEnvironmentVariableIsSet("QT_QUICK_BACKEND"))
        return;
    const QStringList renderNodes =
        QDir(QStringLiteral("/dev/dri")).entryList({QStringLiteral("renderD*")}, QDir::System);
    if (renderNodes.isEmpty())
        qputenv("QT_QUICK_BACKEND", "software");
}

} // namespace Rendering
