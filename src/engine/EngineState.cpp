#include "engine/EngineState.h"

#include "engine/Engine.h"
#include "text/Characters.h"

#include <algorithm>

namespace {

constexpr qsizetype contextLines = 40;
constexpr int contextBudgetWithoutProvider = 6000;
constexpr qsizetype shownPerKind = 5;

// The last chars characters of lines[from...] joined with "\n". Only lines that can reach into
// the result are joined: a character takes at least one code unit, so lines are added until they
// hold chars code units, and more while the joined part has no more characters than asked for. A
// line break is always a character boundary, so the cut equals the one of the whole text.
QString lastCharacters(const QStringList &lines, qsizetype from, qsizetype chars)
{
    if (chars <= 0)
        return {};
    qsizetype begin = lines.size();
    qsizetype units = 0;
    qsizetype wanted = chars;
    for (;;) {
        while (begin > from && units < wanted)
            units += lines[--begin].size() + 1;
        const QString part = lines.mid(begin).join(u'\n');
        QString cut = Text::suffix(part, chars);
        if (cut.size() < part.size() || begin == from)
            return cut;
        wanted = units + chars;
    }
}

} // namespace

EngineState::EngineState(Config config, std::shared_ptr<const AIProvider> provider,
                         std::shared_ptr<const AIProvider> fast, std::shared_ptr<Text::Clock> clock)
    : config(std::move(config))
    , provider(std::move(provider))
    , fast(fast ? std::move(fast) : this->provider)
    , clock(std::move(clock))
    , script(this->config)
    , started(this->clock->elapsed())
    , systemPrompt(Prompts::system(this->config))
    , languages{{QStringLiteral("lecture_language"), this->config.lecture().id},
                {QStringLiteral("answer_language"), this->config.answer().id}}
    , recent_{{Engine::questionKind, {}}, {Engine::noticeKind, {}}, {Engine::keyPointKind, {}}}
    , switches_(Switches::from(this->config))
{
}

void EngineState::append(const QStringList &lines)
{
    std::scoped_lock lock(lock_);
    transcript_ << lines;
}

qsizetype EngineState::lineCount() const
{
    std::scoped_lock lock(lock_);
    return transcript_.size();
}

QStringList EngineState::lines() const
{
    // A shared copy: the cutting and joining happen outside the lock.
    std::scoped_lock lock(lock_);
    return transcript_;
}

QString EngineState::linesFrom(qsizetype index, qsizetype chars) const
{
    return lastCharacters(lines(), index, chars);
}

QString EngineState::fullTranscript(qsizetype chars) const
{
    return lastCharacters(lines(), 0, chars);
}

QString EngineState::recentTranscript(qsizetype chars, qsizetype lines) const
{
    const QStringList all = this->lines();
    return lastCharacters(all, std::max<qsizetype>(0, all.size() - lines), chars);
}

QString EngineState::contextWindow() const
{
    return recentTranscript(provider ? provider->contextChars() : contextBudgetWithoutProvider, contextLines);
}

QString EngineState::summary() const
{
    std::scoped_lock lock(lock_);
    return summary_;
}

void EngineState::setSummary(const QString &summary)
{
    std::scoped_lock lock(lock_);
    summary_ = summary;
}

Switches EngineState::switches() const
{
    std::scoped_lock lock(lock_);
    return switches_;
}

void EngineState::setSwitches(Switches switches)
{
    std::scoped_lock lock(lock_);
    switches_ = switches;
}

QString EngineState::shown(const QString &kind) const
{
    std::scoped_lock lock(lock_);
    const QString text = recent_.value(kind).join(u"\n\n");
    return text.isEmpty() ? QStringLiteral("(nothing yet)") : text;
}

void EngineState::remember(const QString &kind, const QString &text)
{
    std::scoped_lock lock(lock_);
    const auto found = recent_.find(kind);
    if (found == recent_.end())
        return;
    found->append(text);
    if (found->size() > shownPerKind)
        found->remove(0, found->size() - shownPerKind);
}

QString EngineState::knownTerms(qsizetype count) const
{
    std::scoped_lock lock(lock_);
    return knownTerms_.mid(std::max<qsizetype>(0, knownTerms_.size() - count)).join(u", ");
}

QList<VocabularyTerm> EngineState::addFreshTerms(const QList<VocabularyTerm> &terms)
{
    QList<VocabularyTerm> fresh;
    std::scoped_lock lock(lock_);
    // Judged against the terms known before this call only: two spellings in one reply both count.
    for (const VocabularyTerm &term : terms) {
        if (!knownLowered_.contains(term.term.toLower()))
            fresh << term;
    }
    for (const VocabularyTerm &term : std::as_const(fresh)) {
        knownTerms_ << term.term;
        knownLowered_.insert(term.term.toLower());
    }
    return fresh;
}

bool EngineState::markSeen(const QString &eventKey)
{
    std::scoped_lock lock(lock_);
    if (seenEvents_.contains(eventKey))
        return false;
    seenEvents_.insert(eventKey);
    return true;
}
