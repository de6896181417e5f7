#pragma once

// Network work for a main-thread caller: `work` runs as a task on Http::taskPool(), and `done`
// runs afterwards with its result on the thread of `context`, unless context was destroyed first,
// in which case nothing is called. Call start() on context's thread.

#include "platform/Http.h"

#include <QFuture>
#include <QFutureWatcher>
#include <QObject>
#include <QtConcurrent/QtConcurrentRun>

#include <functional>

namespace PoolTask {

template<typename T>
QFuture<T> start(QObject *context, std::function<T()> work, std::function<void(const T &)> done)
{
    const QFuture<T> future = QtConcurrent::run(&Http::taskPool(), std::move(work));
    // A watcher owned by context: it dies with it, so a late result finds nobody to call.
    auto *watcher = new QFutureWatcher<T>(context);
    QObject::connect(watcher, &QFutureWatcherBase::finished, watcher, [watcher, done = std::move(done)] {
        done(watcher->result());
        watcher->deleteLater();
    });
    watcher->setFuture(future);
    return future;
}

} // namespace PoolTask
