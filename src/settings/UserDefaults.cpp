#include "settings/UserDefaults.h"

#include <QSettings>

namespace UserDefaults {

QString text(const char *key)
{
    return QSettings().value(QString::fromLatin1(key)).toString().trimmed();
}

QVariant value(const char *key, const QVariant &fallback)
{
    return QSettings().value(QString::fromLatin1(key), fallback);
}

void setValue(const char *key, const QVariant &value)
{
    QSettings().setValue(QString::fromLatin1(key), value);
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
