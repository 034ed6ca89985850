// console_session.h — the command loop of Console mode and its ending.
#pragma once

#include <string>

#include "exec/front_end.h"

namespace tl::shell {

inline constexpr const char* command_prompt = "Command: ";

/// Hands one typed command line to the interpreter.
/// Placeholder: the statement executor does not exist yet, so nothing runs.
void run_command_line(const std::string& line);

/// Prompts with "Command: " and runs each line until an empty line or the end
/// of input.
void run_console_loop(FrontEnd& front_end);

/// Prints "Press <enter> to terminate program.\n" and waits for one line of
/// input (returns at once at the end of input).
void wait_before_exit(FrontEnd& front_end);

}  // namespace tl::shell
