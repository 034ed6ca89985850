// long_timing.h — the "Calc. Time" diagnostics of the long-number routines.
//
// Each timed operation belongs to one entry of the LONGMATH operations table
// (lop_atn .. lop_convert in lang/keyword_tables.h); DEBUG "timer" switches
// the entries on and off one by one.
#pragma once

#include <chrono>

namespace tl {

using LongClock = std::chrono::steady_clock;

/// The labels of the operations timed by their callers (the builtin functions
/// and the LONG statement print the same text).
inline constexpr const char* root_time_label = "ROOT Calc. Time: ";
inline constexpr const char* half_time_label = "Half Calc. Time: ";
inline constexpr const char* factorial_time_label = "Factorial Calc. Time: ";
inline constexpr const char* power_time_label = "\"^\"   Calc. Time: ";

/// A clock reading, taken when an operation starts.
inline LongClock::time_point long_timer_start() { return LongClock::now(); }

/// Milliseconds since `start`.
double long_timer_stop(LongClock::time_point start);

/// Switches the timer of operation `operation` (0..14) on or off.
void set_long_timer(int operation, bool on);

/// Switches every timer off.
void clear_long_timers();

/// True while the timer of `operation` is on.
[[nodiscard]] bool long_timer_on(int operation);

/// The operation a timing label belongs to ("Mult Calc. Time: " is mult,
/// "long_convert_in Time:      " is convert, ...), or -1 for a label of none.
[[nodiscard]] int long_timer_operation(const char* label);

/// Prints "<label> <ms> ms." (the time since `start`) while the timer of the
/// label's operation is on; a label of no operation prints while any timer is on.
void long_timer_report(const char* label, LongClock::time_point start);

}  // namespace tl
