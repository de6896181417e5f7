#pragma once

// The fixed patterns that decide which caption sentences are worth a model call: how teachers
// ask, announce and close in Korean, English, Chinese and Japanese. Each pattern is compiled
// once on first use; all functions are pure and safe from any thread.

#include "text/Regex.h"

#include <QString>
#include <QStringList>

namespace LineDetectors {

// Sentences that have a closing mark.
const Text::Regex &sentences();
// OCR and timestamp debris: a candidate with a match is dropped whole.
const Text::Regex &garbage();
// Tag questions and transitions that need no answer.
const Text::Regex &rhetorical();
// Question words and endings without a question mark.
const Text::Regex &questionLike();
// Exam, homework, schedule and date words.
const Text::Regex &noticeKeywords();
// Closing phrases of a class.
const Text::Regex &classEnd();

// The texts of every sentences() match, in order; the text after the last mark is not among them.
QStringList sentencesIn(const QString &text);
// Characters of the text, whitespace and newlines left out.
qsizetype nonBlankCount(const QString &text);
bool hasLetter(const QString &text);

// A finished sentence (already trimmed, "？" already made "?") that asks the class something.
bool isQuestion(const QString &sentence);
// A sentence that speaks of exams, homework, the schedule or a date.
bool isNotice(const QString &sentence);
// A sentence of the unfinished draft (already trimmed) that asks the class something.
bool isDraftQuestion(const QString &sentence);
// A sentence with which a teacher closes the class.
bool isClassEnd(const QString &sentence);

} // namespace LineDetectors
