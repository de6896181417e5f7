#include "text/IsoDate.h"

#include "text/Regex.h"


namespace Text::IsoDate {

QString format(const QDateTime &date)
{
    return date.toUTC().toString(QStringLiteral("yyyy-MM-dd'T'HH:mm:ss")) + u'Z';
}

std::optional<QDateTime> parse(const QString &text)
{
    // \z, not $: a trailing line break is not part of the form.
    static const Regex shape(QStringLiteral("^([0-9]{4}-[0-9]{2}-[0-9]{2})T([0-9]{2}:[0-9]{2}:[0-9]{2})Z\\z"));
    const auto match = shape.first(text);
    if (!match)
        return std::nullopt;
    const QDate day = QDate::fromString(match->groups[0], Qt::ISODate);
    const QTime time = QTime::fromString(match->groups[1], QStringLiteral("HH:mm:ss"));
    if (!day.isValid() || !time.isValid())
        return std::nullopt;
    return QDateTime(day, time, Qt::UTC);
}

} // namespace Text::IsoDate
