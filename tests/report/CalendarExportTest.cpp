#include "Files.h"
#include "QtPrinters.h"
#include "report/CalendarExport.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

const QDateTime stamp(QDate(2026, 11, 18), QTime(12, 21, 19), Qt::UTC);

QString fileOf(const ClassEvent &event, const QString &course = {})
{
    return CalendarExport::text(event, course, u"UID"_s, stamp);
}

} // namespace

TEST(CalendarExport, WritesOneTimedAndOneAllDayEventExactly)
{
    const ClassEvent timed{u"Exam; ch. 1, 2"_s, u"2026-12-01"_s, u"14:30"_s, u"带计算器"_s};
    EXPECT_EQ(fileOf(timed, u"微积分"_s),
              u"BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Quillet//CN\r\nCALSCALE:GREGORIAN\r\nBEGIN:VEVENT\r\n"
              u"UID:UID@quillet.marrowline.com\r\nDTSTAMP:20261118T122119Z\r\nDTSTART:20261201T143000\r\n"
              u"DTEND:20261201T153000\r\nSUMMARY:Exam\\; ch. 1\\, 2\r\nDESCRIPTION:微积分\\n带计算器\r\n"
              u"BEGIN:VALARM\r\nACTION:DISPLAY\r\nDESCRIPTION:Exam\\; ch. 1\\, 2\r\nTRIGGER:-P1D\r\nEND:VALARM\r\n"
              u"END:VEVENT\r\nEND:VCALENDAR\r\n"_s);

    const ClassEvent allDay{u"作业\\截止"_s, u"2026-03-09"_s, std::nullopt, std::nullopt};
    EXPECT_EQ(fileOf(allDay),
              u"BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Quillet//CN\r\nCALSCALE:GREGORIAN\r\nBEGIN:VEVENT\r\n"
              u"UID:UID@quillet.marrowline.com\r\nDTSTAMP:20261118T122119Z\r\nDTSTART;VALUE=DATE:20260309\r\n"
              u"SUMMARY:作业\\\\截止\r\nDESCRIPTION:\r\nBEGIN:VALARM\r\nACTION:DISPLAY\r\nDESCRIPTION:作业\\\\截止\r\n"
              u"TRIGGER:-P1D\r\nEND:VALARM\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n"_s);
}

TEST(CalendarExport, TimesFollowTheHourAndMinuteRules)
{
    const struct
    {
        QString time;
        QString start;
        QString end;
    } cases[] = {
        {u"14:30"_s, u"DTSTART:20261201T143000"_s, u"DTEND:20261201T153000"_s},
        {u"23:15"_s, u"DTSTART:20261201T231500"_s, u"DTEND:20261201T231500"_s},
        {u"9"_s, u"DTSTART:20261201T090000"_s, u"DTEND:20261201T100000"_s},
        {u"after lunch"_s, u"DTSTART:20261201T090000"_s, u"DTEND:20261201T100000"_s},
        {u"::7:x:5"_s, u"DTSTART:20261201T070500"_s, u"DTEND:20261201T080500"_s},
        {u"25:99"_s, u"DTSTART:20261201T259900"_s, u"DTEND:20261201T239900"_s},
    };
    for (const auto &[time, start, end] : cases) {
        const QStringList lines = fileOf({u"T"_s, u"2026-12-01"_s, time, std::nullopt}).split(u"\r\n"_s);
        EXPECT_EQ(lines[7], start) << time;
        EXPECT_EQ(lines[8], end) << time;
    }
}

TEST(CalendarExport, AddWritesAnIcsFileInTheTemporaryFolderAndOpensIt)
{
    QList<QUrl> opened;
    CalendarExport::setOpener([&](const QUrl &file) { opened << file; });
    CalendarExport::add({u"期中考试"_s, u"2026-12-01"_s, std::nullopt, std::nullopt}, u"物理"_s);
    CalendarExport::setOpener({});
    ASSERT_EQ(opened.size(), 1);
    const QString path = opened.first().toLocalFile();
    EXPECT_TRUE(QFileInfo(path).fileName().contains(QRegularExpression(u"^Quillet-[0-9a-f]{8}\\.ics$"_s))) << path;
    EXPECT_EQ(QFileInfo(path).path(), QDir::tempPath());
    const QString text = QString::fromUtf8(readFile(path));
    EXPECT_TRUE(text.contains(u"\r\nSUMMARY:期中考试\r\nDESCRIPTION:物理\r\n"_s)) << text;
    EXPECT_TRUE(text.contains(QRegularExpression(u"UID:[0-9A-F-]{36}@"_s))) << text;
    QFile::remove(path);
}
