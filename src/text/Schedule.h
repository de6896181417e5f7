#pragma once

// A one-shot timer as a value: runs a task on the main thread after a delay. The application
// uses Qt's timers; tests hand in their own, driven by a manual clock.

#include <chrono>
#include <functional>

namespace Text {

using Schedule = std::function<void(std::chrono::milliseconds delay, std::function<void()> task)>;

// Single-shot timers of the calling thread's event loop (the main thread's).
Schedule mainThreadSchedule();

} // namespace Text
