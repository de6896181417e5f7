#pragma once

// Whole files read and written in one call, and a disk that takes no more bytes, for tests.

#include <QByteArray>
#include <QString>

// The file's bytes; empty when it can't be read.
QByteArray readFile(const QString &path);
// Writes the bytes over the file and gives its path; a failure fails the test.
QString writeFile(const QString &path, const QByteArray &bytes);

// While it lives, no file of this process may grow past `bytes`, as on a full disk: the write that
// would is refused (SIGXFSZ is ignored) rather than killing the test.
class FullDisk final
{
public:
    explicit FullDisk(qint64 bytes);
    ~FullDisk();
    FullDisk(const FullDisk &) = delete;
    FullDisk &operator=(const FullDisk &) = delete;
    FullDisk(FullDisk &&) = delete;
    FullDisk &operator=(FullDisk &&) = delete;

private:
    unsigned long usual_ = 0;
    void (*usualHandler_)(int) = nullptr;
};
