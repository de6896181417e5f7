#pragma once

// Sound files made for a test with sox in a temporary folder.

#include <QString>
#include <QStringList>

// Runs `sox <input> <output options> <folder>/<name> <effects>`; the file's path, or empty when
// sox failed.
QString soxFile(const QString &folder, const QString &name, const QStringList &input,
                const QStringList &output, const QStringList &effects = {});
