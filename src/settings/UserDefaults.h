#pragma once

// Every user default key the core reads, in one place. The settings record itself has a file of
// its own (Config::path()); these are the small addresses and switches a user or a test sets.

#include <QString>
#include <QVariant>

namespace UserDefaults {

// Base address of the relay; unset means no relay, so AI runs on the user's own keys.
inline constexpr auto relayURL = "relay.url";
// Replacements for the vendors' addresses (an OpenAI-compatible or a local test server).
inline constexpr auto claudeURL = "ai.claude.url";
inline constexpr auto openaiURL = "ai.openai.url";
inline constexpr auto geminiURL = "ai.gemini.url";
inline constexpr auto speechURL = "speech.url";
// The LibreTranslate-compatible server of on-device translation.
inline constexpr auto translateURL = "translate.url";
// A WAV file that stands in for the microphone.
inline constexpr auto micFile = "mic.file";
// The id of the sound input to listen to (a microphone, or the monitor of an output to caption
// what the computer plays); unset, or a device not present, means the default input.
inline constexpr auto micDevice = "mic.device";
// Qt Multimedia offers no monitor of an output: the input opens a source of the sound server that
// repeats the monitor, named after the output with this ending; the settings don't list it again.
inline constexpr auto monitorCopySuffix = ".quillet-system-sound";
// The panel and the bar float above other windows even when the application is in the background.
inline constexpr auto windowsPinned = "windows.pinned";
// What the panel shows: "both", or the transcript or the feed alone.
inline constexpr auto panelShow = "panel.show";
// The signed-in account's e-mail address.
inline constexpr auto accountEmail = "account.email";
// Followed by a lower-cased e-mail address: the index of that account's avatar cat.
inline constexpr auto avatarCatPrefix = "avatar.cat.";

// The stored text of a key, trimmed; empty when unset.
QString text(const char *key);
// The stored value of a key, or the fallback when unset.
QVariant value(const char *key, const QVariant &fallback);
void setValue(const char *key, const QVariant &value);
// A server address from a key: trimmed, without trailing slashes, fallback when unset.
QString address(const char *key, const QString &fallback = {});

} // namespace UserDefaults
