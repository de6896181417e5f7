#pragma once

// How a main-thread caller asks a model without blocking: chat() runs as a task on the network
// pool, and onReply runs afterwards on the thread of context (the main thread for any window or
// controller), unless context was destroyed first, in which case nothing is called.
//
// Call start() on context's thread. The task holds the provider for as long as it runs, so the
// caller may drop or replace its own pointer at once.

#include "ai/AIProvider.h"

#include <QFuture>
#include <QObject>

#include <functional>
#include <memory>

namespace ChatTask {

using ReplyHandler = std::function<void(const std::optional<QString> &reply)>;

// The future of the chat itself; onReply runs after it has finished.
QFuture<std::optional<QString>> start(std::shared_ptr<const AIProvider> provider, const QString &system,
                                      const QList<Turn> &turns, QObject *context, ReplyHandler onReply);

} // namespace ChatTask
