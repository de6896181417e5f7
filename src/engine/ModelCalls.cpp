#include "engine/ModelCalls.h"

#include "platform/Http.h"
#include "text/Characters.h"
#include "text/Json.h"
#include "text/Regex.h"

#include <QLocale>
#include <QThreadPool>

#include <utility>

namespace ModelCalls {

namespace {

const QString skip = QStringLiteral("SKIP");
constexpr qsizetype eventContextChars = 3000;
constexpr qsizetype eventTitleKeyChars = 2;

// Runs the call on the thread pool and hands the reply on; the state lives as long as the task.
// Without a fast provider nothing is sent.
template<typename Handle>
void send(std::shared_ptr<EngineState> state, const QString &prompt, Handle handle)
{
    if (!state->fast)
        return;
    Http::taskPool().start([state = std::move(state), prompt, handle = std::move(handle)] {
        const QList<Turn> turns{Turn{QStringLiteral("user"), prompt, {}}};
        handle(*state, state->fast->chat(state->systemPrompt, turns));
    });
}

// The reply worth showing: present, not blank, not exactly "SKIP" once trimmed.
std::optional<QString> meaningful(const std::optional<QString> &reply)
{
    if (!reply)
        return std::nullopt;
    QString text = Text::trimmed(*reply, Text::CharClass::WhitespacesAndNewlines);
    if (text.isEmpty() || text == skip)
        return std::nullopt;
    return text;
}

// Every element an object, else nothing.
std::optional<QList<QJsonObject>> objectsIn(const std::optional<QString> &reply)
{
    const auto array = Text::Json::arrayIn(reply.value_or(QString()));
    if (!array)
        return std::nullopt;
    QList<QJsonObject> objects;
    for (const QJsonValue &value : *array) {
        if (!value.isObject())
            return std::nullopt;
        objects << value.toObject();
    }
    return objects;
}

QList<VocabularyTerm> termsIn(const std::optional<QString> &reply)
{
    QList<VocabularyTerm> terms;
    for (const QJsonObject &object : objectsIn(reply).value_or(QList<QJsonObject>())) {
        const QString term = Text::trimmed(Text::Json::string(object, u"term").value_or(QString()),
                                           Text::CharClass::Whitespaces);
        if (!term.isEmpty())
            terms << VocabularyTerm{term, Text::Json::string(object, u"meaning").value_or(QString()),
                                    Text::Json::string(object, u"note").value_or(QString())};
    }
    return terms;
}

// The events of the reply with a proper date, an unreadable time dropped; one malformed entry
// spoils the whole list.
QList<ClassEvent> eventsIn(const std::optional<QString> &reply)
{
    static const Text::Regex datePattern(QStringLiteral(u"^\\d{4}-\\d{2}-\\d{2}$"));
    static const Text::Regex timePattern(QStringLiteral(u"^\\d{1,2}:\\d{2}$"));
    QList<ClassEvent> events;
    for (const QJsonObject &object : objectsIn(reply).value_or(QList<QJsonObject>())) {
        auto event = ClassEvent::fromJson(object);
        if (!event)
            return {};
        if (!datePattern.matches(event->date))
            continue;
        if (event->time && !timePattern.matches(*event->time))
            event->time.reset();
        events << *event;
    }
    return events;
}

} // namespace

void ask(std::shared_ptr<EngineState> state, const QString &kind, const QString &prompt)
{
    send(std::move(state), prompt, [kind](EngineState &shared, const std::optional<QString> &reply) {
        const auto text = meaningful(reply);
        if (!text)
            return;
        shared.remember(kind, *text);
        shared.callbacks.onResult(kind, *text, cardTime(shared.clock->now()));
    });
}

void summarize(std::shared_ptr<EngineState> state, const QString &prompt)
{
    send(std::move(state), prompt, [](EngineState &shared, const std::optional<QString> &reply) {
        const auto text = meaningful(reply);
        // A failure text never replaces the summary.
        if (text && !text->startsWith(u'（')) {
            shared.setSummary(*text);
            shared.callbacks.onSummary(*text);
        }
        shared.summaryBusy = false;
    });
}

void collectVocabulary(std::shared_ptr<EngineState> state, const QString &prompt)
{
    send(std::move(state), prompt, [](EngineState &shared, const std::optional<QString> &reply) {
        const QList<VocabularyTerm> fresh = shared.addFreshTerms(termsIn(reply));
        if (!fresh.isEmpty())
            shared.callbacks.onTerms(fresh);
        shared.vocabularyBusy = false;
    });
}

void findEvents(std::shared_ptr<EngineState> state, const QStringList &sentences, const QString &context)
{
    Prompts::Variables variables{{QStringLiteral("context"), Text::suffix(context, eventContextChars)},
                                 {QStringLiteral("sentences"), sentences.join(u'\n')},
                                 {QStringLiteral("today"), Prompts::dateText(state->clock->now().toLocalTime().date())},
                                 {QStringLiteral("answer_language"), state->config.answer().id}};
    const QString prompt = Prompts::fill(Prompts::events(), variables);
    send(std::move(state), prompt, [](EngineState &shared, const std::optional<QString> &reply) {
        for (const ClassEvent &event : eventsIn(reply)) {
            if (shared.markSeen(event.date + u'|' + Text::prefix(event.title, eventTitleKeyChars)))
                shared.callbacks.onEvent(event);
        }
    });
}

QString cardTime(const QDateTime &now)
{
    const QTime time = now.toLocalTime().time();
    int hour = time.hour();
    if (QLocale::system().timeFormat(QLocale::ShortFormat).contains(u'a', Qt::CaseInsensitive))
        hour = hour % 12 == 0 ? 12 : hour % 12;
    return QStringLiteral("%1:%2").arg(hour, 2, 10, QChar(u'0')).arg(time.minute(), 2, 10, QChar(u'0'));
}

} // namespace ModelCalls
