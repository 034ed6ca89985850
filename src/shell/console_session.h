// console_session.h — the command loop of Console mode and its ending.
#pragma once

#include <string>

#include "exec/front_end.h"

namespace tl::shell {

inline constexpr const char* command_prompt = "Command: ";
inline constexpr int recent_command_count = 20;

/// Runs one typed command line in the interpreter (the interrupt flag is
/// cleared first). Returns 0 or the negated error of a failed command.
int execute_typed_line(const std::string& line);

/// Loads and runs `file` as the command `run "file"` does; true when the
/// program ended without an error.
bool run_program_file(const std::string& file);

/// Runs the loaded program as the command "run" does; true when it ended
/// without an error.
bool run_loaded_program();

/// Prompts with "Command: " (or "Stepping -- Command: " while a program is
/// paused) and runs each line until an empty line or the end of input.
void run_console_loop(FrontEnd& front_end);

/// Prints "Press <enter> to terminate program.\n" and waits for one line of
/// input (returns at once at the end of input).
void wait_before_exit(FrontEnd& front_end);

}  // namespace tl::shell
