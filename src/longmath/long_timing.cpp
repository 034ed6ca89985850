// long_timing.cpp — the "Calc. Time" diagnostics of the long-number routines.
#include "longmath/long_timing.h"

#include <cstring>

#include "exec/front_end.h"
#include "lang/keyword_tables.h"
#include "longmath/long_state.h"

namespace tl {
namespace {

static_assert(lop_count == long_operation_count, "one timer per entry of the LONGMATH operations table");

struct LabelOwner {
    const char* prefix;
    int operation;
};

// The labels the long routines print, by the operation whose timer shows them.
// "old long-to-double" must come before nothing shorter that it starts with.
constexpr LabelOwner label_owners[] = {
    {"PI Calc.", lop_longpi},
    {"E  Calc.", lop_longe},
    {"SQR ", lop_sqr},
    {"EXP ", lop_exp},
    {"SIN ", lop_sin},
    {"COS ", lop_sin},
    {"TAN ", lop_sin},
    {"ATN ", lop_atn},
    {"LOG ", lop_log},
    {"LN stage", lop_log},
    {"ROOT ", lop_root},
    {"\"^\"", lop_power},
    {"Mult ", lop_mult},
    {"Div ", lop_div},
    {"Factorial ", lop_factorial},
    {"Mod ", lop_mod},
    {"Half ", lop_half},
    {"long_convert_in ", lop_convert},
    {"long-to-double ", lop_convert},
    {"old long-to-double ", lop_convert},
};

}  // namespace

double long_timer_stop(LongClock::time_point start) {
    return std::chrono::duration<double, std::milli>(LongClock::now() - start).count();
}

void set_long_timer(int operation, bool on) {
    LongMode& mode = long_state.mode;
    if (operation >= 0 && operation < long_operation_count) mode.timed[operation] = on;
    mode.timing = false;
    for (bool t : mode.timed) mode.timing = mode.timing || t;
}

void clear_long_timers() {
    for (bool& t : long_state.mode.timed) t = false;
    long_state.mode.timing = false;
}

bool long_timer_on(int operation) {
    return operation >= 0 && operation < long_operation_count && long_state.mode.timed[operation];
}

int long_timer_operation(const char* label) {
    for (const LabelOwner& o : label_owners) {
        if (std::strncmp(label, o.prefix, std::strlen(o.prefix)) == 0) return o.operation;
    }
    return -1;
}

void long_timer_report(const char* label, LongClock::time_point start) {
    if (!long_state.mode.timing) return;
    const int operation = long_timer_operation(label);
    if (operation >= 0 && !long_state.mode.timed[operation]) return;
    console_print("%s %8.3f ms.\n", label, long_timer_stop(start));
}

}  // namespace tl
