// file_statements.h — OPEN, CLOSE, FIELD, GET, PUT and the "#" forms of PRINT, WRITE, INPUT and LINE INPUT.
#pragma once

namespace tl {

[[nodiscard]] int do_open();
[[nodiscard]] int do_close();
[[nodiscard]] int do_field();
[[nodiscard]] int do_get();
[[nodiscard]] int do_put();

/// PRINT # and WRITE #, with the scan position on the "#": scans the file
/// number and its separator. Returns the File Table entry to print on; or 0
/// when the statement is done (a BINARY file, whose strings are written
/// here); or a negated error (reported).
[[nodiscard]] int start_print_to_file(bool write_mode);
/// INPUT # and LINE INPUT #, with the scan position on the "#".
[[nodiscard]] int do_input_from_file(bool line_input);

}  // namespace tl
