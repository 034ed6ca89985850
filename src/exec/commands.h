// commands.h — the immediate commands and the load-and-run sequence.
#pragma once

#include <cstdint>

namespace tl {

/// Runs command slot 0..4 ("list", "run", "houseclean", "clear", "load");
/// the scan position is behind the command word.
[[nodiscard]] int do_command(int slot);

/// The check pass over the whole program text: builds the Statement Number
/// and Data Statement Tables. Returns 0, or a negated error (the program is
/// then marked as having errors).
[[nodiscard]] int check_program();

/// The load-and-run sequence for "run" and "load" with a file name and for
/// CHAIN; `file` null runs the loaded text. Returns 0 or a negated error.
[[nodiscard]] int load_and_run(const char* file, bool load_only, bool keep_data);

/// Reports `number` with the caret at `column` of the current statement.
[[nodiscard]] int error_at_column(int number, int column);

}  // namespace tl
