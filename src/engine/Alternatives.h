#pragma once

// Whether a pattern whose top level is an alternation ("A|B|C", or one group "(A|B|C)" around
// all of it) matches anywhere in a text, found by trying its alternatives as patterns of their
// own. The answer is the same as the whole pattern's; it comes several times faster for long
// alternations of words, which ICU otherwise tries one after another at every position of the
// text. Immutable after construction; safe from any thread.

#include "text/Regex.h"

#include <QString>

#include <vector>

class Alternatives final
{
public:
    Alternatives(const QString &pattern, Text::Regex::Case caseMode);

    bool matches(const QString &text) const;

private:
    std::vector<Text::Regex> parts_;
};
