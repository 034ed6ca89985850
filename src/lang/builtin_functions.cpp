// builtin_functions.cpp — dispatch of the builtin and special functions and their common checks.
#include "lang/builtin_functions.h"

#include <cstring>

#include "lang/builtin_support.h"
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "lang/keyword_tables.h"
#include "lang/lang_state.h"
#include "lang/numeric_operands.h"
#include "lang/scanner.h"
#include "lang/user_function_call.h"
#include "longmath/long_convert.h"
#include "longmath/long_space.h"
#include "longmath/long_state.h"

namespace tl {
namespace {

struct FunctionEntry {
    int min_params;
    int max_params;
    int result_kind;  ///< the kind of the dummy result while a definition is checked
    BuiltinHandler handler;  ///< null: not written yet, answers 295
};

constexpr int N = kind_double;
constexpr int S = kind_string;
constexpr int L = kind_long;

// ORDER: one entry per slot of the function table.
constexpr FunctionEntry functions[fn_count] = {
    {1, 1, N, fn_abs_handler},    // 0 abs
    {1, 1, N, fn_atn_handler},  // 1 atn
    {1, 1, N, fn_cos_handler},  // 2 cos
    {1, 1, N, fn_fix_handler},    // 3 fix
    {1, 1, N, fn_exp_handler},  // 4 exp
    {1, 1, N, fn_log_handler},  // 5 log
    {1, 1, N, fn_sgn_handler},    // 6 sgn
    {1, 1, N, fn_sin_handler},  // 7 sin
    {1, 1, N, fn_sqr_handler},    // 8 sqr
    {1, 1, N, fn_cot_handler},  // 9 cot
    {1, 1, N, fn_rnd_handler},  // 10 rnd
    {1, 1, N, fn_exponent_handler},  // 11 exponent
    {1, 1, S, fn_chr_handler},    // 12 chr$
    {2, 2, S, fn_left_handler},   // 13 left$
    {2, 2, S, fn_right_handler},  // 14 right$
    {2, 3, S, fn_mid_handler},    // 15 mid$
    {1, 2, S, fn_hex_handler},  // 16 hex$
    {1, 1, N, fn_len_handler},    // 17 len
    {1, 1, N, fn_cint_handler},  // 18 cint
    {1, 2, S, fn_str_handler},  // 19 str$
    {1, 1, N, fn_int_handler},    // 20 int
    {1, 1, N, fn_asc_handler},    // 21 asc
    {2, 2, S, fn_string_handler},  // 22 string$
    {1, 1, N, fn_log10_handler},  // 23 log10
    {1, 1, S, fn_space_handler},  // 24 space$
    {2, 3, N, fn_instr_handler},  // 25 instr
    {1, 1, N, fn_val_handler},    // 26 val
    {1, 1, N, fn_tab_handler},    // 27 tab
    {2, 2, N, fn_mod_handler},  // 28 mod
    {1, 7, N, fn_read_handler},  // 29 read
    {1, 2, N, fn_eof_handler},  // 30 eof
    {1, 7, S, fn_input_handler},  // 31 input
    {3, 7, N, fn_open_handler},  // 32 open
    {1, 1, N, fn_factorial_handler},  // 33 factorial
    {1, 1, L, fn_long_handler},   // 34 long
    {1, 1, N, fn_exp10_handler},  // 35 exp10
    {1, 1, N, fn_short_handler},  // 36 short
    {1, 1, N, fn_half_handler},  // 37 half
    {1, 1, N, fn_acot_handler},  // 38 acot
    {2, 2, N, fn_root_handler},  // 39 root
    {1, 1, N, fn_tan_handler},  // 40 tan
    {0, 7, N, fn_user_function_handler},  // 41 call of a user-defined function
    {1, 1, S, fn_hexconvert_handler},  // 42 hexconvert
    {1, 1, S, fn_browse_handler},  // 43 browseinputfile$
    {1, 1, S, fn_browse_handler},  // 44 browseoutputfile$
    {0, 2, S, fn_formatdatetime_handler},  // 45 formatdatetime$
    {0, 7, N, nullptr},           // 46 expanddatetime: a statement form, never a function
    {0, 6, N, fn_makedatetime_handler},  // 47 makedatetime
    {3, 3, N, fn_setcolor_handler},  // 48 setcolor
    {1, 4, N, fn_messagebox_handler},  // 49 messagebox
    {0, 7, N, nullptr},           // 50 inputdialog: statement form only
    {0, 7, N, nullptr},           // 51 updatedialog: statement form only
    {1, 1, S, fn_tolower_handler},  // 52 tolower$
    {1, 1, S, fn_toupper_handler},  // 53 toupper$
    {1, 1, S, fn_browsecommports_handler},  // 54 browsecommports$
    {1, 1, N, fn_filesize_handler},  // 55 filesize
    {1, 3, N, fn_select_handler},  // 56 select
};

struct SpecialEntry {
    int result_kind;
    int (*handler)();
};

// ORDER: one entry per slot of the special function table.
constexpr SpecialEntry special_functions[sfn_count] = {
    {L, special_longpi},  // 0 longpi
    {L, special_longe},  // 1 longe
    {L, special_remainder},  // 2 remainder
    {N, special_cossame},  // 3 cossame
    {N, special_checkdegrees},  // 4 checkdegrees
    {N, special_starttimer},  // 5 starttimer
    {N, special_endtimer},  // 6 endtimer
    {N, special_matherror},  // 7 matherror
    {S, special_workingdir},  // 8 workingdir$
    {S, special_programdir},  // 9 programdir$
    {N, special_checkmouseclick},  // 10 checkmouseclick
    {S, special_inkey},  // 11 inkey$
    {S, special_choosefont},  // 12 choosefont$
};

int dummy_result(int kind) {
    switch (kind) {
        case S: return text_result("", 0);
        case L: {
            long_set_zero(long_state.work);
            return long_result();
        }
        default: return double_result(0.0);
    }
}

}  // namespace

int fail_at(int number, const Item& at) {
    lang.reporter.error_column = at.column;
    return report_error(number);
}

int numeric_parameter(Item& p) {
    if (p.kind == kind_string) return fail_at(err_invalid_type_expecting_number, p);
    return make_numeric(p);
}

int double_parameter(Item& p, double& out) {
    const int k = numeric_parameter(p);
    if (k < 0) return k;
    if (k == kind_double) {
        out = p.number;
        return 0;
    }
    lang.reporter.error_column = p.column;
    return long_to_double(long_at(p.word), out, true);
}

int string_parameter(const Item& p, const char*& out) {
    if (p.kind != kind_string) return fail_at(err_invalid_type_expecting_string, p);
    out = item_text(p);
    return 0;
}

int double_result(double x) {
    lang.scan.result = x;
    return kind_double;
}

int text_result(const char* text, std::size_t length) {
    if (length > scan_buffer_size - 1) length = scan_buffer_size - 1;
    std::memmove(lang.scan.buffer, text, length);
    lang.scan.buffer[length] = 0;
    return kind_string;
}

int long_result() { return kind_long; }

int do_function(int slot, Item* params, int count, bool has_list) {
    if (!has_list && slot != fn_placeholder_41 && slot != fn_formatdatetime_s && slot != fn_makedatetime)
        return report_error(err_missing_parameter_list_function_subscripts);
    if (slot < 0 || slot >= fn_count) return -1;
    const FunctionEntry& f = functions[slot];
    int dummy_kind = slot == fn_placeholder_41 ? user_function_result_kind() : f.result_kind;
    // read(n) is a byte, read(n, count ...) a string.
    if (slot == fn_read && count > 1) dummy_kind = S;
    if (lang.scan.defining_function) return dummy_result(dummy_kind);
    if (count < f.min_params || count > f.max_params) return report_error(err_incorrect_number_parameters);
    // Passing over a statement: the call is checked, not made (no domain
    // errors from stale values, no effects such as random draws or input).
    if (lang.scan.skipping) return dummy_result(dummy_kind);
    if (f.handler == nullptr) return report_error(err_invalid_function_call);
    const int kind = f.handler(params, count);
    // No function gives a long number outside the exponent range.
    if (kind == kind_long) {
        if (int rc = long_check_exponent(long_state.work, true); rc < 0) return rc;
    }
    return kind;
}

int do_special_function(int slot) {
    if (slot < 0 || slot >= sfn_count) return -1;
    const SpecialEntry& f = special_functions[slot];
    if (lang.scan.defining_function || lang.scan.skipping) return dummy_result(f.result_kind);
    if (f.handler == nullptr) return report_error(err_invalid_function_call);
    return f.handler();
}

}  // namespace tl
