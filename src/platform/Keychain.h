#pragma once

// The user's API keys and the relay session token, under one service name, told apart by
// account ("claude", "openai", "gemini", "quillet-session"). Callable from any thread.
//
// The store is the desktop's Secret Service; where none answers, a file only the user can read,
// and the log says so once. Tests hand in a store of their own with useStore().

#include "platform/SecretStore.h"

#include <QString>

#include <memory>
#include <optional>

namespace Keychain {

inline constexpr auto service = "com.marrowline.api-keys";

// No value when there is no item, the item is empty or the store fails. Invalid UTF-8 is
// replaced, never refused.
std::optional<QString> get(const QString &account);
// Stores the value without surrounding white space; an empty value deletes the item and
// succeeds. A failed write leaves the item as it was.
bool set(const QString &account, const QString &value);
void remove(const QString &account);

// Replaces the store every later call uses (tests, and the fallback choice at start).
void useStore(std::unique_ptr<SecretStore> store);

} // namespace Keychain
