#pragma once

// Whole-file writes that never leave a half-written file behind: the bytes go to a temporary file
// beside the target, which replaces it only when every byte is on disk. On any failure (a full
// disk, a missing folder, no permission) the old file stays as it was. Callable from any thread.

#include <QByteArray>
#include <QFileDevice>
#include <QString>

namespace Text::AtomicFile {

// True when the file now holds exactly `bytes`. The folder must exist. With `permissions` set,
// the temporary file gets them before a byte is written (for secrets).
bool write(const QString &path, const QByteArray &bytes,
           QFileDevice::Permissions permissions = QFileDevice::Permissions());

} // namespace Text::AtomicFile
