#pragma once

// The bar's two text colours: the rows offered in its style menu, how a stored colour string is
// read, how a chosen colour is written back, and the little swatch each row shows. A stored
// colour is "#rrggbb" in lower case, or "" for the page's own colour. Main thread only (swatches
// are pixmaps).

#include <QColor>
#include <QIcon>
#include <QList>
#include <QString>

#include <optional>

namespace SubtitleColors {

struct Choice
{
    QString value;  // "#rrggbb", or "" for the look's default
    QString label;
};

inline constexpr auto translationKey = "subtitle.dstColor";
inline constexpr auto sourceKey = "subtitle.srcColor";

// In menu order, the default first.
const QList<Choice> &translationChoices();
const QList<Choice> &sourceChoices();

// "#" and exactly six hexadecimal digits; anything else is no colour.
std::optional<QColor> parse(const QString &text);
// Lower-case "#rrggbb" of the colour in sRGB, each component times 255 cut to an integer.
QString hex(const QColor &color);
// A 14 by 14 circle of the colour; `fallback` stands for the empty value, white for anything
// that isn't a colour.
QIcon swatch(const QString &value, const QColor &fallback);

// The page's default colours, which the empty value stands for in the menu.
QColor translationDefault();
QColor sourceDefault();

} // namespace SubtitleColors
