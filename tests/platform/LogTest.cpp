#include "platform/Log.h"

#include "Files.h"

#include <QFile>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(Log, EachEventIsOneLineInAFileOnlyItsOwnerReads)
{
    QFile::remove(Log::path());
    Log::write(u"HTTP 500: <b>busy</b>\r\nretry\nlater\r"_s);
    Log::write(u"第二件事"_s);
    const QList<QByteArray> lines = readFile(Log::path()).split('\n');
    ASSERT_EQ(lines.size(), 3);
    EXPECT_TRUE(lines[0].endsWith(u" HTTP 500: <b>busy</b>⏎retry⏎later⏎"_s.toUtf8())) << lines[0].constData();
    EXPECT_TRUE(lines[1].endsWith(u" 第二件事"_s.toUtf8()));
    EXPECT_EQ(QFile::permissions(Log::path()) & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
}
