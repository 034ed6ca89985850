// lang_state.h — the language core's process-wide state in one record.
#pragma once

#include <chrono>

#include "lang/error_reporter.h"
#include "lang/predefined_variables.h"
#include "lang/random_numbers.h"
#include "lang/scan_caches.h"
#include "lang/scan_state.h"
#include "lang/user_functions.h"

namespace tl {

struct LangState {
    ReporterState reporter;
    PredefinedTable predefined;
    ScanState scan;
    UserFunctionTable functions;
    /// Start of the clock read by the timing functions.
    std::chrono::steady_clock::time_point start_time{};
    /// Set by the special function "starttimer", read by "endtimer".
    std::chrono::steady_clock::time_point stopwatch_start{};
    RandomState random;
    /// Angle unit of the trigonometric functions (DEGREES / RADIANS).
    bool degrees = false;
    /// Argument of the last sin() call, for "cossame" (long arguments are
    /// kept in long_state.last_sine_argument).
    double last_sine_argument = 0.0;
    bool last_sine_long = false;
    /// Look-ups remembered by the scanner (used while exec.caches_enabled).
    ScanCaches caches;
};

extern LangState lang;

}  // namespace tl
