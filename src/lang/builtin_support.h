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

/// Sine and cosine of `x` in the current angle unit (builtin_math.cpp).
void sine_cosine(double x, double& s, double& c);

// Handlers, by file: builtin_numeric.cpp, builtin_math.cpp,
// builtin_strings.cpp, builtin_hex.cpp, builtin_io_checks.cpp, builtin_files.cpp.
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
int fn_cint_handler(Item* p, int count);
int fn_atn_handler(Item* p, int count);
int fn_acot_handler(Item* p, int count);
int fn_sin_handler(Item* p, int count);
int fn_cos_handler(Item* p, int count);
int fn_tan_handler(Item* p, int count);
int fn_cot_handler(Item* p, int count);
int fn_exp_handler(Item* p, int count);
int fn_exp10_handler(Item* p, int count);
int fn_log_handler(Item* p, int count);
int fn_log10_handler(Item* p, int count);
int fn_root_handler(Item* p, int count);
int fn_half_handler(Item* p, int count);
int fn_factorial_handler(Item* p, int count);
int fn_exponent_handler(Item* p, int count);
int fn_rnd_handler(Item* p, int count);
int fn_mod_handler(Item* p, int count);
int fn_setcolor_handler(Item* p, int count);
int fn_str_handler(Item* p, int count);
int fn_string_handler(Item* p, int count);
int fn_space_handler(Item* p, int count);
int fn_instr_handler(Item* p, int count);
int fn_tolower_handler(Item* p, int count);
int fn_toupper_handler(Item* p, int count);
int fn_hex_handler(Item* p, int count);
int fn_hexconvert_handler(Item* p, int count);  // builtin_hexconvert.cpp
int fn_eof_handler(Item* p, int count);
int fn_read_handler(Item* p, int count);
int fn_input_handler(Item* p, int count);
int fn_browsecommports_handler(Item* p, int count);
int fn_filesize_handler(Item* p, int count);
int fn_open_handler(Item* p, int count);
int fn_browse_handler(Item* p, int count);
int fn_select_handler(Item* p, int count);
int fn_messagebox_handler(Item* p, int count);
int fn_makedatetime_handler(Item* p, int count);  // builtin_datetime.cpp
int fn_formatdatetime_handler(Item* p, int count);

// Special functions (builtin_special.cpp).
int special_longpi();
int special_longe();
int special_remainder();
int special_cossame();
int special_checkdegrees();
int special_starttimer();
int special_endtimer();
int special_matherror();
int special_workingdir();
int special_programdir();
int special_checkmouseclick();
int special_inkey();
int special_choosefont();

}  // namespace tl
