#pragma once

// The one log of the application: a plain text file readable only by its owner (it holds what was
// said in class), one line per event, an ISO 8601 time, a blank and the message; line breaks in a
// message show as "⏎". Callable from any thread; write failures are ignored.

#include <QString>

namespace Log {

// <XDG data home>/Quillet/logs/cloud.log, where users are told to look for it
QString path();
void write(const QString &message);

} // namespace Log
