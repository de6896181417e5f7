#pragma once

// Puts one class event into the user's calendar without asking for any permission: a one-event
// iCalendar file in the temporary folder, handed to the desktop, whose calendar application
// takes it from there. Times are floating local times; an event without a time is an all-day
// event, one with a time lasts an hour (at 23:xx the end equals the start), with an alarm a day
// before.
//
// Main thread. No state apart from the opener, which tests replace so that no application starts.

#include "engine/ClassEvent.h"

#include <QDateTime>
#include <QString>
#include <QUrl>

#include <functional>

namespace CalendarExport {

using Opener = std::function<void(const QUrl &file)>;

// The file's text, lines joined and ended by CR LF. `uid` is the part before "@"; `stamp` is now.
QString text(const ClassEvent &event, const QString &course, const QString &uid, const QDateTime &stamp);
// Writes "Quillet-xxxxxxxx.ics" into the temporary folder and opens it; a failed write is dropped
// and the file is opened anyway. Reports nothing.
void add(const ClassEvent &event, const QString &course);
// QDesktopServices::openUrl until replaced; an empty opener restores it.
void setOpener(Opener opener);

} // namespace CalendarExport
