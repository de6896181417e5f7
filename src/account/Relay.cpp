#include "account/Relay.h"

#include "platform/Keychain.h"

#include <QSettings>

namespace Relay {

QString baseURL()
{
    return QSettings().value(QStringLiteral("relay.url")).toString();
}

bool available()
{
    return !baseURL().isEmpty();
}

QUrl url(const QString &path)
{
    return QUrl(baseURL() + path);
}

QMap<QString, QString> headers()
{
    const auto token = Keychain::get(QString::fromLatin1(sessionAccount));
    if (!token)
        return {};
    return {{QString::fromLatin1(sessionHeader), *token}};
}

} // namespace Relay
