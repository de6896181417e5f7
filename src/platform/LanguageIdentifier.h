#pragma once

// Which language a text is written in, by CLD2's statistics of letter sequences, optionally
// restricted to the languages of a class. Stateless; safe from any thread.
//
// Languages are named by codes: "en", "ko", "ja", "fr", "de", "zh-Hans" (any simplified or
// unmarked Chinese), "zh-Hant" and the other codes CLD2 knows.

#include <QString>
#include <QStringList>

#include <optional>

namespace LanguageIdentifier {

// The language part of a locale identifier: "ko-KR" gives "ko", "zh-Hans" gives "zh".
QString languageCode(const QString &locale);

// The language most of the text is in; none for a text without a clue (digits, marks).
std::optional<QString> dominant(const QString &text);

// The most likely language among the candidates (locale identifiers or codes: "ko-KR", "zh-Hans",
// "en"); none when the text gives no clue or none of them is among the likely languages.
std::optional<QString> dominant(const QString &text, const QStringList &candidates);

} // namespace LanguageIdentifier
