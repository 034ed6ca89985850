// long_timing.h — the "Calc. Time" diagnostics of the long-number routines.
#pragma once

#include <chrono>

namespace tl {

using LongClock = std::chrono::steady_clock;

/// A clock reading, taken when an operation starts.
inline LongClock::time_point long_timer_start() { return LongClock::now(); }

/// Milliseconds since `start`.
double long_timer_stop(LongClock::time_point start);

/// Prints "<label> <ms> ms." (the time since `start`) while timing is on.
void long_timer_report(const char* label, LongClock::time_point start);

}  // namespace tl
