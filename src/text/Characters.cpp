#include "text/Characters.h"

#include <QHash>

#include <unicode/brkiter.h>
#include <unicode/uchar.h>

#include <memory>

namespace Text {

namespace {

// Text below U+0300 without CR has one character per code unit: most transcript text takes
// this path and never touches the break iterator.
bool isSimple(const QString &text)
{
    for (const QChar c : text) {
        if (c.unicode() >= 0x300 || c.unicode() == u'\r')
            return false;
    }
    return true;
}

// Creating a character break iterator is costly; each thread keeps one.
icu::BreakIterator *breaker(const QString &text, icu::UnicodeString &holder)
{
    thread_local std::unique_ptr<icu::BreakIterator> iterator = [] {
        UErrorCode status = U_ZERO_ERROR;
        std::unique_ptr<icu::BreakIterator> made(
            icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
        return U_FAILURE(status) ? nullptr : std::move(made);
    }();
    if (!iterator)
        return nullptr;
    holder.setTo(false, reinterpret_cast<const UChar *>(text.utf16()), int32_t(text.size()));
    iterator->setText(holder);
    return iterator.get();
}

} // namespace

bool isIn(CharClass charClass, char32_t codePoint)
{
    const auto c = UChar32(codePoint);
    switch (charClass) {
    case CharClass::Letters:
        return (U_GET_GC_MASK(c) & (U_GC_L_MASK | U_GC_M_MASK)) != 0;
    case CharClass::DecimalDigits:
        return u_charType(c) == U_DECIMAL_DIGIT_NUMBER;
    case CharClass::Whitespaces:
        return c == u'\t' || u_charType(c) == U_SPACE_SEPARATOR;
    case CharClass::WhitespacesAndNewlines:
        return isIn(CharClass::Whitespaces, codePoint) || (c >= 0x0A && c <= 0x0D) || c == 0x85;
    case CharClass::PunctuationAndWhitespaces:
        return (U_GET_GC_MASK(c) & U_GC_P_MASK) != 0 || isIn(CharClass::Whitespaces, codePoint);
    }
    return false;
}

QString trimmed(const QString &text, CharClass charClass)
{
    const auto points = text.toUcs4();
    qsizetype begin = 0;
    qsizetype end = points.size();
    while (begin < end && isIn(charClass, points[begin]))
        ++begin;
    while (end > begin && isIn(charClass, points[end - 1]))
        --end;
    if (begin == 0 && end == points.size())
        return text;
    return QString::fromUcs4(reinterpret_cast<const char32_t *>(points.constData()) + begin, end - begin);
}

qsizetype characterCount(const QString &text)
{
    if (isSimple(text))
        return text.size();
    icu::UnicodeString holder;
    icu::BreakIterator *it = breaker(text, holder);
    if (!it)
        return text.size();
    qsizetype count = 0;
    it->first();
    while (it->next() != icu::BreakIterator::DONE)
        ++count;
    return count;
}

QStringList characters(const QString &text)
{
    QStringList result;
    if (isSimple(text)) {
        result.reserve(text.size());
        for (const QChar c : text)
            result.append(QString(c));
        return result;
    }
    icu::UnicodeString holder;
    icu::BreakIterator *it = breaker(text, holder);
    if (!it)
        return {text};
    int32_t start = it->first();
    for (int32_t end = it->next(); end != icu::BreakIterator::DONE; start = end, end = it->next())
        result.append(text.mid(start, end - start));
    return result;
}

QString prefix(const QString &text, qsizetype n)
{
    if (n <= 0)
        return {};
    if (isSimple(text))
        return text.left(n);
    icu::UnicodeString holder;
    icu::BreakIterator *it = breaker(text, holder);
    if (!it)
        return text.left(n);
    it->first();
    int32_t end = 0;
    for (qsizetype i = 0; i < n; ++i) {
        const int32_t next = it->next();
        if (next == icu::BreakIterator::DONE)
            return text;
        end = next;
    }
    return text.left(end);
}

QString suffix(const QString &text, qsizetype n)
{
    if (n <= 0)
        return {};
    if (isSimple(text))
        return text.right(n);
    icu::UnicodeString holder;
    icu::BreakIterator *it = breaker(text, holder);
    if (!it)
        return text.right(n);
    it->last();
    int32_t start = int32_t(text.size());
    for (qsizetype i = 0; i < n; ++i) {
        const int32_t previous = it->previous();
        if (previous == icu::BreakIterator::DONE)
            return text;
        start = previous;
    }
    return text.mid(start);
}

qsizetype sharedCount(const QStringList &of, const QStringList &in)
{
    QHash<QString, qsizetype> unused;
    for (const QString &character : in)
        ++unused[character];
    qsizetype shared = 0;
    for (const QString &character : of) {
        auto found = unused.find(character);
        if (found != unused.end() && *found > 0) {
            --*found;
            ++shared;
        }
    }
    return shared;
}

} // namespace Text
