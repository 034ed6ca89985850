// long_timing.cpp — the "Calc. Time" diagnostics of the long-number routines.
#include "longmath/long_timing.h"

#include "exec/front_end.h"
#include "longmath/long_state.h"

namespace tl {

double long_timer_stop(LongClock::time_point start) {
    return std::chrono::duration<double, std::milli>(LongClock::now() - start).count();
}

void long_timer_report(const char* label, LongClock::time_point start) {
    if (!long_state.mode.timing) return;
    console_print("%s %8.3f ms.\n", label, long_timer_stop(start));
}

}  // namespace tl
