#include "app/RowPipeline.h"

#include "captions/Sentences.h"
#include "engine/Corrector.h"
#include "session/LiveSession.h"
#include "text/Characters.h"
#include "text/Regex.h"
#include "translation/Translator.h"

namespace {

const QString untranslatable = QStringLiteral("（还不能翻译：翻译语言没下载好，看主窗口里的提示）");

bool endsWithMark(const QString &text)
{
    return !text.isEmpty() && Sentences::closingMarks.contains(text.back());
}

} // namespace

RowPipeline::RowPipeline(TranscriptSurface &panel, TranscriptSurface &bar, Translator &translator,
                         const Text::Clock &clock, Schedule schedule)
    : panel_(panel)
    , bar_(bar)
    , translator_(translator)
    , clock_(clock)
    , schedule_(std::move(schedule))
    , alive_(std::make_shared<RowPipeline *>(this))
{
}

RowPipeline::~RowPipeline() = default;

bool RowPipeline::finished(const QString &text)
{
    static const Text::Regex endings(QStringLiteral(
        u"(니다|니까|세요|에요|예요|어요|아요|해요|네요|군요|지요|죠|거든요|잖아요|래요|대요|까요|나요|가요|다|요"
        u"|ます|です|ました|でした)$"));
    const QString trimmed = Text::trimmed(text, Text::CharClass::Whitespaces);
    if (endsWithMark(trimmed) || trimmed.endsWith(u'…'))
        return true;
    return endings.first(trimmed).has_value();
}

void RowPipeline::setCorrector(std::shared_ptr<Corrector> corrector)
{
    corrector_ = std::move(corrector);
    if (!corrector_)
        return;
    corrector_->onFix = [alive = std::weak_ptr(alive_)](int id, const QString &text, const QString &translation) {
        if (const auto self = alive.lock())
            (*self)->fix(id, text, translation);
    };
}

void RowPipeline::setSession(LiveSession *session)
{
    session_ = session;
}

void RowPipeline::showLine(const QString &line)
{
    draftCache_.clear();
    const auto now = clock_.elapsed();
    if (openRow_ && !finished(openRow_->text)
        && Text::characterCount(openRow_->text) + Text::characterCount(line) < joinLimit
        && now - openRow_->since < joinWindow) {
        const int id = openRow_->id;
        const QString joined = openRow_->text + u' ' + line;
        openRow_->text = joined;
        rowText_[id] = joined;
        both([&](TranscriptSurface &view) { view.setText(id, joined); });
        if (session_ && sessionLine_.contains(id))
            session_->setText(sessionLine_[id], joined);
        quickTranslate(id, joined);
        finished(joined) ? closeRow() : waitToClose();
        return;
    }
    closeRow();
    const int id = ++lineID_;
    rowText_[id] = line;
    both([&](TranscriptSurface &view) { view.addLine(id, line); });
    if (session_)
        sessionLine_[id] = session_->addLine(line);
    quickTranslate(id, line);
    openRow_ = OpenRow{id, line, now};
    finished(line) ? closeRow() : waitToClose();
}

void RowPipeline::closeRow()
{
    ++timerGeneration_;
    if (!openRow_)
        return;
    const OpenRow row = *std::exchange(openRow_, std::nullopt);
    if (corrector_)
        corrector_->add(row.id, row.text);
}

void RowPipeline::reset()
{
    ++timerGeneration_;
    openRow_.reset();
    rowText_.clear();
    aiTranslated_.clear();
    sessionLine_.clear();
}

void RowPipeline::both(const std::function<void(TranscriptSurface &)> &show)
{
    show(panel_);
    show(bar_);
}

void RowPipeline::waitToClose()
{
    const int generation = ++timerGeneration_;
    schedule_(closeAfter, [alive = std::weak_ptr(alive_), generation] {
        const auto self = alive.lock();
        if (self && (*self)->timerGeneration_ == generation)
            (*self)->closeRow();
    });
}

void RowPipeline::quickTranslate(int id, const QString &text)
{
    translator_.translate(text, [alive = std::weak_ptr(alive_), id, text](const std::optional<QString> &translation) {
        const auto self = alive.lock();
        if (!self)
            return;
        RowPipeline &pipeline = **self;
        // The row has grown (a newer translation is under way) or the model has rewritten it.
        if (!pipeline.rowText_.contains(id) || pipeline.rowText_.value(id) != text || pipeline.aiTranslated_.contains(id))
            return;
        const QString shown = translation.value_or(untranslatable);
        pipeline.both([&](TranscriptSurface &view) { view.setTranslation(id, shown); });
        if (translation && pipeline.session_ && pipeline.sessionLine_.contains(id))
            pipeline.session_->setTranslation(pipeline.sessionLine_[id], *translation);
    });
}

void RowPipeline::fix(int id, const QString &text, const QString &translation)
{
    if (!rowText_.contains(id))
        return;
    rowText_[id] = text;
    aiTranslated_.insert(id);
    both([&](TranscriptSurface &view) {
        view.setText(id, text);
        view.setTranslation(id, translation);
    });
    if (session_ && sessionLine_.contains(id)) {
        session_->setText(sessionLine_[id], text);
        session_->setTranslation(sessionLine_[id], translation);
    }
}

void RowPipeline::showDraft(const QString &draft)
{
    const QStringList sentences = Sentences::split(draft);
    publish(sentences);
    for (qsizetype i = 0; i < sentences.size(); ++i) {
        const QString &sentence = sentences[i];
        if (draftCache_.contains(sentence) || !askNow(sentence, i == sentences.size() - 1))
            continue;
        draftCache_.insert(sentence, QString());
        translator_.translate(sentence, [alive = std::weak_ptr(alive_), sentence,
                                         sentences](const std::optional<QString> &translation) {
            if (const auto self = alive.lock()) {
                (*self)->draftCache_.insert(sentence, translation.value_or(QString()));
                (*self)->publish(sentences);
            }
        });
    }
}

bool RowPipeline::askNow(const QString &sentence, bool last)
{
    if (!last || endsWithMark(sentence))
        return true;
    // An unfinished sentence changes with every pass: translate it at most every 0.9 s.
    const auto now = clock_.elapsed();
    if (lastDraftTranslation_ && now - *lastDraftTranslation_ <= draftPause)
        return false;
    lastDraftTranslation_ = now;
    return true;
}

void RowPipeline::publish(const QStringList &sentences)
{
    TranscriptSurface::Drafts drafts;
    for (const QString &sentence : sentences)
        drafts.append({sentence, draftCache_.value(sentence)});
    both([&](TranscriptSurface &view) { view.setDrafts(drafts); });
}
