#include "engine/Triggers.h"

#include "engine/Engine.h"
#include "engine/LineDetectors.h"
#include "engine/ModelCalls.h"
#include "engine/Prompts.h"
#include "text/Characters.h"

#include <chrono>

using namespace std::chrono_literals;

namespace {

constexpr qsizetype questionKeyChars = 10;
constexpr qsizetype noticeKeyChars = 12;
constexpr double examinedRatio = 0.7;
constexpr auto classEndAfter = 300s;
// A question is sent soon after its words stop coming; a notice waits longer for the details.
constexpr Triggers::BatchTiming questionTiming{600ms, 2500ms};
constexpr Triggers::BatchTiming noticeTiming{1500ms, 6000ms};
constexpr qsizetype knownTermsInPrompt = 150;

// Inserts the key; true when it wasn't there before.
bool insertNew(QSet<QString> &keys, const QString &key)
{
    const qsizetype before = keys.size();
    keys.insert(key);
    return keys.size() > before;
}

QString orElse(const QString &text, const QString &fallback)
{
    return text.isEmpty() ? fallback : text;
}

} // namespace

Triggers::Triggers(std::shared_ptr<EngineState> state)
    : state_(std::move(state))
    , summary_{8, 3, 60s, 8000, state_->summaryBusy, 0, now()}
    , vocabulary_{6, 2, 90s, 6000, state_->vocabularyBusy, 0, now()}
{
}

Text::Clock::Duration Triggers::now() const
{
    return state_->clock->elapsed();
}

void Triggers::draftChanged(const QString &draft)
{
    if (!state_->switches().questions)
        return;
    QStringList pieces = LineDetectors::sentencesIn(draft + u' ');
    pieces << draft;
    for (const QString &piece : std::as_const(pieces)) {
        const QString sentence = Text::trimmed(piece, Text::CharClass::Whitespaces);
        if (LineDetectors::isDraftQuestion(sentence)
            && insertNew(askedKeys_, state_->script.key(sentence, questionKeyChars)))
            questions_.add(sentence, now());
    }
}

void Triggers::examine(const QStringList &lines, bool publish)
{
    QStringList candidates = LineDetectors::sentencesIn(lines.join(u' '));
    candidates << lines;
    // A line that is one sentence comes twice; once trimmed, the second would change nothing.
    QStringList sentences;
    for (const QString &candidate : std::as_const(candidates))
        sentences << Text::trimmed(candidate, Text::CharClass::Whitespaces).replace(u'？', u'?');
    sentences.removeDuplicates();
    for (const QString &sentence : std::as_const(sentences))
        consider(sentence, publish);
}

void Triggers::consider(const QString &sentence, bool publish)
{
    if (LineDetectors::garbage().matches(sentence) || !LineDetectors::hasLetter(sentence))
        return;
    const LectureScript::Reading reading = state_->script.read(sentence);
    if (reading.ratio < examinedRatio)
        return;
    if (!ended_ && now() - state_->started > classEndAfter && LineDetectors::isClassEnd(sentence)) {
        ended_ = true;
        state_->callbacks.onClassEnd();
    }
    if (LineDetectors::isQuestion(sentence) && insertNew(askedKeys_, LectureScript::key(reading, questionKeyChars))
        && publish)
        questions_.add(sentence, now());
    if (LineDetectors::isNotice(sentence) && insertNew(noticeKeys_, LectureScript::key(reading, noticeKeyChars))
        && publish)
        notices_.add(sentence, now());
}

void Triggers::sendReadyCards()
{
    const Switches switches = state_->switches();
    if (!switches.questions)
        questions_.take();
    if (!switches.exams)
        notices_.take();
    sendCards(questions_, questionTiming, Engine::questionKind, Prompts::question());
    if (const auto notices = sendCards(notices_, noticeTiming, Engine::noticeKind, Prompts::notice()))
        ModelCalls::findEvents(state_, *notices, state_->contextWindow());
}

void Triggers::sendDue()
{
    const Switches switches = state_->switches();
    const qsizetype lineCount = state_->lineCount();
    sendSummary(lineCount, switches.keyPoints);
    sendVocabulary(lineCount, switches.vocabulary);
}

std::optional<QStringList> Triggers::sendCards(Batch &batch, const BatchTiming &timing, const QString &kind,
                                               const QString &prompt)
{
    if (!batch.ready(timing.settle, timing.maxWait, now()))
        return std::nullopt;
    QStringList sentences = batch.take();
    ModelCalls::ask(state_, kind,
                    filled(prompt, {{QStringLiteral("context"), state_->contextWindow()},
                                    {QStringLiteral("sentences"), sentences.join(u'\n')},
                                    {QStringLiteral("recent"), state_->shown(kind)}}));
    return sentences;
}

std::optional<QString> Triggers::due(Cadence &cadence, qsizetype lineCount, bool on)
{
    if (!on) {
        // What is said while switched off never enters a later call.
        cadence.time = now();
        cadence.count = lineCount;
        return std::nullopt;
    }
    if (cadence.busy || !state_->fast)
        return std::nullopt;
    const qsizetype added = lineCount - cadence.count;
    if (added < cadence.enough && (added < cadence.some || now() - cadence.time < cadence.wait))
        return std::nullopt;
    QString text = state_->linesFrom(cadence.count, cadence.chars);
    cadence.time = now();
    cadence.busy = true;
    cadence.count = lineCount;
    return text;
}

void Triggers::sendSummary(qsizetype lineCount, bool on)
{
    if (const auto text = due(summary_, lineCount, on))
        ModelCalls::summarize(
            state_, filled(Prompts::liveSummary(),
                           {{QStringLiteral("summary"), orElse(state_->summary(), QStringLiteral("(none yet)"))},
                            {QStringLiteral("context"), *text}}));
}

void Triggers::sendVocabulary(qsizetype lineCount, bool on)
{
    if (const auto text = due(vocabulary_, lineCount, on))
        ModelCalls::collectVocabulary(
            state_, filled(Prompts::vocabulary(),
                           {{QStringLiteral("context"), *text},
                            {QStringLiteral("known"),
                             orElse(state_->knownTerms(knownTermsInPrompt), QStringLiteral("(none)"))}}));
}

QString Triggers::filled(const QString &prompt, Prompts::Variables variables) const
{
    variables.insert(state_->languages);
    return Prompts::fill(prompt, variables);
}
