// everyday_statements.h — handlers of the statements outside control flow,
// PRINT and the later subsystems: DEF, INPUT, DATA/READ/RESTORE, and the
// small ones (BEEP, CLS, COLOR, DELAY, CHDIR, SPAWN, HELP, SWAP, MID$,
// LSET/RSET, PRINTALL, DEBUGPRINT). Each is called with the scan position
// behind its keyword and returns 0, 1 (end the line) or a negated error.
#pragma once

#include <cstddef>

namespace tl {

// def_statement.cpp
[[nodiscard]] int do_def();

// input_statement.cpp: INPUT, and LINE INPUT (the keyword "line").
[[nodiscard]] int do_input();
/// Ends the program as END does, after "End of input - program ended.";
/// INPUT and LINE INPUT at the end of the input, and INKEY$ there (before
/// the next statement). Returns 0.
int end_of_input();
[[nodiscard]] int do_line_input();

// data_statements.cpp
[[nodiscard]] int do_data();
[[nodiscard]] int do_read();
[[nodiscard]] int do_restore();

// misc_statements.cpp
[[nodiscard]] int do_beep();
[[nodiscard]] int do_cls();
[[nodiscard]] int do_color();
[[nodiscard]] int do_delay();
[[nodiscard]] int do_chdir();
[[nodiscard]] int do_spawn();
[[nodiscard]] int do_help();

// variable_statements.cpp
[[nodiscard]] int do_swap();
[[nodiscard]] int do_mid_statement();
[[nodiscard]] int do_lset_rset(bool right);
[[nodiscard]] int do_printall();
[[nodiscard]] int do_debugprint();

/// The console attribute of COLOR (0 to 255: foreground in the low four
/// bits, background in the high four; bit values 1 blue, 2 green, 4 red,
/// 8 bright) as an ANSI escape sequence; returns its length.
std::size_t color_escape(int attribute, char (&out)[32]);

/// Number of help documents and their titles and file names (1-based).
inline constexpr int help_document_count = 15;
[[nodiscard]] const char* help_document_title(int number);
[[nodiscard]] const char* help_document_file(int number);
/// The folder of the help documents, "help" beside the executable, with its final "/".
void help_folder(char (&out)[4096]);

}  // namespace tl
