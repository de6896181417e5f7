#include "engine/LectureScript.h"

#include "text/Characters.h"

#include <algorithm>

LectureScript::LectureScript(const Config &config)
    : pattern_(config.sourceType == u"mic" ? QStringLiteral(u"\\p{L}") : config.lecture().script)
{
}

bool LectureScript::found(const QString &text) const
{
    return pattern_.matches(text);
}

double LectureScript::ratio(const QString &text) const
{
    const auto points = text.toUcs4();
    const auto letters = std::count_if(points.cbegin(), points.cend(), [](char32_t point) {
        return Text::isIn(Text::CharClass::Letters, point);
    });
    if (letters == 0)
        return 0;
    return double(pattern_.all(text).size()) / double(letters);
}

QString LectureScript::key(const QString &text, qsizetype chars) const
{
    QString joined;
    for (const Text::Regex::Match &match : pattern_.all(text))
        joined += match.text;
    return Text::suffix(joined, chars);
}
