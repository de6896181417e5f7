#include "account/Relay.h"

#include "platform/Keychain.h"
#include "settings/UserDefaults.h"

namespace Relay {

QString baseURL()
{
    return UserDefaults::address(UserDefaults::relayURL);
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
