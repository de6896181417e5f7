#pragma once

// What a running engine reports. Each starts as a function that does nothing. They are called on
// the engine's loop thread and on its model-call threads, in no order between threads, never
// while the engine holds its lock; the receiver moves to its own thread itself.

#include "engine/ClassEvent.h"
#include "engine/VocabularyTerm.h"

#include <QList>
#include <QString>

#include <functional>

struct EngineCallbacks
{
    // A card for the user: its kind (the card title), its text and the local time "HH:mm".
    std::function<void(const QString &kind, const QString &text, const QString &time)> onResult =
        [](const QString &, const QString &, const QString &) {};
    std::function<void(const QString &text)> onStatus = [](const QString &) {};
    // The unfinished draft changed.
    std::function<void(const QString &draft)> onCaption = [](const QString &) {};
    // A new finished line to show.
    std::function<void(const QString &line)> onLine = [](const QString &) {};
    // The running summary changed.
    std::function<void(const QString &summary)> onSummary = [](const QString &) {};
    std::function<void(const QList<VocabularyTerm> &terms)> onTerms = [](const QList<VocabularyTerm> &) {};
    // The teacher closed the class; at most once per engine.
    std::function<void()> onClassEnd = [] {};
    // A dated event not delivered before.
    std::function<void(const ClassEvent &event)> onEvent = [](const ClassEvent &) {};
};
