#pragma once

// One letter of the lecture language, as a compiled pattern: any letter for the sound sources,
// the language's own letters for a caption window. It tells how much of a text is in the lecture
// language and makes the keys that recognise a sentence again whatever its punctuation, spacing,
// digits and foreign words. Immutable after construction; safe from any thread.

#include "settings/Config.h"
#include "text/Regex.h"

#include <QString>

class LectureScript final
{
public:
    // A text as seen in the lecture's script.
    struct Reading
    {
        QString letters;  // all matches of the pattern, put together
        double ratio;     // share of the text's letters (categories L and M) among them; 0 without letters
    };

    explicit LectureScript(const Config &config);

    Reading read(const QString &text) const;
    double ratio(const QString &text) const { return read(text).ratio; }
    // The last chars characters of the text's letters: the same for two texts that differ only in
    // punctuation, spacing, digits or words of other scripts.
    static QString key(const Reading &reading, qsizetype chars);
    QString key(const QString &text, qsizetype chars) const { return key(read(text), chars); }

private:
    // What the pattern doesn't match. The pattern is one character class, so removing this from a
    // text leaves its matches put together, without a list of matches to build.
    Text::Regex outside_;
};
