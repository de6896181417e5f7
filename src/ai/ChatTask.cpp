#include "ai/ChatTask.h"

#include "platform/Http.h"

#include <QFutureWatcher>
#include <QtConcurrent/QtConcurrentRun>

namespace ChatTask {

QFuture<std::optional<QString>> start(std::shared_ptr<const AIProvider> provider, const QString &system,
                                      const QList<Turn> &turns, QObject *context, ReplyHandler onReply)
{
    const QFuture<std::optional<QString>> chat = QtConcurrent::run(
        &Http::taskPool(), [provider = std::move(provider), system, turns] { return provider->chat(system, turns); });
    // A watcher owned by context rather than QFuture::then(context, ...): Qt 6.4's then() asserts
    // when the context is gone by the time the task ends, while a child watcher simply dies with it.
    auto *watcher = new QFutureWatcher<std::optional<QString>>(context);
    QObject::connect(watcher, &QFutureWatcherBase::finished, watcher, [watcher, onReply = std::move(onReply)] {
        onReply(watcher->result());
        watcher->deleteLater();
    });
    watcher->setFuture(chat);
    return chat;
}

} // namespace ChatTask
