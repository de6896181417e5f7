#include "captions/CloudFilter.h"

#include "captions/CloudTranscript.h"
#include "captions/Sentences.h"
#include "platform/LanguageIdentifier.h"
#include "text/Characters.h"
#include "text/Regex.h"

#include <algorithm>

namespace {

constexpr qsizetype recentCount = 30;
constexpr qsizetype shortestKey = 4;
constexpr qsizetype containedKey = 7;

bool holds(const QString &text, const std::function<bool(char32_t)> &test)
{
    const auto points = text.toUcs4();
    return std::any_of(points.begin(), points.end(), test);
}

qsizetype letterCount(const QString &text)
{
    const auto points = text.toUcs4();
    return std::count_if(points.begin(), points.end(),
                         [](char32_t c) { return Text::isIn(Text::CharClass::Letters, c); });
}

} // namespace

CloudFilter::CloudFilter(QStringList locales, QString prompt)
    : locales_(std::move(locales))
    , prompt_(std::move(prompt))
{
}

QStringList CloudFilter::kept(const QString &text)
{
    QStringList sentences;
    for (const QString &sentence : Sentences::split(Text::trimmed(text))) {
        if (passes(sentence) && fresh(sentence))
            sentences << sentence;
    }
    return sentences;
}

bool CloudFilter::passes(const QString &sentence) const
{
    return holds(sentence, [](char32_t c) { return Text::isIn(Text::CharClass::Letters, c); })
        && allowed(sentence) && !prompt_.contains(sentence) && substantial(sentence) && !invented(sentence);
}

bool CloudFilter::fresh(const QString &sentence)
{
    const QString key = CloudTranscript::normalized(sentence);
    const qsizetype length = Text::characterCount(key);
    // A short interjection may well be said twice.
    if (length < shortestKey)
        return true;
    const bool repeat = std::any_of(recent_.begin(), recent_.end(), [&](const QString &old) {
        return old == key
            || (length > containedKey && Text::characterCount(old) > containedKey
                && (old.contains(key) || key.contains(old)));
    });
    if (repeat)
        return false;
    recent_ << key;
    if (recent_.size() > recentCount)
        recent_ = recent_.mid(recent_.size() - recentCount);
    return true;
}

bool CloudFilter::allowed(const QString &text) const
{
    const auto found = LanguageIdentifier::dominant(text);
    if (!found)
        return true;
    QStringList codes;
    for (const QString &locale : locales_)
        codes << LanguageIdentifier::languageCode(locale);
    if (codes.contains(LanguageIdentifier::languageCode(*found)))
        return true;
    if (codes.contains(u"ko") && holds(text, [](char32_t c) { return c >= 0xAC00 && c <= 0xD7A3; }))
        return true;
    return codes.contains(u"ja") && holds(text, [](char32_t c) { return c >= 0x3040 && c <= 0x30FF; });
}

bool CloudFilter::substantial(const QString &text)
{
    if (text.split(u' ', Qt::SkipEmptyParts).size() > 1)
        return true;
    return letterCount(text) >= 5 && !text.isEmpty() && Sentences::closingMarks.contains(text.back());
}

bool CloudFilter::invented(const QString &text)
{
    static const Text::Regex inventions(
        QStringLiteral(u"^(context|transcript|subtitles?|captions?)\\s*[:：]|#{2,}|thanks? (you )?for watching"
                       u"|please (like and )?subscribe|subtitles? by|시청해 ?주셔서 감사|구독과 좋아요|MBC 뉴스"
                       u"|字幕(由|提供|志愿者)|请不吝点赞|ご視聴ありがとう|チャンネル登録"),
        Text::Regex::Case::Insensitive);
    return inventions.matches(text);
}
