#include "text/AtomicFile.h"

#include <QSaveFile>

namespace Text::AtomicFile {

bool write(const QString &path, const QByteArray &bytes, QFileDevice::Permissions permissions)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    if (permissions && !file.setPermissions(permissions))
        return false;
    // The explicit flush matters: commit() doesn't notice a failure of the flush it does itself
    // (a full disk), and an unfinished QSaveFile discards its temporary file.
    if (file.write(bytes) != bytes.size() || !file.flush())
        return false;
    return file.commit();
}

} // namespace Text::AtomicFile
