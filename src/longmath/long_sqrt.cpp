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
    start_value(x, s);
    long_debug_dump("ds", s, 0);

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
        rc = long_divide(dividend, divisor, q);
        if (rc < 0) return rc;
        long_debug_dump("qu1", q, 0);
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
    long_set_precision(target);
    long_copy(s, result);
    result.nrm = 0;
    long_normalise(result, normalise_round);
    long_timer_report("SQR Calc. Time:", start);
    return 0;
}

}  // namespace tl
