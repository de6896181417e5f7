#include "account/Relay.h"

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

} // namespace Relay
