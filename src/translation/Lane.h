#pragma once

// The queue of one source language: its texts are translated strictly one after the other, in
// the order added, while other lanes run side by side.
//
// add() is called on the main thread and never blocks; the translations run as one task at a time
// on the network pool; each completion is called on the main thread, in the order of the texts.
// Destroying a lane finishes its queue: texts still waiting or in flight get no completion.

#include "translation/TranslationEngine.h"

#include <QList>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

class Lane final
{
public:
    using Done = std::function<void(const std::optional<QString> &)>;

    // The engines are asked in order; the next one takes a text only when the one before was
    // Unreachable.
    Lane(QString source, QString target, QList<std::shared_ptr<const TranslationEngine>> engines);
    ~Lane();
    Lane(const Lane &) = delete;
    Lane &operator=(const Lane &) = delete;
    Lane(Lane &&) = delete;
    Lane &operator=(Lane &&) = delete;

    void add(const QString &text, Done done);

private:
    struct Queue;

    std::shared_ptr<Queue> queue_;
};
