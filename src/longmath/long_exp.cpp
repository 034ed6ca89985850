// long_exp.cpp — e^x and 10^x: the driver with the characteristic and
// mantissa split through ln 10, and the piece-splitting core.
#include <algorithm>

#include "exec/front_end.h"
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "longmath/long_arith.h"
#include "longmath/long_blocks.h"
#include "longmath/long_constants_cache.h"
#include "longmath/long_convert.h"
#include "longmath/long_cores.h"
#include "longmath/long_fixed.h"
#include "longmath/long_functions.h"
#include "longmath/long_state.h"
#include "longmath/long_support.h"
#include "longmath/long_timing.h"

namespace tl {
namespace {

constexpr int exp_pieces = 5;
constexpr int exp_crossover_defaults[4] = {8, 48, 304, 2000};

/// |z| > 3.5?
bool above_three_and_a_half(const LongNumber& z) {
    if (z.exp != 1) return z.exp > 1;
    if (z.blocks[0] != 35000000u) return z.blocks[0] > 35000000u;
    return z.blks > 1;
}

/// Which exponential the driver forms.
enum class ExpKind {
    e,     ///< e^x within the e^x limit (169)
    ten,   ///< 10^x within the 10^x limit (170)
    wide,  ///< e^x wherever the result's exponent is in range (151 outside)
};

/// |x| > 2.4e9: a wide e^x then lies out of range whatever its digits, as
/// (exponent limit + 2) * ln 10 is below that (and 10^c keeps to an int).
bool beyond_wide_range(const LongNumber& v) {
    if (long_is_zero(v) || v.exp != 10) return v.exp > 10;
    return v.blocks[0] > 24000000u || (v.blocks[0] == 24000000u && v.blks > 1);
}

int exp_driver(const LongNumber& x, ExpKind kind, LongNumber& result) {
    const bool ten = kind == ExpKind::ten;
    const bool bounded = kind != ExpKind::wide;
    int rc = long_require_floating();
    if (rc < 0) return rc;
    const auto start = long_timer_start();
    const LongPrecisionGuard guard;
    LongMode& mode = long_state.mode;
    const int target = mode.precision;
    long_set_precision(target + 16);
    LongWorkFrame frame;
    LongNumber& v = frame.take(mode.precision + 16);
    long_copy(x, v);
    v.nrm = 0;
    long_normalise(v, normalise_strip);
    const std::uint32_t b0 = v.blocks[0];

    if (!ten && (v.exp < 1 || (v.exp == 1 && b0 < 23025850u))) {
        rc = long_exp_core(v, result);
    } else if (ten && !long_is_zero(v) && v.exp >= v.len && v.blks == 1 &&
               (v.exp < 8 || (v.exp == 8 && b0 <= 10000000u))) {
        // 10^n for a one-block integer n: exact.
        const std::int64_t n = long_small_integer(v);
        long_reserve(result, 8);
        result.blocks[0] = 10000000u;
        result.blks = 1;
        result.len = 1;
        result.exp = static_cast<std::int32_t>(n + 1);
        result.sgn = 0;
        result.nrm = 1;
    } else if (ten && (v.exp > 7 || (v.exp == 7 && (b0 > 10000000u || v.blks > 1)))) {
        return report_error(err_long_exp10_too_large);
    } else if (bounded && !ten && (v.exp > 7 || (v.exp == 7 && b0 > 23025850u))) {
        return report_error(err_long_exp_too_large);
    } else if (!bounded && beyond_wide_range(v)) {
        return report_error(err_exponent_out_range);
    } else if (ten && long_is_zero(v)) {
        long_set_int(result, 1);
    } else {
        // y = x / ln 10 (or x); its integer part c scales the result by 10^c,
        // its fraction m gives e^(m ln 10).
        LongNumber& ln10 = frame.take(mode.precision + 16);
        LongNumber& y = frame.take(mode.precision + 16);
        LongNumber& c = frame.take(mode.precision + 16);
        LongNumber& m = frame.take(mode.precision + 16);
        LongNumber& z = frame.take(mode.precision + 16);
        rc = cached_ln10(ln10);
        if (rc < 0) return rc;
        if (ten) {
            long_copy(v, y);
        } else {
            long_copy(ln10, z);
            long_debug_dump("cln", z, 0);
            rc = long_divide(v, z, y);
            if (rc < 0) return rc;
            long_debug_dump("clg", y, 0);
        }
        long_copy(y, c);
        long_cut_to_integer(c);
        const std::int64_t characteristic = long_small_integer(c);
        if (mode.debug_display) console_print("Characteristic = %d\n", static_cast<int>(characteristic));
        rc = long_subtract(y, c, m);
        if (rc < 0) return rc;
        long_normalise(m, normalise_round);
        long_debug_dump("man", m, 0);
        long_debug_dump("nlg", ln10, 0);
        rc = long_multiply(m, ln10, z);
        if (rc < 0) return rc;
        long_debug_dump("nln", z, 0);
        rc = long_exp_core(z, result);
        if (rc < 0) return rc;
        // The scaled exponent is checked before it is formed (it may not fit).
        rc = long_check_exponent_sum(result.exp + characteristic, true);
        if (rc < 0) return rc;
        result.exp += static_cast<std::int32_t>(characteristic);
    }
    if (rc < 0) return rc;
    long_round_at(result, target);
    // Rounding up to the next power of ten raises the exponent by one.
    rc = long_check_exponent(result, true);
    if (rc < 0) return rc;
    long_timer_report("EXP Calc. Time: ", start);
    return 0;
}

}  // namespace

int long_exp_core(const LongNumber& z, LongNumber& out) {
    const LongPrecisionGuard guard;
    LongMode& mode = long_state.mode;
    if (long_is_zero(z) || z.exp < -(mode.precision + 10)) {
        long_set_int(out, 1);
        return 0;
    }
    if (above_three_and_a_half(z)) return report_error(err_long_exp_over_3_5);
    const int target = mode.precision;
    const int working = target + 16;
    long_set_precision(working);
    const int W = (working + 18 + 7) / 8 + 1;
    LongWorkFrame frame;
    std::uint32_t* arg = frame.take(W * 8).blocks.data();
    std::uint32_t* piece = frame.take(W * 8).blocks.data();
    LongNumber& ek = frame.take(working + 16);
    LongNumber& product = frame.take(working + 16);
    fixed_from_long(z, arg, W);
    fixed_debug_dump("x1", arg, W, z.sgn);
    const bool negative = z.sgn == -1;
    const int arg_end = fixed_last_nonzero(arg, 0, W - 1) + 1;
    int bounds[exp_pieces + 1];
    bounds[0] = 0;
    long_read_crossovers("expcrossover", 4, exp_crossover_defaults, bounds + 1);
    bounds[exp_pieces] = std::max(working + 18, bounds[exp_pieces - 1] + 8);

    long_set_int(out, 1);
    for (int k = 0; k < exp_pieces; ++k) {
        const int from = k == 0 ? 0 : 1 + bounds[k] / 8;
        if (from >= arg_end) break;
        const int to = k == exp_pieces - 1 ? W : std::min(1 + bounds[k + 1] / 8, W);
        std::fill(piece, piece + W, 0u);
        std::copy(arg + from, arg + to, piece + from);
        const int pf = fixed_first_nonzero(piece, from, to);
        if (pf >= to) continue;
        const int pl = fixed_last_nonzero(piece, pf, to - 1);
        int rc = fixed_series(series_exp, piece, pf, pl, nullptr, 0, -1, negative, W, ek);
        if (rc < 0) return rc;
        rc = long_multiply(out, ek, product);
        if (rc < 0) return rc;
        long_exchange(out, product);
    }
    long_round_at(out, target);
    return 0;
}

int long_exp(const LongNumber& x, LongNumber& result) { return exp_driver(x, ExpKind::e, result); }

int long_exp10(const LongNumber& x, LongNumber& result) { return exp_driver(x, ExpKind::ten, result); }

int long_exp_wide(const LongNumber& x, LongNumber& result) { return exp_driver(x, ExpKind::wide, result); }

}  // namespace tl
