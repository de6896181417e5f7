#pragma once

// The fixed choices of the settings window, each a stored value and the label a menu shows, in
// menu order. Plain constant data, built once on first use; main thread only.

#include <QList>
#include <QString>

namespace SettingsChoices {

struct Choice
{
    QString value;
    QString label;
};

struct Size
{
    double value;
    QString label;
};

const QList<Choice> &layouts();
const QList<Choice> &sources();
const QList<Choice> &recognizers();
const QList<Choice> &cloudModels();
const QList<Choice> &themes();
const QList<Choice> &qualities();
const QList<Choice> &overflows();
const QList<Choice> &builtins();
// Gigabytes.
const QList<Size> &limits();
// Points.
const QList<Size> &panelSizes();
const QList<Size> &barSizes();

// The last row of the model menu: a model name typed by the student.
inline constexpr QStringView customLabel = u"自定义…";

// The index of the row nearest to `value`; of rows equally near, the first.
qsizetype nearest(const QList<Size> &sizes, double value);

} // namespace SettingsChoices
