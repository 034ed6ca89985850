// language_init.cpp — start-up order of the tables and areas, and the global reset.
#include "lang/language_init.h"

#include "exec/exec_state.h"
#include "exec/front_end.h"
#include "exec/memory_areas.h"
#include "lang/lang_state.h"
#include "longmath/long_state.h"

namespace tl {

LangState lang;
LongState long_state;

int init_language_tables(const SizingValues& sizes) {
    // The keyword tables are compile-time constants (keyword_tables.cpp).
    fill_predefined_variables(lang.predefined);
    lang.start_time = std::chrono::steady_clock::now();
    lang.stopwatch_start = lang.start_time;
    return init_memory_areas(sizes);
}

void reset_interpreter_state() {
    clear_memory();
    areas = MemoryAreas{};
    lang = LangState{};
    long_state = LongState{};
    exec = ExecState{};
    host.input_line.clear();
    host.flags.interrupt_requested = false;
    host.flags.step_requested = false;
    host.flags.step_mode = false;
}

}  // namespace tl
