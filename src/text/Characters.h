#pragma once

// User-perceived characters (extended grapheme clusters) and the character classes every size
// limit and trim in the product is counted in. Safe from any thread.

#include <QList>
#include <QString>
#include <QStringList>

namespace Text {

enum class CharClass {
    Letters,                 // Unicode categories L and M
    DecimalDigits,           // Nd
    Whitespaces,             // Zs and tab
    WhitespacesAndNewlines,  // Whitespaces plus U+000A..U+000D and U+0085
    PunctuationAndWhitespaces,  // category P plus Whitespaces
};

bool isIn(CharClass charClass, char32_t codePoint);
// Removes code points of the class from both ends.
QString trimmed(const QString &text, CharClass charClass = CharClass::WhitespacesAndNewlines);

qsizetype characterCount(const QString &text);
// The text cut into its user-perceived characters, in order.
QStringList characters(const QString &text);
// The first / last n user-perceived characters (the whole text when it has fewer).
QString prefix(const QString &text, qsizetype n);
QString suffix(const QString &text, qsizetype n);
// How many of the characters in `of` find an equal character in `in` not yet matched: the
// overlap of the two as multisets, counted from the side of `of`.
qsizetype sharedCount(const QStringList &of, const QStringList &in);

} // namespace Text
