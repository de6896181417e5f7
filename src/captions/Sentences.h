#pragma once

// Recognised text cut into sentences: after each closing mark (. ? ! 。 ？ ！) a new sentence
// begins, whatever follows the mark, so "3.5" splits too. Each sentence is trimmed of whitespace;
// empty ones are dropped. Safe from any thread.

#include <QString>
#include <QStringList>
#include <QStringView>

namespace Sentences {

// The marks that close a sentence in the lecture languages.
inline constexpr QStringView closingMarks = u".?!。？！";

QStringList split(const QString &text);

} // namespace Sentences
