// builtin_numeric.cpp — the numeric builtin functions that convert or round:
// abs, sgn, fix, int, cint, sqr, long, short and tab.
#include <cmath>
#include <cstring>

#include "lang/builtin_support.h"
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "lang/lang_state.h"
#include "lang/numeric_operands.h"
#include "lang/scanner.h"
#include "longmath/long_arith.h"
#include "longmath/long_convert.h"
#include "longmath/long_functions.h"
#include "longmath/long_space.h"
#include "longmath/long_state.h"

namespace tl {
namespace {

/// The integer part of the long parameter into the work register, truncated
/// toward zero (`floor` false) or rounded down. x - mod(x, 1) truncates
/// because the remainder takes the dividend's sign.
int long_integer_part(const LongNumber& x, int column, bool floor) {
    lang.reporter.error_column = column;
    const std::uint32_t mark = temp_long_mark();
    const std::int64_t one_ref = new_temp_long();
    if (one_ref < 0) return static_cast<int>(one_ref);
    const std::int64_t rem_ref = new_temp_long();
    if (rem_ref < 0) return static_cast<int>(rem_ref);
    LongNumber& one = long_at(static_cast<std::uint32_t>(one_ref));
    LongNumber& rem = long_at(static_cast<std::uint32_t>(rem_ref));
    int r = long_from_double(1.0, one, true);
    if (r >= 0) r = long_mod(x, one, rem);
    if (r >= 0) r = long_subtract(x, rem, long_state.work);
    if (r >= 0) long_normalise(long_state.work, normalise_strip);
    if (r >= 0 && floor && x.sgn == -1 && !long_is_zero(rem)) {
        LongNumber& truncated = rem;  // the remainder is no longer needed
        long_copy(long_state.work, truncated);
        r = long_subtract(truncated, one, long_state.work);
        if (r >= 0) long_normalise(long_state.work, normalise_strip);
    }
    release_temp_longs(mark);
    return r < 0 ? r : long_result();
}

/// Long arguments of the transcendental functions need floating-point mode.
int long_argument_check(const Item& p) {
    if (long_state.mode.integer_mode) return fail_at(err_long_operation_only_valid_floating, p);
    lang.reporter.error_column = p.column;
    return 0;
}

/// cint of a long number: x + 0.5 (x - 0.5 when negative), truncated.
int long_round_half_away(const Item& p) {
    const LongNumber& x = long_at(p.word);
    lang.reporter.error_column = p.column;
    const std::uint32_t mark = temp_long_mark();
    const std::int64_t half_ref = new_temp_long();
    if (half_ref < 0) return static_cast<int>(half_ref);
    const std::int64_t sum_ref = new_temp_long();
    if (sum_ref < 0) return static_cast<int>(sum_ref);
    LongNumber& half = long_at(static_cast<std::uint32_t>(half_ref));
    LongNumber& sum = long_at(static_cast<std::uint32_t>(sum_ref));
    int r = long_from_double(x.sgn == -1 ? -0.5 : 0.5, half, true);
    if (r >= 0) r = long_add(x, half, sum);
    if (r >= 0) {
        long_normalise(sum, normalise_strip);
        r = long_integer_part(sum, p.column, false);
    }
    release_temp_longs(mark);
    return r;
}

}  // namespace

int fn_abs_handler(Item* p, int) {
    if (p[0].kind == kind_numeric_text) {  // stays text: only a leading "-" goes
        const char* text = item_text(p[0]);
        if (text[0] == '-') ++text;
        (void)text_result(text, std::strlen(text));
        return kind_numeric_text;
    }
    const int k = numeric_parameter(p[0]);
    if (k < 0) return k;
    if (k == kind_double) return double_result(std::fabs(p[0].number));
    long_copy(long_at(p[0].word), long_state.work);
    if (long_state.work.sgn == -1) long_state.work.sgn = 0;
    return long_result();
}

int fn_sgn_handler(Item* p, int) {
    const int k = numeric_parameter(p[0]);
    if (k < 0) return k;
    if (k == kind_double) {
        const double x = p[0].number;
        return double_result(x > 0.0 ? 1.0 : (x < 0.0 ? -1.0 : 0.0));
    }
    const LongNumber& n = long_at(p[0].word);
    return double_result(long_is_zero(n) ? 0.0 : (n.sgn == -1 ? -1.0 : 1.0));
}

int fn_fix_handler(Item* p, int) {
    const int k = numeric_parameter(p[0]);
    if (k < 0) return k;
    if (k == kind_double) return double_result(std::trunc(p[0].number));
    return long_integer_part(long_at(p[0].word), p[0].column, false);
}

int fn_int_handler(Item* p, int) {
    const int k = numeric_parameter(p[0]);
    if (k < 0) return k;
    if (k == kind_double) return double_result(std::floor(p[0].number));
    return long_integer_part(long_at(p[0].word), p[0].column, true);
}

int fn_sqr_handler(Item* p, int) {
    const int k = numeric_parameter(p[0]);
    if (k < 0) return k;
    if (k == kind_double) {
        if (p[0].number < 0.0) return fail_at(err_cannot_take_square_root_negative, p[0]);
        return double_result(std::sqrt(p[0].number));
    }
    if (long_at(p[0].word).sgn == -1 && !long_is_zero(long_at(p[0].word)))
        return fail_at(err_cannot_take_square_root_negative, p[0]);
    int r = long_argument_check(p[0]);
    if (r >= 0) r = long_sqrt(long_at(p[0].word), long_state.work);
    return r < 0 ? r : long_result();
}

int fn_cint_handler(Item* p, int) {
    const int k = numeric_parameter(p[0]);
    if (k < 0) return k;
    if (k == kind_long) return long_round_half_away(p[0]);
    const double x = p[0].number;
    return double_result(std::trunc(x >= 0.0 ? x + 0.5 : x - 0.5));
}

int fn_long_handler(Item* p, int) {
    const Item& x = p[0];
    if (x.kind != kind_double && x.kind != kind_string && x.kind != kind_numeric_text && x.kind != kind_long)
        return fail_at(err_invalid_type_expecting_number, x);
    lang.reporter.error_column = x.column;
    const int r = long_convert_in(x, long_state.work, true);
    return r < 0 ? r : long_result();
}

int fn_short_handler(Item* p, int) {
    double x = 0.0;
    const int r = double_parameter(p[0], x);
    return r < 0 ? r : double_result(x);
}

int fn_tab_handler(Item* p, int) {
    if (!lang.scan.in_print) return report_error(err_tab_function_only_valid_print);
    double x = 0.0;
    const int r = double_parameter(p[0], x);
    return r < 0 ? r : double_result(x);
}

}  // namespace tl
