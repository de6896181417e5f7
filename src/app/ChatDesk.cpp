#include "app/ChatDesk.h"

#include "ai/ChatTask.h"
#include "engine/ModelCalls.h"
#include "engine/Prompts.h"
#include "report/CalendarExport.h"
#include "session/SessionStore.h"
#include "text/Characters.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QUuid>

ChatDesk::ChatDesk(AppWindows &windows, AppState &state, const Text::Clock &clock)
    : windows_(windows)
    , state_(state)
    , clock_(clock)
{
}

void ChatDesk::feeds(const std::function<void(FeedSurface &)> &show)
{
    show(windows_.panel);
    show(windows_.chat);
}

void ChatDesk::note(const QString &text)
{
    feeds([&](FeedSurface &feed) { feed.addNote(text); });
}

void ChatDesk::chat(const QString &text, const QList<Attachment> &attachments)
{
    const auto provider = state_.provider;
    if (!provider) {
        note(QStringLiteral("还没有可用的 AI，不能对话。点主窗口右上角齿轮选一个 AI 并填上 API key。"));
        return;
    }
    if (state_.chatBusy) {
        note(provider->displayName() + QStringLiteral(" 还在回答上一条，稍等一下。"));
        return;
    }
    QStringList shown{text};
    for (const Attachment &file : attachments)
        shown << u"📎 " + file.name;
    feeds([&](FeedSurface &feed) { feed.showYou(shown.join(u'\n'), attachments); });
    state_.chatBusy = true;

    const QString context = state_.engine ? state_.engine->recentTranscript(provider->contextChars(), 60) : QString();
    const QString prompt = Prompts::fill(Prompts::chat(), {{QStringLiteral("context"), context},
                                                           {QStringLiteral("message"), text}});
    QList<Turn> turns = state_.history;
    turns.append(Turn{QStringLiteral("user"), prompt, attachments});
    ChatTask::start(provider, Prompts::system(state_.config), turns, &context_,
                    [this, provider, text, attachments](const std::optional<QString> &reply) {
                        QString answer = Text::trimmed(reply.value_or(QString()));
                        if (answer.isEmpty())
                            answer = u"（" + provider->displayName() + u" 没有回答）";
                        // The plain message goes into the history: the transcript isn't repeated in
                        // every old turn, while attached files go along again.
                        state_.history.append(Turn{QStringLiteral("user"), text, attachments});
                        state_.history.append(Turn{QStringLiteral("assistant"), answer, {}});
                        state_.chatBusy = false;
                        feeds([&](FeedSurface &feed) { feed.addReply(answer); });
                    });
}

void ChatDesk::showSummary(const QString &text, bool final)
{
    const QString stamp = ModelCalls::cardTime(clock_.now());
    feeds([&](FeedSurface &feed) { feed.setSummary(text, stamp, final); });
    if (state_.session)
        state_.session->setSummary(text);
}

void ChatDesk::showEvent(const ClassEvent &event)
{
    const QString id = QUuid::createUuid().toString(QUuid::WithoutBraces).left(8);
    state_.liveEvents.insert(id, event);
    feeds([&](FeedSurface &feed) { feed.addEvent(id, event); });
}

void ChatDesk::addToCalendar(const QString &id)
{
    const auto event = state_.liveEvents.constFind(id);
    if (event == state_.liveEvents.cend())
        return;
    CalendarExport::add(*event, state_.session ? state_.session->data().title : QString());
    feeds([&](FeedSurface &feed) { feed.markEventAdded(id); });
}

void ChatDesk::openNotes()
{
    QDir().mkpath(SessionStore::root());
    windows_.desktop.open(SessionStore::root());
}

void ChatDesk::openWordBook()
{
    if (QFileInfo::exists(SessionStore::wordBook()))
        windows_.desktop.open(SessionStore::wordBook());
    else
        windows_.panel.addNote(
            QStringLiteral("单词本还是空的：上课时在 AI 要点里打开「专业词汇」，课上的专业术语会自动记进来。"));
}

void ChatDesk::showAbout()
{
    windows_.desktop.showAbout(u"Quillet Beta " + QCoreApplication::applicationVersion(),
                               QStringLiteral("上课实时翻译和 AI 助手（测试版）"));
}
