#include "Files.h"

#include <QFile>

#include <gtest/gtest.h>

#include <csignal>

#include <sys/resource.h>

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size()) << path.toStdString();
    return path;
}

FullDisk::FullDisk(qint64 bytes)
{
    rlimit limit{};
    EXPECT_EQ(::getrlimit(RLIMIT_FSIZE, &limit), 0);
    usual_ = limit.rlim_cur;
    usualHandler_ = std::signal(SIGXFSZ, SIG_IGN);
    limit.rlim_cur = rlim_t(bytes);
    EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
}

FullDisk::~FullDisk()
{
    rlimit limit{};
    ::getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = usual_;
    ::setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, usualHandler_);
}
