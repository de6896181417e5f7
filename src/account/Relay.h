#pragma once

// The relay service that carries the built-in AI, cloud speech and the report mail for a
// signed-in user. Its base address is the user default "relay.url", empty unless set; without
// one the relay is not available and everything runs on the user's own keys.

#include <QString>

namespace Relay {

QString baseURL();
bool available();

} // namespace Relay
