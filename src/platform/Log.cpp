#include "platform/Log.h"

#include "text/IsoDate.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <mutex>

namespace Log {

QString path()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
        + QStringLiteral("/Quillet/logs/cloud.log");
}

void write(const QString &message)
{
    static std::mutex mutex;
    const QString line = Text::IsoDate::format(QDateTime::currentDateTimeUtc()) + u' ' + message + u'\n';
    std::scoped_lock lock(mutex);
    const QString file = path();
    QDir().mkpath(file.section(u'/', 0, -2));
    QFile out(file);
    if (out.open(QIODevice::Append | QIODevice::Text))
        out.write(line.toUtf8());
}

} // namespace Log
