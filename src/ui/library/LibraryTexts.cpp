#include "ui/library/LibraryTexts.h"

#include "session/SessionStore.h"

#include <QLocale>

#include <unicode/datefmt.h>
#include <unicode/dtptngen.h>
#include <unicode/smpdtfmt.h>

#include <memory>

namespace {

const QString separator = QStringLiteral(" · ");

icu::Locale userLocale()
{
    return icu::Locale(QLocale().name().toLatin1().constData());
}

// Qt's words, should ICU lack the locale's data.
QString plain(const QDateTime &date)
{
    return QLocale().toString(date.toLocalTime(), QLocale::ShortFormat);
}

QString formatted(const icu::DateFormat *format, const QDateTime &date)
{
    if (!format)
        return plain(date);
    icu::UnicodeString text;
    format->format(UDate(date.toMSecsSinceEpoch()), text);
    return QString(reinterpret_cast<const QChar *>(text.getBuffer()), text.length());
}

// Abbreviated month, day, hour with the locale's AM/PM marker, minute. Made once: a pattern
// generator costs about a millisecond, too much for every painted row.
const icu::DateFormat *rowFormat()
{
    static const std::unique_ptr<icu::DateFormat> format = []() -> std::unique_ptr<icu::DateFormat> {
        UErrorCode status = U_ZERO_ERROR;
        const icu::Locale locale = userLocale();
        const std::unique_ptr<icu::DateTimePatternGenerator> generator(
            icu::DateTimePatternGenerator::createInstance(locale, status));
        if (U_FAILURE(status))
            return nullptr;
        const icu::UnicodeString pattern = generator->getBestPattern(icu::UnicodeString(u"MMMdjmm"), status);
        auto made = std::make_unique<icu::SimpleDateFormat>(pattern, locale, status);
        return U_FAILURE(status) ? nullptr : std::move(made);
    }();
    return format.get();
}

// Abbreviated date, short time.
const icu::DateFormat *infoFormat()
{
    static const std::unique_ptr<icu::DateFormat> format(
        icu::DateFormat::createDateTimeInstance(icu::DateFormat::kMedium, icu::DateFormat::kShort, userLocale()));
    return format.get();
}

QString deletion(int daysLeft)
{
    return QString::number(daysLeft) + u" 天后永久删除";
}

} // namespace

namespace LibraryTexts {

QString rowDetail(const SessionData &data, const RowState &state)
{
    QStringList parts;
    if (state.live)
        parts << QStringLiteral("● 录音中");
    if (state.daysLeft)
        parts << deletion(*state.daysLeft);
    if (data.category && !data.category->isEmpty())
        parts << *data.category;
    parts << formatted(rowFormat(), data.started) << SessionStore::clock(data.duration);
    return parts.join(separator);
}

QString info(const SessionData &data, const InfoState &state)
{
    QString text = formatted(infoFormat(), data.started) + separator + SessionStore::clock(data.duration)
        + separator + QString::number(data.lines.size()) + u" 句";
    if (state.daysLeft)
        text += separator + deletion(*state.daysLeft);
    if (state.refining)
        text += separator + u"正在精修文字稿…";
    else if (data.refined == true)
        text += separator + u"已精修";
    return text;
}

QString aiNotes(const SessionData &data)
{
    QStringList blocks;
    if (data.summary)
        blocks << u"课堂总结\n" + *data.summary;
    for (const SessionData::Note &note : data.notes)
        blocks << u'[' + SessionStore::clock(note.t) + u"] " + note.kind + u'\n' + note.text;
    return blocks.isEmpty() ? QStringLiteral("这节课没有 AI 笔记。") : blocks.join(u"\n\n────────\n\n");
}

QString words(const SessionData &data)
{
    QStringList entries;
    for (const SessionData::Term &term : data.vocabulary.value_or(QList<SessionData::Term>())) {
        QString entry = term.term + QChar(0x3000) + term.meaning;
        if (!term.note.isEmpty())
            entry += u"\n    " + term.note;
        entries << entry;
    }
    if (entries.isEmpty())
        return QStringLiteral("这节课没有收集专业词汇。\n（上课时在 AI 要点里打开「专业词汇」开关就会自动记录。）");
    return entries.join(u"\n\n");
}

QString empty(bool trash)
{
    if (trash)
        return u"「最近删除」是空的。\n删除的课会在这里保留 " + QString::number(SessionStore::keepDays) + u" 天。";
    return QStringLiteral("还没有录音。\n在主窗口点「开始」，下课点「停止」就会保存在这里。");
}

} // namespace LibraryTexts
