// builtin_support.h — shared checks and result helpers of the builtin functions (internal).
#pragma once

#include <cstddef>

#include "lang/item.h"

namespace tl {

/// Handler of one builtin function: parameters already evaluated, count checked.
using BuiltinHandler = int (*)(Item* params, int count);

/// Reports `number` with the caret at `at`.
[[nodiscard]] int fail_at(int number, const Item& at);

/// A numeric parameter as a double or, for long numbers, kind 14 (numeric
/// text with 17 digits or more becomes long). Strings and arrays are 144
/// (unlike the operators, functions take no numbers held in strings).
/// Returns 2 or 14, or a negated error.
[[nodiscard]] int numeric_parameter(Item& p);

/// A numeric parameter that must be a double: long numbers are converted
/// (164 when too large). Returns 0 or a negated error.
[[nodiscard]] int double_parameter(Item& p, double& out);

/// A string parameter (kind 3); anything else is 146. Returns 0 or a negated error.
[[nodiscard]] int string_parameter(const Item& p, const char*& out);

[[nodiscard]] int double_result(double x);
[[nodiscard]] int text_result(const char* text, std::size_t length);
/// The long number in long_state.work is the result.
[[nodiscard]] int long_result();

// Handlers, by table (builtin_numeric.cpp, builtin_strings.cpp).
int fn_abs_handler(Item* p, int count);
int fn_sgn_handler(Item* p, int count);
int fn_fix_handler(Item* p, int count);
int fn_int_handler(Item* p, int count);
int fn_sqr_handler(Item* p, int count);
int fn_long_handler(Item* p, int count);
int fn_short_handler(Item* p, int count);
int fn_tab_handler(Item* p, int count);
int fn_chr_handler(Item* p, int count);
int fn_left_handler(Item* p, int count);
int fn_right_handler(Item* p, int count);
int fn_mid_handler(Item* p, int count);
int fn_len_handler(Item* p, int count);
int fn_asc_handler(Item* p, int count);
int fn_val_handler(Item* p, int count);
int fn_hexconvert_handler(Item* p, int count);  // builtin_hexconvert.cpp

}  // namespace tl
