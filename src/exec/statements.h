// statements.h — do_keyword_statement: the dispatch of the 71 statement keywords.
#pragma once

namespace tl {

/// Executes the statement whose keyword (slot 0..70) was just scanned; the
/// scan position is behind the keyword. Returns 0 to go on with the next
/// statement of the line, 1 to end the line, or a negated error number.
[[nodiscard]] int do_keyword_statement(int slot);

// Handlers of the control-flow statements (control_flow.cpp).
[[nodiscard]] int do_if();
[[nodiscard]] int do_then();
[[nodiscard]] int do_else();
[[nodiscard]] int do_for();
[[nodiscard]] int do_next();
[[nodiscard]] int do_while();
[[nodiscard]] int do_wend();
[[nodiscard]] int do_goto();
[[nodiscard]] int do_gosub();
[[nodiscard]] int do_return();
[[nodiscard]] int do_on();
[[nodiscard]] int do_break();
[[nodiscard]] int do_continue();
[[nodiscard]] int do_end();
[[nodiscard]] int do_stop();
[[nodiscard]] int do_cont();
// DEGREES, RADIANS and RANDOMIZE (simple_statements.cpp).
[[nodiscard]] int do_degrees();
[[nodiscard]] int do_radians();
[[nodiscard]] int do_randomize();
/// PRINT (write_mode false) and WRITE (true), behind the keyword.
[[nodiscard]] int do_print(bool write_mode);

/// Moves the scan position to the end of the current statement (the next ":"
/// outside a string constant, or the end of the line) without evaluating.
void skip_statement_text();

/// Ends the current run loop: the scan position goes to the line end and the
/// program offset to the end of the text.
void end_run_loop();

/// True when the statement is at its end (blanks, then ":", a "//" comment or the line end).
[[nodiscard]] bool at_statement_end();

/// Truth of an evaluated condition of kind `kind` (IF and WHILE).
[[nodiscard]] bool condition_value(int kind);

}  // namespace tl
