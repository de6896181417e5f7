#include "platform/Log.h"

#include <QFile>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(Log, EachEventIsOneLineInAFileOnlyItsOwnerReads)
{
    QFile::remove(Log::path());
    Log::write(u"HTTP 500: <b>busy</b>\r\nretry\nlater\r"_s);
    Log::write(u"第二件事"_s);
    QFile log(Log::path());
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    const QList<QByteArray> lines = log.readAll().split('\n');
    ASSERT_EQ(lines.size(), 3);
    EXPECT_TRUE(lines[0].endsWith(u" HTTP 500: <b>busy</b>⏎retry⏎later⏎"_s.toUtf8())) << lines[0].constData();
    EXPECT_TRUE(lines[1].endsWith(u" 第二件事"_s.toUtf8()));
    EXPECT_EQ(log.permissions() & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
}
