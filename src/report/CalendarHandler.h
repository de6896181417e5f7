#pragma once

// The rule of the "calendar" message that the web pages send when the student adds an event:
// only a text body counts, and it goes to `run`; any other body is ignored. The windows install it
// under `name` on their page bridge. Pure; callable from any thread.

#include <QString>
#include <QVariant>

#include <functional>

namespace CalendarHandler {

inline constexpr auto name = "calendar";

void receive(const QVariant &body, const std::function<void(const QString &text)> &run);

} // namespace CalendarHandler
