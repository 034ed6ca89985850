// output_line.h — the output line of a file number: items, print zones, TAB, line ends.
//
// PRINT and WRITE share this writer; they differ only in the write mode. The
// statement's item loop owns one PrintSession for the duration of the
// statement and calls, in order:
//
//   begin_print                     once, after the file number is known
//   select_using_format             when the first item is USING "<format>"
//   for each item:
//     begin_print_item
//     set_tab_target                for TAB(n); the separator after it is ignored
//     or write_print_item + finish_print_item(semicolon after the item?)
//   end_print_line                  once, at the end of the statement
//
// Every routine that can fail reports its error once and returns the negated
// number; the part of the line already built stays in the line buffer.
#pragma once

#include <cstdint>
#include <string_view>

#include "exec/memory_areas.h"
#include "exec/number_format.h"

namespace tl {

/// Number format of WRITE (all digits of a double, blanks removed later).
inline constexpr const char* write_number_format = "%22.16g";
/// Used when a default format or tab width has been made unusable.
inline constexpr const char* fallback_print_format = "%13.6g";
inline constexpr const char* fallback_max_format = "%23.18g";
inline constexpr std::int32_t fallback_tab_width = 14;
/// Tab widths below 1 or from this value on are replaced by the default.
inline constexpr std::int32_t tab_width_limit = 80;
/// Long numbers too long for a WRITE line are cut into pieces of at most
/// this many digits.
inline constexpr std::uint32_t max_write_piece = 78;

/// What one PRINT or WRITE statement has chosen; lives on the item loop's stack.
struct PrintSession {
    int file = 0;  ///< index in the File Table, 0 = console
    bool write_mode = false;
    bool using_format = false;  ///< a USING format is in effect
    /// Column of the item being worked on, for the caret of an error report;
    /// the item loop sets it before each call.
    int item_column = 0;
    char format[number_text_size] = {};  ///< the current number format
};

/// Starts a PRINT (write_mode false) or WRITE on File Table entry `file`
/// (which must exist). The number format becomes the string variable
/// "printformat$$" when it exists and is usable, else "defaultprintformat$$";
/// a "%" format that is_valid_c_number_format rejects is not usable and is
/// passed over silently (the fallback being "%13.6g"). WRITE uses "%22.16g".
/// The file's tab width becomes the truncated double variable "printtabs", or
/// "defaultprinttabs" when that is missing or outside 1..79 (14 as the last
/// resort).
void begin_print(PrintSession& s, int file, bool write_mode);

/// USING: makes `format` the current number format ("max", in any letter
/// case, stands for "printformatmax$$"). Returns 0, or reports 73 "Invalid
/// Format string for PRINT USING." for an empty format or a "%" format that
/// is_valid_c_number_format rejects.
[[nodiscard]] int select_using_format(PrintSession& s, std::string_view format);

/// Before each item: unless the line continues, the TAB position is dropped.
void begin_print_item(PrintSession& s);

/// TAB(tab_argument): the target becomes the truncated argument minus 1 (a
/// 0-based column; none when below 0) and the line continues when there is
/// one. A target behind the column ends the line first (RANDOM: error 236,
/// SERIAL: error 318). Returns 0 or the negated error.
[[nodiscard]] int set_tab_target(PrintSession& s, double tab_argument);

/// Puts one evaluated item on the line. `kind` is the Item kind: 2 (double,
/// `number` is used and formatted with the current format), 3 (string), 16
/// (numeric text), 14 or 13 (long number: `text` is its plain text, or its
/// formatted text while USING is in effect). In write mode strings are
/// quoted and escaped, numbers lose their leading blanks, and a long number
/// longer than the width is written as "Length=<characters>" and quoted
/// pieces, each on its own line. Pads to the next print zone (after a comma)
/// or to a pending TAB position. An item that would pass the width gives
/// error 236 on a RANDOM and 318 on a SERIAL file; elsewhere it starts a new
/// line. Returns 0 or a negated error number (73 for an unusable format,
/// or what a line sink returned).
[[nodiscard]] int write_print_item(PrintSession& s, std::uint32_t kind, double number, std::string_view text);

/// After an item: the line continues when a ";" followed it.
void finish_print_item(PrintSession& s, bool semicolon);

/// Ends the statement. With `any_item_written` false (a bare PRINT) the
/// continue flag is cleared first. Unless the line continues, it is ended: a
/// RANDOM record is padded with blanks to the width and left in the buffer
/// for PUT; other lines get a line feed. A continued file line that has
/// reached its width is ended too. Except for RANDOM files, the buffer is
/// then written out (console and log, the file, or the line sink). Returns 0
/// or the negated error of the sink.
[[nodiscard]] int end_print_line(PrintSession& s, bool any_item_written);

}  // namespace tl
