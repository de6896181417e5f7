#include "text/Regex.h"

#include <unicode/regex.h>

namespace Text {

namespace {

icu::UnicodeString toIcu(const QString &text)
{
    return icu::UnicodeString(reinterpret_cast<const UChar *>(text.utf16()), int32_t(text.size()));
}

// The text to search, aliased rather than copied: it must outlive every matcher made on it.
icu::UnicodeString searched(const QString &text)
{
    return icu::UnicodeString(false, reinterpret_cast<const UChar *>(text.utf16()), int32_t(text.size()));
}

QString fromIcu(const icu::UnicodeString &text)
{
    return QString(reinterpret_cast<const QChar *>(text.getBuffer()), text.length());
}

Regex::Match matchAt(icu::RegexMatcher &matcher, const QString &text, UErrorCode &status)
{
    Regex::Match match;
    match.start = matcher.start(status);
    match.length = matcher.end(status) - match.start;
    match.text = text.mid(match.start, match.length);
    for (int32_t group = 1; group <= matcher.groupCount(); ++group) {
        const int32_t start = matcher.start(group, status);
        match.groups << (start < 0 ? QString() : text.mid(start, matcher.end(group, status) - start));
    }
    return match;
}

} // namespace

Regex::Regex(const QString &pattern, Case caseMode)
{
    UErrorCode status = U_ZERO_ERROR;
    UParseError parseError;
    const uint32_t flags = caseMode == Case::Insensitive ? UREGEX_CASE_INSENSITIVE : 0;
    std::unique_ptr<icu::RegexPattern> compiled(
        icu::RegexPattern::compile(toIcu(pattern), flags, parseError, status));
    if (U_SUCCESS(status))
        pattern_ = std::move(compiled);
}

Regex::~Regex() = default;
Regex::Regex(Regex &&) noexcept = default;
Regex &Regex::operator=(Regex &&) noexcept = default;

QList<Regex::Match> Regex::all(const QString &text) const
{
    QList<Match> matches;
    if (!pattern_)
        return matches;
    const icu::UnicodeString input = searched(text);
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::RegexMatcher> matcher(pattern_->matcher(input, status));
    if (U_FAILURE(status))
        return matches;
    while (matcher->find(status) && U_SUCCESS(status))
        matches << matchAt(*matcher, text, status);
    return matches;
}

std::optional<Regex::Match> Regex::first(const QString &text) const
{
    if (!pattern_)
        return std::nullopt;
    const icu::UnicodeString input = searched(text);
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::RegexMatcher> matcher(pattern_->matcher(input, status));
    if (U_FAILURE(status) || !matcher->find(status) || U_FAILURE(status))
        return std::nullopt;
    return matchAt(*matcher, text, status);
}

bool Regex::matches(const QString &text) const
{
    if (!pattern_)
        return false;
    const icu::UnicodeString input = searched(text);
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::RegexMatcher> matcher(pattern_->matcher(input, status));
    return U_SUCCESS(status) && matcher->find(status) && U_SUCCESS(status);
}

QString Regex::replace(const QString &text, const QString &replacement) const
{
    if (!pattern_)
        return text;
    const icu::UnicodeString input = searched(text);
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::RegexMatcher> matcher(pattern_->matcher(input, status));
    if (U_FAILURE(status))
        return text;
    const icu::UnicodeString result = matcher->replaceAll(toIcu(replacement), status);
    return U_FAILURE(status) ? text : fromIcu(result);
}

} // namespace Text
