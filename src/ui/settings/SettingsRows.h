#pragma once

// Helpers that build the settings window's rows: menus filled from a choice table and read back
// by value, section titles and notes in the window's quieter text. Main thread only; every widget
// made here belongs to the parent handed in.

#include "ui/settings/SettingsChoices.h"

class QComboBox;
class QLabel;
class QWidget;

namespace SettingsRows {

// A menu of the table's labels, each row carrying its value; the object name lets tests and
// accessibility find it.
QComboBox *popup(const QList<SettingsChoices::Choice> &choices, const QString &name, QWidget *parent);
QComboBox *popup(const QList<SettingsChoices::Size> &sizes, const QString &name, QWidget *parent);

// A menu whose rows are names from outside (devices, applications): it cuts a long name short
// rather than widen the window.
void boundWidth(QComboBox *popup);

// Selects the row carrying `value`; row 0 when no row does.
void select(QComboBox *popup, const QString &value);
QString selected(const QComboBox *popup);
double selectedSize(const QComboBox *popup);

// A small bold heading above a group.
QLabel *sectionTitle(const QString &text, QWidget *parent);
// Wrapped explanatory text in the secondary colour.
QLabel *note(const QString &text, QWidget *parent);

} // namespace SettingsRows
