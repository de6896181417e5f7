#pragma once

// Dates in files: ISO 8601 text in UTC, whole seconds, with a Z ("2026-11-23T09:31:45Z").

#include <QDateTime>
#include <QString>

#include <optional>

namespace Text::IsoDate {

QString format(const QDateTime &date);
// Accepts exactly the form format() writes; anything else (an offset, fractions, no zone, a
// date alone, a trailing line break) is no date.
std::optional<QDateTime> parse(const QString &text);

} // namespace Text::IsoDate
