#pragma once

// One letter of the lecture language, as a compiled pattern: any letter for the sound sources,
// the language's own letters for a caption window. It tells how much of a text is in the lecture
// language and makes the keys that recognise a sentence again whatever its punctuation, spacing,
// digits and foreign words. Immutable after construction; safe from any thread.

#include "app/Config.h"
#include "text/Regex.h"

#include <QString>

class LectureScript final
{
public:
    explicit LectureScript(const Config &config);

    bool found(const QString &text) const;
    // Share of the text's letters (categories L and M) that the pattern matches; 0 without letters.
    double ratio(const QString &text) const;
    // The last chars characters of all matches of the text put together.
    QString key(const QString &text, qsizetype chars) const;

private:
    Text::Regex pattern_;
};
