#pragma once

// Dates in files: ISO 8601 text in UTC, whole seconds, with a Z ("2026-11-23T09:31:45Z").

#include <QDateTime>
#include <QString>

#include <optional>

namespace Text::IsoDate {

QString format(const QDateTime &date);
// Accepts whole seconds with Z or a numeric offset; anything else (fractions, no zone, a
// date alone) is no date.
std::optional<QDateTime> parse(const QString &text);

} // namespace Text::IsoDate
