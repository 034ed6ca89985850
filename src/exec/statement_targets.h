// statement_targets.h — variables named by INPUT, READ, SWAP, LSET/RSET and
// the like, and the comma-separated values typed for INPUT or kept in DATA.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tl {

/// A variable or array element that a statement writes into. While the
/// statement is only checked or passed over the storage may be unknown
/// (null pointers); `type` is always known.
struct VariableTarget {
    std::uint32_t type = 0;  ///< 2 double, 3 string, 14 LONGMATH
    double* number = nullptr;           ///< type 2
    std::uint32_t* word = nullptr;      ///< types 3 and 14: string offset or long reference
    int column = 0;                     ///< where the name starts, for carets
    char name[96] = {};  ///< the name as written (with subscripts), for displays
};

/// Scans one variable or array element at the scan position. Anything else
/// (a constant, an expression, a function, a predefined variable, a whole
/// array) is reported as `not_variable_error`; an argument of a
/// user-defined function is error 204. Returns 0 or a negated error.
[[nodiscard]] int scan_target(VariableTarget& target, int not_variable_error);

/// Consumes a "," and returns true; false when the statement ends here.
/// Anything else is reported as error 230 and its negated number returned.
[[nodiscard]] int next_target_separator();

/// Evaluates a numeric expression at the scan position (up to the end of
/// the statement, or a separator when `mode` says so) into `out`. Returns 1,
/// 0 when there is no expression, or a negated error (144 for a string).
[[nodiscard]] int evaluate_number(double& out, int mode = 0);

/// The value an evaluation of kind `kind` left, as a double in `out`: 1 for
/// a number, 0 when `kind` is no number, or the negated error of a long
/// number beyond the double range (reported at `column`).
[[nodiscard]] int evaluated_double(int kind, int column, double& out);

/// True when `text` (blanks around it allowed) is a decimal number in the
/// language's form: sign, digits with at most one point, optional exponent.
/// An empty text counts as a number (zero).
[[nodiscard]] bool is_number_entry(std::string_view text);

/// Stores a number given as text (already checked with entry_fault) into a
/// double or LONGMATH target. Returns 0 or a negated error.
[[nodiscard]] int store_number_text(const VariableTarget& target, std::string_view text);

/// Stores a string into a string target. Returns 0 or a negated error.
[[nodiscard]] int store_text(const VariableTarget& target, std::string_view text);

/// One value of an INPUT line or a DATA list.
struct ValueItem {
    char text[256] = {};
    std::size_t length = 0;
    bool quoted = false;
    bool too_long = false;  ///< the value has more characters than a string holds
    int column = 0;  ///< offset of the value's first character in the list
    std::string_view whole;  ///< an unquoted value as written, however long (in the list)
};

/// Reads the value at `*pos` of the list text [list, end): a quoted string
/// (with the escapes of string constants) or the text up to the next comma,
/// without surrounding blanks. Leaves `*pos` at the next value after a comma,
/// or at `end` when the list is used up (`more` tells whether a comma
/// followed). Returns 0, or the positive error number 116 (quote not closed)
/// or 119 (something other than a comma after a quoted value); `error_at`
/// is then the offset of the fault.
[[nodiscard]] int read_value_item(const char* list, const char* end, const char*& pos, ValueItem& item,
                                  bool& more, int& error_at);

/// Whether `item` can be stored into a target of `type` exactly as written:
/// 0, or the positive number of the message that says why not — a string
/// longer than a string holds (101), text or a quoted value for a number
/// (115), a number beyond the range of a double (164), or a number string
/// that a LONGMATH number cannot take (148-151, such as an exponent out of
/// range). A number too small for a double is rounded to the nearest one
/// (zero below the smallest), as every decimal number is.
[[nodiscard]] int entry_fault(std::uint32_t type, const ValueItem& item);

/// The text to store for `item`: the value as written (never cut for a
/// number; strings are checked by entry_fault first).
[[nodiscard]] std::string_view entry_text(const ValueItem& item);

/// True when the statement being executed is on the line typed at the
/// prompt (not in the program that a typed GOTO or GOSUB went into).
[[nodiscard]] bool typed_at_prompt();

/// True when nothing but blanks is left in [pos, end).
[[nodiscard]] bool only_blanks(const char* pos, const char* end);

}  // namespace tl
