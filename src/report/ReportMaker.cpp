#include "report/ReportMaker.h"

#include "ai/ChatTask.h"
#include "engine/Prompts.h"
#include "text/Characters.h"
#include "text/Json.h"
#include "text/Regex.h"


namespace ReportMaker {

namespace {

bool isDay(const QString &date)
{
    static const Text::Regex day(QStringLiteral("^\\d{4}-\\d{2}-\\d{2}$"));
    return day.matches(date);
}

bool isClockTime(const QString &time)
{
    static const Text::Regex clock(QStringLiteral("^\\d{1,2}:\\d{2}$"));
    return clock.matches(time);
}

} // namespace

QString prompt()
{
    return QStringLiteral(
        "A lecture has ended. Full transcript (live speech recognition, oldest first; may contain recognition "
        "errors):\n<transcript>\n{context}\n</transcript>\n\nDraft class notes written from it:\n<notes>\n{notes}\n"
        "</notes>\n\nThe class took place on {today}. Do three things carefully:\n\n"
        "1. VERIFY the notes against the transcript, point by point. Delete anything the transcript does not "
        "support,\n   correct wrong facts, numbers, names and terms (fix recognition errors from context), and "
        "add anything\n   important that was missed. Keep the same structure and language ({answer_language}).\n"
        "2. EVENTS: every exam, quiz, assignment, deadline, presentation or class change the teacher actually "
        "stated\n   with a date you can determine. Resolve relative dates (\"next Tuesday\", \"in two weeks\") "
        "from the class date.\n   Skip anything without a determinable date. Titles short, in {answer_language}.\n"
        "3. MIND MAP of the whole class: the topic at the root, 3\u20137 main branches in teaching order, each with\n"
        "   2\u20135 short children (a third level only where it really helps). Labels very short (a few words), "
        "in {answer_language}.\n\nReply with JSON only, no code fences:\n{\"notes\": \"...\", \"events\": "
        "[{\"title\": \"...\", \"date\": \"YYYY-MM-DD\", \"time\": \"HH:mm or empty\", \"note\": \"...\"}],\n "
        "\"mindmap\": {\"t\": \"...\", \"c\": [{\"t\": \"...\", \"c\": [{\"t\": \"...\"}]}]}}");
}

QString request(const QString &notes, const QString &transcript, const QString &language, const QDate &today)
{
    return Prompts::fill(prompt(), {{QStringLiteral("context"), transcript},
                                    {QStringLiteral("notes"), notes},
                                    {QStringLiteral("today"), Prompts::dateText(today)},
                                    {QStringLiteral("answer_language"), language}});
}

std::optional<ClassReport> read(const std::optional<QString> &reply)
{
    if (!reply)
        return std::nullopt;
    const auto object = Text::Json::objectIn(*reply);
    auto report = object ? ClassReport::fromJson(*object) : std::nullopt;
    if (!report)
        return std::nullopt;
    report->notes = Text::trimmed(report->notes);
    if (report->notes.isEmpty())
        return std::nullopt;
    QList<ClassEvent> kept;
    for (ClassEvent &event : report->events) {
        if (!isDay(event.date))
            continue;
        if (event.time && !isClockTime(*event.time))
            event.time.reset();
        kept.append(std::move(event));
    }
    report->events = std::move(kept);
    return report;
}

QFuture<std::optional<QString>> make(std::shared_ptr<const AIProvider> provider, const QString &system,
                                     const QString &notes, const QString &transcript, const QString &language,
                                     QObject *context, ReportHandler onReport, const QDate &today)
{
    const Turn turn{QStringLiteral("user"), request(notes, transcript, language, today), {}};
    return ChatTask::start(std::move(provider), system, {turn}, context,
                           [onReport = std::move(onReport)](const std::optional<QString> &reply) {
                               onReport(read(reply));
                           });
}

} // namespace ReportMaker
