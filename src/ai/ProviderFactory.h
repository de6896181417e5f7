#pragma once

// Picks the chat client the settings ask for: through the relay when the built-in AI is in use,
// otherwise directly with the user's own key from the keychain. makeProvider gives the main
// client (chat, analysis, reports), makeFastProvider the cheap one for frequent small jobs; the
// fast model depends only on the vendor.
//
// Both throw AIError::missingKey when the user's own key is chosen and none is stored; they never
// throw on the relay path. Callable from any thread (they read the keychain). The client is
// shared: callers on several threads may hold it and call chat() at once.

#include "ai/AIProvider.h"
#include "settings/Config.h"

#include <memory>

std::shared_ptr<const AIProvider> makeProvider(const Config &config);
std::shared_ptr<const AIProvider> makeFastProvider(const Config &config);
