#include "report/CalendarExport.h"

#include "text/AtomicFile.h"

#include <QDesktopServices>
#include <QDir>
#include <QStringList>
#include <QUuid>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace CalendarExport {

namespace {

// Behind the "@" of every UID: only makes the identifier globally unique.
constexpr auto uidDomain = u"quillet.marrowline.com";

void openWithDesktop(const QUrl &file)
{
    QDesktopServices::openUrl(file);
}

Opener &opener()
{
    static Opener current = openWithDesktop;
    return current;
}

QString escape(QString text)
{
    text.replace(u"\\"_s, u"\\\\"_s);
    text.replace(u";"_s, u"\\;"_s);
    text.replace(u","_s, u"\\,"_s);
    text.replace(u"\n"_s, u"\\n"_s);
    return text;
}

struct Clock
{
    int hour = 9;
    int minute = 0;
};

// Parts that aren't numbers are dropped; numbers out of range stay as they are.
Clock clockOf(const QString &time)
{
    QList<int> numbers;
    for (const QString &part : time.split(u':', Qt::SkipEmptyParts)) {
        bool ok = false;
        const int number = part.toInt(&ok, 10);
        if (ok)
            numbers.append(number);
    }
    return {numbers.value(0, 9), numbers.value(1, 0)};
}

QString twoDigits(int number)
{
    return QStringLiteral("%1").arg(number, 2, 10, QChar(u'0'));
}

QStringList timeLines(const ClassEvent &event, const QString &day)
{
    if (!event.time)
        return {u"DTSTART;VALUE=DATE:" + day};
    const Clock clock = clockOf(*event.time);
    const QString minute = twoDigits(clock.minute) + u"00";
    return {u"DTSTART:" + day + u'T' + twoDigits(clock.hour) + minute,
            u"DTEND:" + day + u'T' + twoDigits(std::min(clock.hour + 1, 23)) + minute};
}

QString description(const QString &course, const std::optional<QString> &note)
{
    QStringList parts{course, note.value_or(QString())};
    parts.removeAll(QString());
    return escape(parts.join(u'\n'));
}

} // namespace

QString text(const ClassEvent &event, const QString &course, const QString &uid, const QDateTime &stamp)
{
    const QString day = QString(event.date).remove(u'-');
    QStringList lines{QStringLiteral("BEGIN:VCALENDAR"), QStringLiteral("VERSION:2.0"),
                      QStringLiteral("PRODID:-//Quillet//CN"), QStringLiteral("CALSCALE:GREGORIAN"),
                      QStringLiteral("BEGIN:VEVENT"), u"UID:" + uid + u'@' + uidDomain,
                      u"DTSTAMP:" + stamp.toUTC().toString(QStringLiteral("yyyyMMdd'T'HHmmss'Z'"))};
    lines << timeLines(event, day);
    lines << u"SUMMARY:" + escape(event.title) << u"DESCRIPTION:" + description(course, event.note)
          << QStringLiteral("BEGIN:VALARM") << QStringLiteral("ACTION:DISPLAY")
          << u"DESCRIPTION:" + escape(event.title) << QStringLiteral("TRIGGER:-P1D")
          << QStringLiteral("END:VALARM") << QStringLiteral("END:VEVENT") << QStringLiteral("END:VCALENDAR");
    return lines.join(u"\r\n") + u"\r\n";
}

void add(const ClassEvent &event, const QString &course)
{
    const QString uid = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
    const QString file = QDir::tempPath() + u"/Quillet-" + QUuid::createUuid().toString(QUuid::WithoutBraces).left(8)
                         + u".ics";
    Text::AtomicFile::write(file, text(event, course, uid, QDateTime::currentDateTimeUtc()).toUtf8());
    opener()(QUrl::fromLocalFile(file));
}

void setOpener(Opener replacement)
{
    opener() = replacement ? std::move(replacement) : openWithDesktop;
}

} // namespace CalendarExport
