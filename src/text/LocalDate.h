#pragma once

// A moment as a student reads it: short month, day, hour with a day-half marker and minute, in
// the order of the user's language (Chinese, Japanese and Korean with their own signs), local time.

#include <QDateTime>
#include <QString>

namespace Text {

enum class WithYear { no, yes };

QString localDateText(const QDateTime &date, WithYear year);

} // namespace Text
