#include "app/ClassLifecycle.h"

#include "account/Account.h"
#include "ai/ChatTask.h"
#include "app/ChatDesk.h"
#include "app/LiveObjects.h"
#include "app/RowPipeline.h"
#include "engine/Prompts.h"
#include "platform/MicHub.h"
#include "platform/PoolTask.h"
#include "report/Inbox.h"
#include "report/ReportMail.h"
#include "report/ReportMaker.h"
#include "session/Refiner.h"
#include "session/SessionStore.h"
#include "text/Characters.h"
#include "translation/Translator.h"

#include <QDir>
#include <QFileInfo>
#include <QPointer>
#include <QThreadPool>

#include <algorithm>

using namespace std::chrono_literals;

namespace {

constexpr qsizetype transcriptChars = 60'000;
const QString audioFile = QStringLiteral("录音.m4a");

QString blankTrimmed(const QString &text)
{
    return Text::trimmed(text, Text::CharClass::Whitespaces);
}

// The report's events and the live ones whose date it lacks, by date and then time.
QList<ClassEvent> mergedEvents(QList<ClassEvent> events, const QList<ClassEvent> &live)
{
    for (const ClassEvent &event : live) {
        const bool dated = std::any_of(events.cbegin(), events.cend(),
                                       [&](const ClassEvent &known) { return known.date == event.date; });
        if (!dated)
            events << event;
    }
    std::stable_sort(events.begin(), events.end(), [](const ClassEvent &a, const ClassEvent &b) {
        return std::pair(a.date, a.time.value_or(QString())) < std::pair(b.date, b.time.value_or(QString()));
    });
    return events;
}

} // namespace

ClassLifecycle::ClassLifecycle(AppWindows &windows, AppServices &services, AppState &state, Translator &translator,
                               RowPipeline &rows, ChatDesk &chat, LiveObjects &live)
    : windows_(windows)
    , services_(services)
    , state_(state)
    , translator_(translator)
    , rows_(rows)
    , chat_(chat)
    , live_(live)
{
}

void ClassLifecycle::startRecording()
{
    // Linux asks no permission: what can be missing is the input device itself.
    if (!services_.hub.format().isValid()) {
        windows_.panel.addNote(QStringLiteral("⚠️ 找不到麦克风：请在 设置 → 声音 → 输入 中接上或选择一个麦克风，再点「开始」。"));
        return;
    }
    const int bitRate = state_.config.audioQuality == u"small" ? 32'000 : 64'000;
    state_.session = std::make_unique<LiveSession>(state_.config.lecture().id, state_.config.answer().id, bitRate,
                                                   services_.hub, *services_.clock, services_.schedule);
    rows_.reset();
    rows_.setSession(state_.session.get());
    state_.finalSummaryDone = false;
    state_.classTerms.clear();
    windows_.panel.transcript().clear(QString());
    windows_.subtitles.transcript().clear(QString());

    if (const auto problem = state_.session->startAudio())
        windows_.panel.addNote(u"⚠️ " + *problem + u"。翻译照常进行，只是不保存声音。");
    live_.startEngine();
    windows_.panel.setRecording(true, QStringLiteral("00:00"));
    tick(++state_.clockGeneration);
    if (windows_.library.isVisible())
        windows_.library.reload();
}

void ClassLifecycle::tick(int generation)
{
    services_.schedule(1s, [this, guard = QPointer<QObject>(&context_), generation] {
        if (!guard || !state_.session || generation != state_.clockGeneration)
            return;
        windows_.panel.setRecording(true, SessionStore::clock(state_.session->elapsed()));
        tick(generation);
    });
}

void ClassLifecycle::stopRecording()
{
    if (!state_.session)
        return;
    if (!state_.finalSummaryDone && state_.engine && state_.provider)
        makeFinalSummary(state_.session->folder(), [](bool) {});
    live_.stopEngine();
    state_.engine.reset();
    windows_.slides.stopFollowing();
    rows_.closeRow();
    state_.session->stopAudio();
    ++state_.clockGeneration;
    windows_.panel.setRecording(false, QString());
    windows_.panel.setStatus(QStringLiteral("未开始"));
    windows_.panel.transcript().setDrafts({});
    windows_.subtitles.transcript().setDrafts({});

    const SessionData &data = state_.session->data();
    const QString category = data.category.value_or(SessionStore::categories().value(0));
    askToSave(data.title, category);
}

void ClassLifecycle::classEnded()
{
    makeFinalSummary(std::nullopt, [this](bool ok) {
        windows_.desktop.notify(QStringLiteral("这节课结束了"),
                                ok ? QStringLiteral("完整的课堂总结已经生成，在 AI 要点最上面。记得点「停止」保存录音。")
                                   : QStringLiteral("记得点「停止」保存录音。"));
    });
}

void ClassLifecycle::makeFinalSummary(const std::optional<QString> &folder, const std::function<void(bool)> &done)
{
    if (state_.finalSummaryDone || !state_.provider || !state_.engine) {
        done(false);
        return;
    }
    state_.finalSummaryDone = true;
    const QString summary = state_.engine->currentSummary();
    Report report;
    report.transcript = state_.engine->fullTranscript(transcriptChars);
    report.title = state_.session ? state_.session->data().title : QStringLiteral("课堂笔记");
    const QString prompt = Prompts::fill(Prompts::finalSummary(),
                                         {{QStringLiteral("context"), report.transcript},
                                          {QStringLiteral("summary"), summary.isEmpty() ? QStringLiteral("(none)") : summary},
                                          {QStringLiteral("answer_language"), state_.config.answer().id}});
    const QString system = Prompts::system(state_.config);
    const auto provider = state_.provider;
    ChatTask::start(provider, system, {Turn{QStringLiteral("user"), prompt, {}}}, &context_,
                    [this, folder, done, report, provider, system](const std::optional<QString> &reply) mutable {
                        const QString text = Text::trimmed(reply.value_or(QString()));
                        // A failure text of the provider begins with "（": it is no notes.
                        if (text.isEmpty() || text.startsWith(u'（')) {
                            done(false);
                            return;
                        }
                        chat_.showSummary(text, true);
                        if (folder) {
                            if (auto data = SessionStore::load(*folder)) {
                                data->summary = text;
                                SessionStore::write(*data, *folder);
                                windows_.library.refresh(*folder);
                            }
                        }
                        done(true);
                        report.notes = text;
                        report.language = state_.config.answer().id;
                        report.liveEvents = state_.liveEvents.values();
                        report.mail = state_.config.emailReport.value_or(true) && Account::signedIn();
                        makeReport(report, provider, system);
                    });
}

void ClassLifecycle::makeReport(const Report &report, const std::shared_ptr<const AIProvider> &provider,
                                const QString &system)
{
    ReportMaker::make(provider, system, report.notes, report.transcript, report.language, &context_,
                      [this, report](const std::optional<ClassReport> &made) {
                          // Without a usable report the notes alone are kept: never lost.
                          deliver(report, made.value_or(ClassReport{report.notes, {}, std::nullopt}));
                      });
}

void ClassLifecycle::deliver(const Report &report, const ClassReport &made)
{
    InboxMessage message;
    message.title = report.title;
    message.report = made;
    message.report.events = mergedEvents(made.events, report.liveEvents);
    Inbox::add(message);
    if (!report.mail)
        return;
    ReportMail::send(message.title, message.date, message.report, &context_,
                     [this, message](const ReportMail::Outcome &failure) mutable {
                         if (failure) {
                             windows_.panel.addNote(u"课堂笔记邮件：" + *failure);
                             return;
                         }
                         message.emailed = true;
                         Inbox::update(message);
                         windows_.panel.addNote(u"📬 核对过的课堂笔记和思维导图已发到 "
                                                + Account::email().value_or(QStringLiteral("你的邮箱")) + u"。");
                     });
}

void ClassLifecycle::askToSave(const QString &name, const QString &category)
{
    if (!state_.session)
        return;
    const LiveSession &session = *state_.session;
    Desktop::SaveQuestion question;
    question.info = u"时长 " + SessionStore::clock(session.elapsed()) + u"，"
        + QString::number(session.data().lines.size()) + u" 句。名字和分类以后在「课程记录」里也能改。";
    question.name = name;
    question.category = category;
    question.categories = SessionStore::categories();
    windows_.desktop.askToSave(question, [this, guard = QPointer<QObject>(&context_)](const Desktop::SaveAnswer &answer) {
        if (!guard)
            return;
        if (answer.save)
            save(answer.name, answer.category);
        else
            confirmDiscard(answer.name, answer.category);
    });
}

void ClassLifecycle::save(const QString &name, const QString &category)
{
    if (!state_.session)
        return;
    const QString trimmedCategory = blankTrimmed(category);
    state_.session->finish(blankTrimmed(name),
                           trimmedCategory.isEmpty() ? std::nullopt : std::optional(trimmedCategory));
    const QString folder = state_.session->folder();
    const QString title = state_.session->data().title;
    rows_.setSession(nullptr);
    state_.session.reset();
    windows_.panel.addNote(u"已保存「" + title + u"」。点右上角「课程记录」可以回放录音、看文字稿和笔记。");
    enforceStorage();
    windows_.library.reload();
    if (state_.config.refineAfterClass != false && state_.config.sourceType == u"mic"
        && state_.config.recognizer.value_or(QStringLiteral("local")) == u"local")
        refine(folder, false);
}

void ClassLifecycle::confirmDiscard(const QString &name, const QString &category)
{
    windows_.desktop.confirmDiscard([this, guard = QPointer<QObject>(&context_), name, category](bool discard) {
        if (!guard || !state_.session)
            return;
        if (!discard) {
            // Back to the save question as the student left it, on the next turn of the loop.
            services_.schedule(0ms, [this, guard, name, category] {
                if (guard)
                    askToSave(name, category);
            });
            return;
        }
        state_.session->stopAudio();
        SessionStore::erase(state_.session->folder());
        rows_.setSession(nullptr);
        state_.session.reset();
        windows_.panel.addNote(QStringLiteral("这节课没有保存。"));
        windows_.library.reload();
    });
}

void ClassLifecycle::enforceStorage()
{
    if (state_.config.autoClean != true || state_.config.overflow.value_or(QStringLiteral("trimAudio")) != u"trimAudio")
        return;
    const int trimmed = SessionStore::enforce(state_.config.storageLimitGB.value_or(5),
                                              state_.session ? state_.session->folder() : QString());
    if (trimmed >= 1)
        windows_.panel.addNote(u"录音超过了本地存储上限：最早 " + QString::number(trimmed)
                               + u" 节课的录音已移到废纸篓，文字稿和笔记都还在。");
}

void ClassLifecycle::finishSilently()
{
    live_.stopEngine();
    state_.engine.reset();
    if (!state_.session)
        return;
    const SessionData &data = state_.session->data();
    state_.session->finish(data.title, data.category);
    rows_.setSession(nullptr);
    state_.session.reset();
}

void ClassLifecycle::refine(const QString &folder, bool manual)
{
    const auto data = SessionStore::load(folder);
    const QString audio = QDir(folder).filePath(audioFile);
    if (state_.refining.contains(folder) || !data || !QFileInfo::exists(audio))
        return;
    state_.refining.insert(folder);
    windows_.library.setRefining(state_.refining);
    windows_.library.refresh(folder);

    const Language &lecture = Language::find(data->lecture);
    QStringList locales{lecture.locale};
    for (const Language &extra : state_.config.extras()) {
        if (extra.id != lecture.id)
            locales << extra.locale;
    }
    // Recognition takes minutes of CPU: a thread of the global pool, never the main thread.
    PoolTask::start<Refined>(
        &context_,
        [audio, locales, recognizers = services_.recognizers] { return Refiner::transcribe(audio, locales, recognizers); },
        [this, folder, manual, liveLines = data->lines.size()](const Refined &result) {
            translateRefinement(folder, manual, liveLines, result);
        },
        *QThreadPool::globalInstance());
}

void ClassLifecycle::translateRefinement(const QString &folder, bool manual, qsizetype liveLines, const Refined &result)
{
    // Plausible only with at least half as many lines as the live transcript.
    if (!result || result->isEmpty() || result->size() * 2 < liveLines) {
        if (manual)
            windows_.panel.addNote(QStringLiteral("精修没有得到更好的结果，保留原来的文字稿。"));
        endRefinement(folder);
        return;
    }
    auto lines = std::make_shared<QList<SessionData::Line>>();
    for (const Refiner::Line &line : *result)
        lines->append({line.t, line.text, QString()});
    // One line after the other, each with its translation.
    auto next = std::make_shared<std::function<void(qsizetype)>>();
    *next = [this, guard = QPointer<QObject>(&context_), lines, next, folder](qsizetype index) {
        if (!guard)
            return;
        if (index == lines->size()) {
            applyRefinement(folder, *lines);
            *next = nullptr;   // the chain held itself; let it go
            return;
        }
        translator_.translate((*lines)[index].text, [guard, lines, next, index](const std::optional<QString> &text) {
            if (!guard || !*next)
                return;
            (*lines)[index].translation = text.value_or(QString());
            (*next)(index + 1);
        });
    };
    (*next)(0);
}

void ClassLifecycle::applyRefinement(const QString &folder, const QList<SessionData::Line> &lines)
{
    if (auto data = SessionStore::load(folder)) {
        if (data->refined != true)
            SessionStore::saveLiveTranscript(*data, folder);
        data->lines = lines;
        data->refined = true;
        SessionStore::write(*data, folder);
        windows_.panel.addNote(u"「" + data->title + u"」的文字稿已精修完成（" + QString::number(lines.size())
                               + u" 句），在「课程记录」里查看。");
    }
    endRefinement(folder);
}

void ClassLifecycle::endRefinement(const QString &folder)
{
    state_.refining.remove(folder);
    windows_.library.setRefining(state_.refining);
    windows_.library.refresh(folder);
}
