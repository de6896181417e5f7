#pragma once

// Bounds on real elapsed time stretch in sanitizer builds, which run several times slower: a
// bound is there to catch waiting on the wrong thing, not to time the instrumentation.
#if defined(__SANITIZE_ADDRESS__)
inline constexpr int timeScale = 5;
#else
inline constexpr int timeScale = 1;
#endif
