#pragma once

// The library window's measures and colours in one place, in pixels.

#include <QColor>

namespace LibraryLook {

inline constexpr int sideWidth = 260;
inline constexpr int margin = 12;
inline constexpr int paneMargin = 20;
inline constexpr int radius = 7;
inline constexpr int rowTitleSize = 13;
inline constexpr int rowDetailSize = 11;
inline constexpr int titleSize = 21;
inline constexpr int infoSize = 12;
inline constexpr int textSize = 14;
inline constexpr double transcriptSize = 15;
inline constexpr int categoryWidth = 180;
inline constexpr int sliderWidth = 240;
inline const QColor red(0xff, 0x3b, 0x30);

} // namespace LibraryLook
