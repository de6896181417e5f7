#include "engine/PassLoop.h"

#include "text/Characters.h"

#include <chrono>

using namespace std::chrono_literals;

namespace {

constexpr double acceptedRatio = 0.5;
constexpr qsizetype lineKeyChars = 20;
constexpr qsizetype lineKeyMinimum = 6;

QString recording()
{
    return QStringLiteral("● 正在录音");
}

QString warning(const QString &problem)
{
    return u"⚠️ " + problem;
}

} // namespace

bool PassLoop::startSource(const EngineState &state, CaptionSource &source)
{
    state.callbacks.onStatus(recording());
    if (const auto problem = source.start()) {
        state.callbacks.onStatus(warning(*problem));
        return false;
    }
    return true;
}

PassLoop::PassLoop(std::shared_ptr<EngineState> state, CaptionSource &source)
    : state_(std::move(state))
    , source_(source)
    , triggers_(state_)
    , window_(state_->config.sourceType == u"window")
{
}

Text::Clock::Duration PassLoop::interval() const
{
    return window_ ? 1500ms : 400ms;
}

void PassLoop::pass()
{
    const QStringList lines = acceptedLines(source_.read());
    const QString draft = source_.draft();
    if (draft != lastDraft_) {
        state_->callbacks.onCaption(draft);
        triggers_.draftChanged(draft);
    }
    lastDraft_ = draft;
    if (lines.isEmpty()) {
        reportIdle();
        triggers_.sendReadyCards();
        idle_ = true;
        return;
    }
    if (idle_ || first_)
        state_->callbacks.onStatus(QStringLiteral("● 正在录音 · 翻译中"));
    const QStringList fresh = take(lines);
    // What a window shows when the engine first looks was said before: it is kept, not shown.
    const bool publish = !first_ || !window_;
    if (publish) {
        for (const QString &line : fresh)
            state_->callbacks.onLine(line);
    }
    triggers_.examine(lines, publish);
    triggers_.sendReadyCards();
    triggers_.sendDue();
    first_ = false;
    idle_ = false;
}

QStringList PassLoop::acceptedLines(const QString &text) const
{
    QStringList lines;
    for (const QString &piece : text.split(u'\n', Qt::SkipEmptyParts)) {
        const QString line = Text::trimmed(piece, Text::CharClass::Whitespaces);
        const LectureScript::Reading reading = state_->script.read(line);
        if (!reading.letters.isEmpty() && reading.ratio >= acceptedRatio)
            lines << line;
    }
    return lines;
}

QStringList PassLoop::take(const QStringList &lines)
{
    QStringList fresh;
    for (const QString &line : lines) {
        if (window_) {
            // A window shows the same text pass after pass; a key too short to tell lines apart
            // is refused.
            const QString key = state_->script.key(line, lineKeyChars);
            if (Text::characterCount(key) < lineKeyMinimum || seenLines_.contains(key))
                continue;
            seenLines_.insert(key);
        }
        fresh << line;
    }
    state_->append(fresh);
    return fresh;
}

void PassLoop::reportIdle()
{
    if (const auto problem = source_.problem())
        state_->callbacks.onStatus(warning(*problem));
    else if (!idle_)
        state_->callbacks.onStatus(window_ ? QString(u"⚠️ 读不到 " + state_->config.app + u" 的字幕") : recording());
}
