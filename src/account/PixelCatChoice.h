#pragma once

// Which cat of the avatar catalogue an account has: an index into the 26 drawings, stored per
// e-mail address so the account service can carry it from device to device, and otherwise
// derived from the address, so every address has a stable first cat whatever its letter case.
// The drawings themselves live with the windows; this is the part the account client needs.
// Callable from any thread.

#include <QString>

#include <optional>

namespace PixelCatChoice {

inline constexpr int catalogueSize = 26;

// 0 without an address; a stored index when it is in range; else a hash of the lower-cased
// address's Unicode scalars.
int index(const std::optional<QString> &email);
// Stored as given: index() ignores what is out of range.
void choose(int index, const QString &email);

} // namespace PixelCatChoice
