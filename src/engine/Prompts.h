#pragma once

// The fixed English instructions every model call of the product is built from, and the two
// operations that fill them. The wording, the "SKIP" marker, the JSON shapes asked for and the
// label "意思：" are what the reply parsers and the cards rely on. Pure; safe from any thread.

#include "settings/Config.h"

#include <QHash>
#include <QDate>
#include <QString>

namespace Prompts {

using Variables = QHash<QString, QString>;

// Replaces every "{name}" of the template by its value, plainly, in one pass: text inside a value
// is never taken for a placeholder. Placeholders without an entry stay as they are.
QString fill(const QString &text, const Variables &variables);
// A day as the model reads it, with its weekday, in US English whatever the user's language, so
// that it can resolve "next Tuesday".
QString dateText(const QDate &day);
// The system prompt filled for the configured languages and the student's profile.
QString system(const Config &config);

// Templates; the names in braces are their placeholders.
QString system();        // {lecture_language} {answer_language} {profile}
QString question();      // {context} {sentences} {recent} {lecture_language} {answer_language}
QString notice();        // {context} {sentences} {recent} {answer_language}
QString liveSummary();   // {summary} {context} {answer_language}
QString vocabulary();    // {lecture_language} {context} {known} {answer_language}
QString finalSummary();  // {context} {summary} {answer_language}
QString events();        // {context} {sentences} {today} {answer_language}
QString correctSystem();
QString correct();       // {lecture_language} {context} {lines} {answer_language}
QString chat();          // {context} {message}

} // namespace Prompts
