#include "text/IsoDate.h"

#include "text/Regex.h"

#include <QTimeZone>

namespace Text::IsoDate {

QString format(const QDateTime &date)
{
    return date.toUTC().toString(QStringLiteral("yyyy-MM-dd'T'HH:mm:ss")) + u'Z';
}

std::optional<QDateTime> parse(const QString &text)
{
    static const Regex shape(QStringLiteral(
        "^([0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2})(Z|[+-][0-9]{2}:[0-9]{2})$"));
    const auto match = shape.first(text);
    if (!match)
        return std::nullopt;
    const QString &zone = match->groups[1];
    const QDate day = QDate::fromString(match->groups[0].left(10), Qt::ISODate);
    const QTime time = QTime::fromString(match->groups[0].mid(11), QStringLiteral("HH:mm:ss"));
    if (!day.isValid() || !time.isValid())
        return std::nullopt;
    int offset = 0;
    if (zone != u"Z") {
        const int sign = zone.startsWith(u'-') ? -1 : 1;
        offset = sign * (zone.mid(1, 2).toInt() * 3600 + zone.mid(4, 2).toInt() * 60);
    }
    return QDateTime(day, time, QTimeZone(offset)).toUTC();
}

} // namespace Text::IsoDate
