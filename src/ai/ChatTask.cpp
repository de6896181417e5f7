#include "ai/ChatTask.h"

#include "platform/PoolTask.h"

namespace ChatTask {

QFuture<std::optional<QString>> start(std::shared_ptr<const AIProvider> provider, const QString &system,
                                      const QList<Turn> &turns, QObject *context, ReplyHandler onReply)
{
    return PoolTask::start<std::optional<QString>>(
        context, [provider = std::move(provider), system, turns] { return provider->chat(system, turns); },
        std::move(onReply));
}

} // namespace ChatTask
