// lang_state.h — the language core's process-wide state in one record.
#pragma once

#include <chrono>

#include "lang/error_reporter.h"
#include "lang/predefined_variables.h"
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
};

extern LangState lang;

}  // namespace tl
