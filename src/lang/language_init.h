// language_init.h — start-up of the interpreter core and the reset of all its state.
#pragma once

#include "exec/sizing_settings.h"

namespace tl {

/// Fills the predefined variables, starts the clock of the timing functions
/// and allocates every memory area from `sizes`. Returns 0, or the negated
/// number of the first error (already reported); start-up stops then.
[[nodiscard]] int init_language_tables(const SizingValues& sizes);

/// Returns every process-wide record of the core to its start-up state
/// (the front end and log stay installed). Tests and the fuzzer call it first.
void reset_interpreter_state();

}  // namespace tl
