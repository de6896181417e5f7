#pragma once

// Recognised text cut into sentences: after each closing mark (. ? ! 。 ？ ！) a new sentence
// begins, whatever follows the mark, so "3.5" splits too. Each sentence is trimmed of whitespace;
// empty ones are dropped. Safe from any thread.

#include <QString>
#include <QStringList>

namespace Sentences {

QStringList split(const QString &text);

} // namespace Sentences
