// language_init.cpp — start-up order of the tables and areas, and the global reset.
#include "lang/language_init.h"

#include <cstdlib>
#include <cstring>

#include "exec/exec_state.h"
#include "exec/front_end.h"
#include "exec/long_text_buffers.h"
#include "exec/memory_areas.h"
#include "graph/graph_state.h"
#include "lang/datetime_state.h"
#include "lang/lang_state.h"
#include "longmath/long_state.h"

namespace tl {

LangState lang;
LongState long_state;

int init_language_tables(const SizingValues& sizes) {
    // The keyword tables are compile-time constants (keyword_tables.cpp).
    // TESSALINE_NO_CACHE=1 (any value but "0") makes every look-up go the long way.
    const char* no_cache = std::getenv("TESSALINE_NO_CACHE");
    exec.caches_enabled = no_cache == nullptr || *no_cache == 0 || std::strcmp(no_cache, "0") == 0;
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
    graph = GraphState{};
    reset_datetime_state();
    long_text_buffers = LongTextBuffers{};
    host.input_line.clear();
    host.flags.interrupt_requested = false;
    host.flags.step_requested = false;
    host.flags.step_mode = false;
}

}  // namespace tl
