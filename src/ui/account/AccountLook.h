#pragma once

// The look shared by the sign-in window and the account pages: sizes, fonts and the few shaped
// widgets both use (the accent main button, flat link buttons, rounded fields, page labels), so
// the two windows stay alike in light and dark. Main thread only; every widget made here belongs
// to the parent it is given or to the layout it is put in.

#include "ui/common/ToneLabel.h"

#include <QFont>
#include <QString>

class QLineEdit;
class QPushButton;
class QWidget;

namespace AccountLook {

// Widths of the content column in the account window and of the sign-in form.
inline constexpr int accountWindowWidth = 340;
inline constexpr int contentWidth = 280;
inline constexpr int textWidth = 270;
inline constexpr int formWidth = 300;

// Sizes are logical pixels, so text keeps its proportions to the desktop's 13-pixel body text.
// The face is Noto Sans CJK where installed. Each window sets font(13) on itself for its fields.
QFont font(double pixels, QFont::Weight weight = QFont::Normal);

// A wrapping plain-text label at a pixel size.
ToneLabel *label(const QString &text, double pixels, ToneLabel::Tone tone = ToneLabel::Tone::text,
                 QWidget *parent = nullptr);

// The filled accent button that carries a window's main action.
QPushButton *mainButton(const QString &text, int width, QWidget *parent = nullptr);
// A borderless button in the accent colour, for "‹ 返回" and the links under a form.
QPushButton *linkButton(const QString &text, QWidget *parent = nullptr);
// A quiet bordered button of the page's own size, for the actions below a page.
QPushButton *plainButton(const QString &text, QWidget *parent = nullptr);
// Placeholder, a 13-pixel font unless told, a comfortable height and a fixed width.
void field(QLineEdit *edit, const QString &placeholder, int width, double pixels = 13);

} // namespace AccountLook
