#pragma once

// The local inbox of class reports: one JSON file, "messages.json" in the application's data
// folder, newest first, at most 200 messages. Every operation re-reads the file; no list is held
// in memory, and each read-change-write is one synchronous step.
//
// Main thread only; no lock. A file that exists but can't be decoded reads as an empty inbox and
// is moved aside ("messages.json.unreadable-<UTC time>") before the next save replaces it, so no
// message a user had is destroyed. File errors are otherwise swallowed.

#include "report/InboxMessage.h"

#include <QList>
#include <QString>
#include <QUuid>

#include <functional>

namespace Inbox {

inline constexpr qsizetype capacity = 200;

// Called after every save, also when writing failed; empty at first. Set by the coordinator.
extern std::function<void()> onChange;

// The file's path; its folder is created on each call.
QString path();

QList<InboxMessage> all();
int unread();
// At the front; the oldest beyond the capacity fall off.
void add(const InboxMessage &message);
// Replaces the message with the same id in its place; when there is none, nothing happens and
// onChange isn't called.
void update(const InboxMessage &message);
// Removes every message with that id; saves and calls onChange even when none matched.
void remove(const QUuid &id);

} // namespace Inbox
