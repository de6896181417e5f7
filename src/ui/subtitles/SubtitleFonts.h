#pragma once

// The subtitle bar's fonts and stored size, shared by the bar and the settings window: a font id
// is what the pages and the settings record carry, its label what the student reads.

#include <QList>
#include <QString>

namespace SubtitleFonts {

struct Font
{
    QString id;
    QString label;
};

inline constexpr auto fontKey = "subtitle.fontFamily";
inline constexpr auto sizeKey = "subtitle.font";

// In menu order: "system", "songti", "wenkai", "smiley", "kuaile".
const QList<Font> &fonts();
// The stored font id, "system" when unset.
QString storedID();
// The stored text size, 22 when unset or not a number; clamped to 12...48.
double storedSize();
double clampSize(double points);

} // namespace SubtitleFonts
