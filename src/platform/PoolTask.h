#pragma once

// Work for a main-thread caller: `work` runs as a task on a pool (the network pool unless told
// otherwise), and `done` runs afterwards with its result on the thread of `context`, unless
// context was destroyed first, in which case nothing is called. Call start() on context's thread.

#include "platform/Http.h"

#include <QFuture>
#include <QFutureWatcher>
#include <QObject>
#include <QtConcurrent/QtConcurrentRun>

#include <functional>

namespace PoolTask {

template<typename T>
QFuture<T> start(QObject *context, std::function<T()> work, std::function<void(const T &)> done,
                 QThreadPool &pool = Http::taskPool())
{
    const QFuture<T> future = QtConcurrent::run(&pool, std::move(work));
    // A watcher owned by context rather than QFuture::then(context, ...): Qt 6.4's then() asserts
    // when the context is gone by the time the task ends, while a child watcher simply dies with it.
    auto *watcher = new QFutureWatcher<T>(context);
    QObject::connect(watcher, &QFutureWatcherBase::finished, watcher, [watcher, done = std::move(done)] {
        done(watcher->result());
        watcher->deleteLater();
    });
    watcher->setFuture(future);
    return future;
}

} // namespace PoolTask
