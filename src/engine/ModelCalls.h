#pragma once

// The live model calls of an engine. Each operation returns at once: the call to the fast
// provider runs as a task on the network pool, holding the engine's shared state, and
// reports through its callbacks. Without a fast provider nothing is sent. Callable from any
// thread.

#include "engine/EngineState.h"

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <memory>

namespace ModelCalls {

// A card of the kind: the reply, unless blank or "SKIP". A failure text is shown too.
void ask(std::shared_ptr<EngineState> state, const QString &kind, const QString &prompt);
// A new running summary; clears summaryBusy when done.
void summarize(std::shared_ptr<EngineState> state, const QString &prompt);
// New vocabulary; clears vocabularyBusy when done.
void collectVocabulary(std::shared_ptr<EngineState> state, const QString &prompt);
// The time a card or a summary is stamped with: local two-digit hour and minute, on a 12-hour
// dial (without its mark) where the user's locale uses one.
QString cardTime(const QDateTime &now);
// Dated events announced in the sentences, each delivered once.
void findEvents(std::shared_ptr<EngineState> state, const QStringList &sentences, const QString &context);

} // namespace ModelCalls
