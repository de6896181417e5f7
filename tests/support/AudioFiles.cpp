#include "AudioFiles.h"

#include <QDir>
#include <QProcess>

QString soxFile(const QString &folder, const QString &name, const QStringList &input,
                const QStringList &output, const QStringList &effects)
{
    const QString path = QDir(folder).filePath(name);
    const int status = QProcess::execute(QStringLiteral("sox"), input + output + QStringList{path} + effects);
    return status == 0 ? path : QString();
}
