#pragma once

// Runs the main thread's event loop until a condition holds, for tests whose results arrive as
// queued calls on the main thread.

#include <chrono>
#include <functional>

// False when the condition still fails after the time-out.
bool runEventsUntil(const std::function<bool()> &done,
                    std::chrono::milliseconds timeout = std::chrono::seconds(10));
// Runs the event loop for the whole duration: for checking that nothing more arrives.
void runEventsFor(std::chrono::milliseconds duration);
