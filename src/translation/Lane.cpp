#include "translation/Lane.h"

#include "platform/Http.h"

#include <QCoreApplication>
#include <QThreadPool>

#include <deque>
#include <mutex>

struct Lane::Queue
{
    struct Item
    {
        QString text;
        Done done;
    };

    QString source;
    QString target;
    QList<std::shared_ptr<const TranslationEngine>> engines;
    std::mutex mutex;
    std::deque<Item> items;
    bool draining = false;  // a task is working through items
    bool finished = false;

    bool isFinished()
    {
        std::scoped_lock lock(mutex);
        return finished;
    }

    std::optional<QString> translate(const QString &text) const
    {
        for (const auto &engine : engines) {
            const TranslationEngine::Result result = engine->translate(text, source, target);
            if (result.outcome != TranslationEngine::Outcome::Unreachable)
                return result.outcome == TranslationEngine::Outcome::Translated ? std::optional(result.text)
                                                                                 : std::nullopt;
        }
        return std::nullopt;
    }

    // Runs on the pool until the queue is empty; at most one such task per lane.
    static void drain(const std::shared_ptr<Queue> &queue)
    {
        for (;;) {
            Item item;
            {
                std::scoped_lock lock(queue->mutex);
                if (queue->finished || queue->items.empty()) {
                    queue->draining = false;
                    return;
                }
                item = std::move(queue->items.front());
                queue->items.pop_front();
            }
            const std::optional<QString> result = queue->translate(item.text);
            QCoreApplication *application = QCoreApplication::instance();
            if (!application)
                return;
            QMetaObject::invokeMethod(
                application,
                [queue, done = std::move(item.done), result] {
                    if (!queue->isFinished())
                        done(result);
                },
                Qt::QueuedConnection);
        }
    }
};

Lane::Lane(QString source, QString target, QList<std::shared_ptr<const TranslationEngine>> engines)
    : queue_(std::make_shared<Queue>())
{
    queue_->source = std::move(source);
    queue_->target = std::move(target);
    queue_->engines = std::move(engines);
}

Lane::~Lane()
{
    std::scoped_lock lock(queue_->mutex);
    queue_->finished = true;
    queue_->items.clear();
}

void Lane::add(const QString &text, Done done)
{
    {
        std::scoped_lock lock(queue_->mutex);
        queue_->items.push_back({text, std::move(done)});
        if (queue_->draining)
            return;
        queue_->draining = true;
    }
    Http::taskPool().start([queue = queue_] { Queue::drain(queue); });
}
