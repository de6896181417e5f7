#include "text/LocalDate.h"

#include <QLocale>

namespace Text {

QString localDateText(const QDateTime &date, WithYear year)
{
    const QLocale locale;
    const bool withYear = year == WithYear::yes;
    QString pattern = withYear ? QStringLiteral("MMM d, yyyy, h:mm AP") : QStringLiteral("MMM d, h:mm AP");
    if (locale.language() == QLocale::Chinese || locale.language() == QLocale::Japanese)
        pattern = withYear ? QStringLiteral("yyyy年M月d日 AP h:mm") : QStringLiteral("M月d日 AP h:mm");
    else if (locale.language() == QLocale::Korean)
        pattern = withYear ? QStringLiteral("yyyy년 M월 d일 AP h:mm") : QStringLiteral("M월 d일 AP h:mm");
    return locale.toString(date.toLocalTime(), pattern);
}

} // namespace Text
