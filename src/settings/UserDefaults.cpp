#include "settings/UserDefaults.h"

#include <QSettings>

namespace UserDefaults {

QString text(const char *key)
{
    return QSettings().value(QString::fromLatin1(key)).toString().trimmed();
}

QString address(const char *key, const QString &fallback)
{
    QString base = text(key);
    if (base.isEmpty())
        base = fallback;
    while (base.endsWith(u'/'))
        base.chop(1);
    return base;
}

} // namespace UserDefaults
