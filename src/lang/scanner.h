// scanner.h — get_item: cuts the current statement into Items, one per call.
//
// The scanner does more than lexing: it looks names up in the keyword tables
// and the variable and array tables, fetches values, evaluates parenthesised
// sub-expressions and function calls (through the evaluator and do_function)
// and creates a variable the first time its name is met. Its state lives in
// lang.scan (scan_state.h).
#pragma once

#include <string_view>

#include "lang/item.h"
#include "lang/scan_state.h"

namespace tl {

// Mode bits of get_item (they combine).
/// Inside parentheses: ")" ends the list (consumed, returns 0); ":" or the
/// end of the text first is error 82.
inline constexpr int scan_in_parentheses = 1;
/// "," or ";" ends the current expression (consumed, returns 0).
inline constexpr int scan_separators = 2;
/// Statement position: statement keywords win over functions of the same
/// name; names of functions, special functions and predefined variables come
/// back unevaluated; constants return scan_number_constant / scan_string_constant.
inline constexpr int scan_statement_position = 8;
/// Declaration context (DIM): keywords, operators and constants are errors.
inline constexpr int scan_declaration = 16;
/// Names are looked up only among arrays and variables.
inline constexpr int scan_variables_only = 32;
/// "?", "??" and "//" are not shorthands.
inline constexpr int scan_no_shorthands = 64;
/// Reference only: an unknown name is not created (scan_name is returned;
/// -1 for a missing array, unreported).
inline constexpr int scan_reference_only = 128;
/// Declaration of new LONGMATH names (LONG): as scan_declaration, and an
/// existing simple variable is error 178; unknown names are created LONGMATH.
inline constexpr int scan_declare_new = 256;
/// No calls: function and array names come back unevaluated; a name followed
/// by "(" returns -1 (unreported).
inline constexpr int scan_no_calls = 512;
/// Name only: a name that is no keyword, predefined variable or function is
/// copied to lang.scan.name and scan_name is returned.
inline constexpr int scan_name_only = 4096;

inline constexpr int scan_declaration_context = scan_declaration | scan_declare_new;

inline constexpr int max_parameters = 7;

/// Points the scanner and the error reporter at a statement. `line` is the
/// whole NUL-terminated line (echoed by error reports); the statement starts
/// at `statement` (default: the line start) and runs to the end of the line —
/// the scanner stops by itself at a ":" outside a string. `end`, when given,
/// is where the statement's NUL is (the caller knows it already).
void begin_statement(const char* line, const char* statement = nullptr, const char* end = nullptr);

/// Scans the next Item. Returns its kind (> 0), 0 when nothing was produced
/// (end of text or ":", a closing ")" in scan_in_parentheses, a separator in
/// scan_separators; lang.scan.terminator tells which), the codes
/// scan_number_constant, scan_string_constant and scan_name, or a negated
/// error number (already reported, except the -1 of the modes above).
/// Values: kind 2 in item.number and lang.scan.result; kinds 3 and 16 as text
/// in lang.scan.buffer; kind 14 in long_state.work.
[[nodiscard]] int get_item(Item& item, int mode);

/// Moves the scan position past blanks and tabs.
void skip_blanks();
/// The next non-blank character, not consumed; 0 at the end of the text.
[[nodiscard]] char peek_nonblank();
/// Column of the scan position relative to the statement start.
[[nodiscard]] int scan_column();
/// After blanks, the letters at the scan position (not consumed).
[[nodiscard]] std::string_view peek_word();
/// After blanks, the name characters at the scan position (not consumed).
[[nodiscard]] std::string_view peek_name();
/// True when [p, end) starts with `word` (lower case; letter case of the text
/// ignored) as a whole name: no name character follows it.
[[nodiscard]] bool starts_with_word(const char* p, const char* end, const char* word);
/// After blanks, consumes `word` (as starts_with_word) when it comes next.
bool take_word(const char* word);

/// The character that "\\" followed by `c` stands for in a string constant:
/// r and n the line-end characters, + and - the console's character-set
/// switches (15 and 14), any other character itself.
[[nodiscard]] inline char escaped_character(char c) {
    switch (c) {
        case 'r': return '\r';
        case 'n': return '\n';
        case '+': return 15;
        case '-': return 14;
        default: return c;
    }
}

/// The last name scanned, or the element reference "name(s1,s2,...)" last fetched.
[[nodiscard]] const char* scan_name_text();

/// Parses "(p1, p2, ...)" at the scan position into `params` (room for
/// max_parameters). Doubles are stored by value, texts in temporary string
/// space, long numbers in temporary long numbers; a string or array parameter
/// that was one name alone keeps its reference. Returns the count or a
/// negated error number (69, 63, 326, 14, 11).
[[nodiscard]] int parse_parameter_list(Item* params);

/// True, with its double in `value`, when `text` is the text of the number
/// constant the last evaluation gave (the value strtod gives for it). False
/// when unknown or with the caches off: the caller converts the text itself.
[[nodiscard]] bool known_number_text(const char* text, double& value);

/// The text of a kind 3 or 16 Item held in temporary string space.
[[nodiscard]] const char* item_text(const Item& item);

/// The variable, element or array an Item was fetched from (empty if none).
[[nodiscard]] ValueReference item_reference(const Item& item);

}  // namespace tl
