#include "engine/LectureScript.h"

#include "text/Characters.h"

#include <algorithm>

namespace {

QString scriptOf(const Config &config)
{
    return config.sourceType == u"mic" ? QStringLiteral(u"\\p{L}") : config.lecture().script;
}

qsizetype codePoints(const QString &text)
{
    return text.size() - std::count_if(text.cbegin(), text.cend(), [](QChar c) { return c.isLowSurrogate(); });
}

} // namespace

LectureScript::LectureScript(const Config &config)
    : outside_(u"[^" + scriptOf(config) + u"]+")
{
}

LectureScript::Reading LectureScript::read(const QString &text) const
{
    Reading reading{outside_.replace(text, QString()), 0};
    const auto points = text.toUcs4();
    const auto letters = std::count_if(points.cbegin(), points.cend(), [](char32_t point) {
        return Text::isIn(Text::CharClass::Letters, point);
    });
    if (letters > 0)
        reading.ratio = double(codePoints(reading.letters)) / double(letters);
    return reading;
}

QString LectureScript::key(const Reading &reading, qsizetype chars)
{
    return Text::suffix(reading.letters, chars);
}
