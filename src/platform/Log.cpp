#include "platform/Log.h"

#include "text/IsoDate.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <mutex>

using namespace Qt::StringLiterals;

namespace Log {

QString path()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
        + QStringLiteral("/Quillet/logs/cloud.log");
}

void write(const QString &message)
{
    static std::mutex mutex;
    // Servers answer with line breaks of their own: each event stays on one line.
    QString oneLine = message;
    oneLine.replace(u"\r\n"_s, u"\u23CE"_s).replace(u'\n', u'\u23CE').replace(u'\r', u'\u23CE');
    const QString line = Text::IsoDate::format(QDateTime::currentDateTimeUtc()) + u' ' + oneLine + u'\n';
    std::scoped_lock lock(mutex);
    const QString file = path();
    QDir().mkpath(file.section(u'/', 0, -2));
    QFile out(file);
    if (!out.open(QIODevice::Append))
        return;
    // The log holds what was said in class: only its owner may read it.
    out.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    out.write(line.toUtf8());
}

} // namespace Log
