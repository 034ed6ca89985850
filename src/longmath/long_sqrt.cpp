// long_sqrt.cpp — square root by Newton's iteration in correction form,
// started from the double square root of the leading blocks.
#include <algorithm>
#include <cmath>

#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "longmath/long_arith.h"
#include "longmath/long_blocks.h"
#include "longmath/long_convert.h"
#include "longmath/long_functions.h"
#include "longmath/long_state.h"
#include "longmath/long_support.h"
#include "longmath/long_timing.h"

namespace tl {
namespace {

/// Digits the double start value gets right.
constexpr int start_digits = 15;
/// Iterations after which the square root gives up (it converges in a few).
constexpr int max_iterations = 64;

/// s = the 3-block start value: sqrt of 0.b0 b1 b2 * 10^e.
void start_value(const LongNumber& x, LongNumber& s) {
    double m = 0.0;
    for (int i = std::min(x.blks, 3) - 1; i >= 0; --i) m = m / 1e8 + x.blocks[static_cast<std::size_t>(i)] / 1e8;
    int e = x.exp;
    if (e % 2 != 0) {
        m /= 10.0;
        e += 1;
    }
    double r = std::sqrt(m);
    long_reserve(s, 24);
    for (int i = 0; i < 3; ++i) {
        r *= 1e8;
        const double block = std::floor(r);
        s.blocks[static_cast<std::size_t>(i)] = static_cast<std::uint32_t>(std::clamp(block, 0.0, 99999999.0));
        r -= block;
    }
    s.blks = 3;
    s.len = 18;
    s.exp = e / 2;
    s.sgn = 0;
    s.nrm = 0;
    long_normalise(s, normalise_cut);
}

/// `n` cut (not rounded) to `digits` significant digits.
void cut_to(LongNumber& n, int digits) {
    const LongPrecisionGuard guard;
    long_state.mode.precision = digits;
    n.nrm = 0;
    long_normalise(n, normalise_cut);
}

/// -1, 0 or 1 as x is below, equal to or above c * c, c squared exactly.
/// The caller's precision must hold twice the digits of c and more.
int compare_with_square(const LongNumber& x, const LongNumber& c, LongNumber& square, int& rc) {
    rc = long_multiply(c, c, square);
    return rc < 0 ? 0 : long_compare(x, square);
}

/// The root r of x rounded to `target` digits from an approximation `s`
/// that is within a small fraction of a unit in digit `target`: r is s cut to
/// `target` digits, then corrected by the exact square of the rounding
/// boundary beside it. Rounding to nearest compares x with the square of the
/// midpoint r + u/2 (u: a unit in the last digit; a tie rounds up, as the
/// rounding of every long result does); truncation makes sure that
/// r^2 <= x < (r + u)^2.
int round_root(const LongNumber& x, const LongNumber& s, int target, LongNumber& result) {
    const LongPrecisionGuard guard;
    LongWorkFrame frame;
    LongNumber& unit = frame.take(8);
    LongNumber& boundary = frame.take(2 * target + 24);
    LongNumber& square = frame.take(4 * target + 48);
    LongNumber& sum = frame.take(2 * target + 24);
    long_copy(s, result);
    cut_to(result, target);
    // Room for the exact square of a number of target + 1 digits.
    long_set_precision(2 * target + 24);
    // A unit in digit `target` is 0.1 * 10^(exp - target + 1), half of one
    // 0.5 * 10^(exp - target).
    auto set_unit = [&](bool half) {
        long_set_int(unit, 1);
        unit.blocks[0] = half ? 50000000u : 10000000u;
        unit.exp = result.exp - target + (half ? 0 : 1);
    };
    auto add_unit = [&](LongNumber& to, int sign) {
        unit.sgn = sign < 0 ? -1 : 0;
        int r = long_add(to, unit, sum);
        if (r < 0) return r;
        sum.nrm = 0;
        long_normalise(sum, normalise_strip);
        long_copy(sum, to);
        return 0;
    };
    int rc = 0;
    if (long_state.mode.rounding) {
        set_unit(true);
        long_copy(result, boundary);
        if ((rc = add_unit(boundary, 1)) < 0) return rc;
        const int side = compare_with_square(x, boundary, square, rc);
        if (rc < 0) return rc;
        if (side >= 0) {
            set_unit(false);
            rc = add_unit(result, 1);
        }
    } else {
        set_unit(false);
        const int below = compare_with_square(x, result, square, rc);
        if (rc < 0) return rc;
        if (below < 0) return add_unit(result, -1);
        long_copy(result, boundary);
        if ((rc = add_unit(boundary, 1)) < 0) return rc;
        const int above = compare_with_square(x, boundary, square, rc);
        if (rc < 0) return rc;
        if (above >= 0) long_copy(boundary, result);
    }
    return rc;
}

}  // namespace

int long_sqrt(const LongNumber& x, LongNumber& result) {
    int rc = long_require_floating();
    if (rc < 0) return rc;
    if (long_is_zero(x)) {
        long_set_zero(result);
        return 0;
    }
    if (x.sgn == -1) return report_error(err_cannot_take_square_root_negative);
    const auto start = long_timer_start();
    const LongPrecisionGuard guard;
    const int target = long_state.mode.precision;
    // s is carried with 10 digits beyond the target, so that the correction
    // can fall below a unit in digit target + 2.
    const int final_precision = target + 10;
    LongWorkFrame frame;
    LongNumber& s = frame.take(final_precision + 16);
    LongNumber& dividend = frame.take(final_precision + 16);
    LongNumber& divisor = frame.take(final_precision + 16);
    LongNumber& q = frame.take(final_precision + 16);
    LongNumber& diff = frame.take(final_precision + 16);
    LongNumber& half = frame.take(final_precision + 16);
    LongNumber& next = frame.take(final_precision + 16);
    long_debug_dump("dd", x, 0);
    start_value(x, s);
    long_debug_dump("ds", s, 0);
    if (long_state.mode.debug_display) {
        // The radicand as the iterations read it: cut to the final precision.
        long_copy(x, dividend);
        cut_to(dividend, final_precision);
        long_debug_dump("ddn", dividend, 0);
    }

    // The early iterations need only twice the digits already right; the
    // precision doubles until it reaches the final one, where the stopping
    // rule is tested.
    int correct = start_digits;
    for (int iteration = 0;; ++iteration) {
        if (iteration == max_iterations) return report_error(err_long_square_root_internal_error);
        const int precision = std::min(final_precision, 2 * correct);
        long_set_precision(precision);
        long_copy(x, dividend);
        dividend.nrm = 0;
        long_normalise(dividend, normalise_cut);
        long_copy(s, divisor);
        divisor.nrm = 0;
        long_normalise(divisor, normalise_cut);
        long_debug_dump("dd2", dividend, 0);
        long_debug_dump("dsn", divisor, 0);
        rc = long_divide(dividend, divisor, q);
        if (rc < 0) return rc;
        long_debug_dump("qu1", q, 0);
        long_debug_dump("qux", q, 0);
        rc = long_subtract(q, s, diff);
        if (rc < 0) return rc;
        long_normalise(diff, normalise_round);
        long_debug_dump("dif", diff, 0);
        rc = long_half(diff, half);
        if (rc < 0) return rc;
        long_debug_dump("haf", half, 0);
        rc = long_add(s, half, next);
        if (rc < 0) return rc;
        long_normalise(next, normalise_round);
        if (long_is_zero(next) || next.sgn == -1) return report_error(err_long_square_root_internal_error);
        long_exchange(s, next);
        long_debug_dump("new", s, 0);
        if (precision == final_precision &&
            (long_is_zero(half) || static_cast<long>(half.exp) <= static_cast<long>(s.exp) - (target + 2))) {
            break;
        }
        correct = precision - 2;
    }
    // s is right to about target + 8 digits; the last digit is decided
    // exactly, from the square of the rounding boundary next to it.
    rc = round_root(x, s, target, result);
    if (rc < 0) return rc;
    long_set_precision(target);
    result.nrm = 0;
    long_normalise(result, normalise_cut);
    long_timer_report("SQR Calc. Time: ", start);
    return 0;
}

}  // namespace tl
