#pragma once

// The relay service that carries the built-in AI, cloud speech and the report mail for a
// signed-in user. Its base address is the user default "relay.url", empty unless set; without
// one the relay is not available and everything runs on the user's own keys.
//
// Every call reads the current settings and keychain, so a sign-in or a changed address counts
// from the next request on. Callable from any thread.

#include <QMap>
#include <QString>
#include <QUrl>

namespace Relay {

// The header that carries the session token, and the keychain account that stores it.
inline constexpr auto sessionHeader = "x-quillet-session";
inline constexpr auto sessionAccount = "quillet-session";

// No trailing slash.
QString baseURL();
bool available();
// baseURL() + path; path starts with "/".
QUrl url(const QString &path);
// The session header with the stored token, or empty when there is no token.
QMap<QString, QString> headers();

} // namespace Relay
