// run_loop.h — the engine that walks the program text: run loop, lines, statements,
// assignment, commands, stepping, interruption and command lines.
#pragma once

#include <cstdint>

namespace tl {

/// Runs the program from `offset` until END, the end of the text, an error,
/// or (in a recursive call for a block body) NEXT, WEND or RETURN. The body of
/// a FOR or WHILE starts in the middle of a line: exec.position.resume_in_line.
/// Returns 0 or a negated error number.
[[nodiscard]] int run_program_from(std::uint32_t offset);

/// Runs the statements of the current line from the scan position.
/// `at_line_start` says whether the line's statement number is still ahead.
[[nodiscard]] int process_line(bool at_line_start);

/// Executes one statement at the scan position: 0 to go on, 1 to end the
/// line, or a negated error number.
[[nodiscard]] int execute_statement();

/// Executes a line typed at the prompt in the context of the loaded program.
/// Returns 0 or a negated error number.
[[nodiscard]] int run_command_line(const char* text);

/// "run" without a name: check result, reset, run from offset 0.
[[nodiscard]] int start_program(bool keep_data);

/// The interruption check installed for long computations: pumps events and
/// returns a negated error when the user interrupted the program.
[[nodiscard]] int poll_interruption();

/// Ends the running program as the user's interruption does (without the report).
void end_program_by_interruption();

}  // namespace tl
