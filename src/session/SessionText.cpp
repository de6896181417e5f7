#include "session/SessionText.h"

#include <QLocale>

#include <unicode/datefmt.h>
#include <unicode/dtptngen.h>
#include <unicode/smpdtfmt.h>

#include <cmath>
#include <memory>

namespace {

const QChar ideographicSpace(0x3000);

icu::Locale userLocale()
{
    return icu::Locale(QLocale().name().toLatin1().constData());
}

QString formatted(const icu::DateFormat &format, const QDateTime &date)
{
    icu::UnicodeString text;
    format.format(UDate(date.toMSecsSinceEpoch()), text);
    return QString(reinterpret_cast<const QChar *>(text.getBuffer()), text.length());
}

// Qt's words for the date, should ICU lack the locale's data.
QString plainDate(const QDateTime &date)
{
    return QLocale().toString(date.toLocalTime(), QLocale::ShortFormat);
}

// The platform's own words for the date, as ICU gives them for the user's locale and zone.
QString abbreviatedDate(const QDateTime &date)
{
    UErrorCode status = U_ZERO_ERROR;
    const icu::Locale locale = userLocale();
    const std::unique_ptr<icu::DateTimePatternGenerator> generator(
        icu::DateTimePatternGenerator::createInstance(locale, status));
    if (U_FAILURE(status))
        return plainDate(date);
    const icu::UnicodeString pattern = generator->getBestPattern(icu::UnicodeString(u"MMMdjmm"), status);
    const icu::SimpleDateFormat format(pattern, locale, status);
    return U_FAILURE(status) ? plainDate(date) : formatted(format, date);
}

QString longDate(const QDateTime &date)
{
    const std::unique_ptr<icu::DateFormat> format(
        icu::DateFormat::createDateTimeInstance(icu::DateFormat::kLong, icu::DateFormat::kShort, userLocale()));
    return format ? formatted(*format, date) : plainDate(date);
}

QString termEntry(const SessionData::Term &term, const QString &noteLead)
{
    QString entry = u"- **" + term.term + u"**" + ideographicSpace + term.meaning;
    if (!term.note.isEmpty())
        entry += noteLead + term.note;
    return entry;
}

QString termEntries(const QList<SessionData::Term> &terms, const QString &noteLead)
{
    QStringList entries;
    entries.reserve(terms.size());
    for (const SessionData::Term &term : terms)
        entries << termEntry(term, noteLead);
    return entries.join(u'\n') + u'\n';
}

} // namespace

namespace SessionText {

QString defaultTitle(const QDateTime &date)
{
    return abbreviatedDate(date) + QStringLiteral(" 的记录");
}

QString folderName(const QDateTime &date)
{
    return date.toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH-mm"));
}

QString clock(double seconds)
{
    // Hand-edited records may hold anything; keep the arithmetic defined.
    const qint64 whole = seconds >= 0 ? qint64(std::floor(std::min(seconds, 1e12))) : 0;
    const auto two = [](qint64 value) { return QString::number(value).rightJustified(2, u'0'); };
    if (whole < 3600)
        return two(whole / 60) + u':' + two(whole % 60);
    return QString::number(whole / 3600) + u':' + two(whole / 60 % 60) + u':' + two(whole % 60);
}

QString transcriptMarkdown(const SessionData &data)
{
    QString text = u"# " + data.title + u"\n\n";
    if (data.category)
        text += u"分类：" + *data.category + u" · ";
    text += longDate(data.started) + u" · 时长 " + clock(data.duration) + u"\n\n";
    for (const SessionData::Line &line : data.lines) {
        text += u"**[" + clock(line.t) + u"]** " + line.text + u"\n\n";
        if (!line.translation.isEmpty())
            text += u"> " + line.translation + u"\n\n";
    }
    return text;
}

QString vocabularyMarkdown(const SessionData &data)
{
    return u"# " + data.title + u" · 单词表\n\n"
        + termEntries(data.vocabulary.value_or(QList<SessionData::Term>()), QStringLiteral("\n  "));
}

QString notesMarkdown(const SessionData &data)
{
    QString text = u"# " + data.title + u" · AI 笔记\n\n";
    if (data.summary)
        text += u"## 课堂总结\n\n" + *data.summary + u"\n\n";
    for (const SessionData::Note &note : data.notes)
        text += u"### [" + clock(note.t) + u"] " + note.kind + u"\n\n" + note.text + u"\n\n";
    return text;
}

QString wordBookSection(const QList<SessionData::Term> &terms, const QString &title,
                        const std::optional<QString> &category)
{
    return u"\n## " + category.value_or(uncategorized.toString()) + u" · " + title + u"\n\n"
        + termEntries(terms, ideographicSpace + QStringLiteral("— "));
}

} // namespace SessionText
