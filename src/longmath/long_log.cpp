// long_log.cpp — natural and decimal logarithms: the characteristic through
// ln 10, and the mantissa's logarithm refined in Newton stages.
#include <algorithm>
#include <cmath>

#include "exec/front_end.h"
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "longmath/long_arith.h"
#include "longmath/long_blocks.h"
#include "longmath/long_constants_cache.h"
#include "longmath/long_convert.h"
#include "longmath/long_cores.h"
#include "longmath/long_functions.h"
#include "longmath/long_state.h"
#include "longmath/long_support.h"
#include "longmath/long_timing.h"

namespace tl {
namespace {

constexpr int max_stages = 5;
/// Digits a double start value gets right.
constexpr int start_digits = 15;

/// ln(1 + t) = t - t^2/2 + t^3/3 - ... for a small t, at the current precision.
int log_one_plus(const LongNumber& t, LongNumber& out) {
    LongWorkFrame frame;
    const int precision = long_state.mode.precision;
    LongNumber& power = frame.take(precision + 16);
    LongNumber& term = frame.take(precision + 16);
    LongNumber& next = frame.take(precision + 16);
    long_copy(t, out);
    long_copy(t, power);
    for (std::uint32_t k = 2; !long_is_zero(power); ++k) {
        // Only the digits above 10^-precision matter: the powers shrink, and
        // so does the precision they are formed at.
        int rc;
        {
            const LongPrecisionGuard guard;
            long_set_precision(precision + power.exp + t.exp + 2);
            rc = long_multiply(power, t, next);
        }
        if (rc < 0) return rc;
        long_exchange(power, next);
        if (long_is_zero(power) || power.exp < -precision - 2) break;
        rc = long_divide_small(power, k, term);
        if (rc < 0) return rc;
        if (k % 2 == 0) long_flip_sign(term);
        rc = long_add(out, term, next);
        if (rc < 0) return rc;
        long_normalise(next, normalise_round);
        long_exchange(out, next);
    }
    return 0;
}

}  // namespace

int long_log_mantissa(const LongNumber& m, LongNumber& out) {
    const LongPrecisionGuard guard;
    LongMode& mode = long_state.mode;
    const int target = mode.precision;
    LongWorkFrame frame;
    LongNumber& y = frame.take(target + 32);
    LongNumber& e = frame.take(target + 32);
    LongNumber& dividend = frame.take(target + 32);
    LongNumber& q = frame.take(target + 32);
    LongNumber& t = frame.take(target + 32);
    LongNumber& correction = frame.take(target + 32);
    LongNumber& sum = frame.take(target + 32);
    LongNumber& one = frame.take(8);
    long_set_int(one, 1);

    double md = 0.0;
    int rc = long_to_double(m, md, true);
    if (rc < 0) return rc;
    rc = long_from_double(std::log(md), y, true);
    if (rc < 0) return rc;

    // Stage precisions rise geometrically to the target, at most five stages.
    int stages[max_stages];
    int count = 0;
    const double ratio = std::max(2.0, std::pow(static_cast<double>(target) / start_digits, 1.0 / max_stages));
    for (double p = target; count < max_stages && (count == 0 || p > start_digits); p /= ratio) {
        stages[count++] = static_cast<int>(std::ceil(p));
    }
    std::reverse(stages, stages + count);

    for (int s = 0; s < count; ++s) {
        const auto stage_start = long_timer_start();
        const int precision = stages[s] + 8;
        long_set_precision(precision);
        auto t0 = long_timer_start();
        rc = long_exp_core(y, e);
        if (rc < 0) return rc;
        long_store_time("expcalctime", s + 1, long_timer_stop(t0));
        t0 = long_timer_start();
        long_copy(m, dividend);
        dividend.nrm = 0;
        long_normalise(dividend, normalise_round);
        rc = long_divide(dividend, e, q);
        if (rc < 0) return rc;
        const double div_ms = long_timer_stop(t0);
        long_store_time("divcalctime", s + 1, div_ms);
        if (mode.debug_display) console_print("Div       Calc. Time:  %8.3f ms.\n", div_ms);
        // Newton's step y += q - 1, continued by the series of ln q.
        rc = long_subtract(q, one, t);
        if (rc < 0) return rc;
        long_normalise(t, normalise_round);
        if (!long_is_zero(t)) {
            rc = log_one_plus(t, correction);
            if (rc < 0) return rc;
            rc = long_add(y, correction, sum);
            if (rc < 0) return rc;
            long_normalise(sum, normalise_round);
            long_exchange(y, sum);
        }
        const double stage_ms = long_timer_stop(stage_start);
        long_store_time("lncalctime", s + 1, stage_ms);
        if (mode.debug_display) console_print("LN stage  Calc. Time:  %8.3f ms.\n", stage_ms);
    }
    long_set_precision(target);
    long_copy(y, out);
    out.nrm = 0;
    long_normalise(out, normalise_round);
    return 0;
}

int cached_ln10(LongNumber& out) {
    if (serve_cached(long_state.functions.cached_ln10, long_state.functions.cached_ln10_digits, out)) return 0;
    const LongPrecisionGuard guard;
    const int target = long_state.mode.precision;
    const int digits = target + 10;
    long_set_precision(digits);
    LongWorkFrame frame;
    LongNumber& ten = frame.take(8);
    LongNumber& value = frame.take(digits + 16);
    long_set_int(ten, 10);
    const int rc = long_log_mantissa(ten, value);
    if (rc < 0) return rc;
    keep_cached(value, digits, long_state.functions.cached_ln10, long_state.functions.cached_ln10_digits);
    long_set_precision(target);
    long_copy(value, out);
    out.nrm = 0;
    long_normalise(out, normalise_round);
    return 0;
}

namespace {

/// ln x at the current precision (x > 0, normalised).
int natural_log(const LongNumber& x, LongNumber& result) {
    const LongPrecisionGuard guard;
    LongMode& mode = long_state.mode;
    const int target = mode.precision;
    LongWorkFrame frame;
    LongNumber& m = frame.take(target + 32);
    LongNumber& d = frame.take(target + 32);
    LongNumber& lm = frame.take(target + 32);
    LongNumber& ln10 = frame.take(target + 32);
    LongNumber& scaled = frame.take(target + 32);
    LongNumber& one = frame.take(8);
    long_set_int(one, 1);

    // x = m * 10^e with 0.31 <= m < 3.1.
    long_copy(x, m);
    std::int64_t e = x.exp;
    m.exp = 0;
    if (m.blocks[0] < 31000000u) {
        m.exp = 1;
        --e;
    }
    long_debug_dump("x sm", m, 0);
    if (mode.debug_display) {
        console_print("chr = %d\n", static_cast<int>(e));
        long_set_int(scaled, e);
        long_debug_dump("chr", scaled, 0);
    }
    // Near 1 the logarithm is small: keep its own digits.
    (void)long_subtract(m, one, d);
    long_normalise(d, normalise_strip);
    if (long_is_zero(d) && e == 0) {
        long_set_zero(result);
        return 0;
    }
    const int near_one = long_is_zero(d) ? 0 : std::max(0, -d.exp);
    const int working = target + 8 + (e != 0 ? 0 : near_one);
    long_set_precision(working);
    int rc = long_is_zero(d) ? (long_set_zero(lm), 0) : long_log_mantissa(m, lm);
    if (rc < 0) return rc;
    if (e != 0) {
        // e * ln 10, with ln 10 to the digits that e's digits need.
        const std::int64_t magnitude = e < 0 ? -e : e;  // at most 10^9 + 1
        int digits = 1;
        for (std::int64_t v = magnitude; v >= 10; v /= 10) ++digits;
        long_set_precision(working + digits);
        rc = cached_ln10(ln10);
        if (rc < 0) return rc;
        long_multiply_small(ln10, static_cast<std::uint32_t>(magnitude), scaled);
        if (e < 0) long_flip_sign(scaled);
        long_debug_dump("chre", scaled, 0);
        long_debug_dump("ln10", ln10, 0);
        long_set_precision(working);
        rc = long_add(lm, scaled, result);
        if (rc < 0) return rc;
        long_debug_dump("sum", result, 0);
    } else {
        long_copy(lm, result);
    }
    long_round_at(result, target);
    return 0;
}

int check_log_argument(const LongNumber& x) {
    int rc = long_require_floating();
    if (rc < 0) return rc;
    if (long_is_zero(x)) return report_error(err_cannot_take_logarithm_zero);
    if (x.sgn == -1) return report_error(err_cannot_take_logarithm_negative_number);
    return 0;
}

}  // namespace

int long_log(const LongNumber& x, LongNumber& result) {
    int rc = check_log_argument(x);
    if (rc < 0) return rc;
    const auto start = long_timer_start();
    rc = natural_log(x, result);
    if (rc == 0) long_timer_report("LOG Calc. Time: ", start);
    return rc;
}

int long_log10(const LongNumber& x, LongNumber& result) {
    int rc = check_log_argument(x);
    if (rc < 0) return rc;
    const auto start = long_timer_start();
    if (x.blocks[0] == 10000000u && x.blks == 1) {
        // A power of ten: its exponent, exactly.
        long_set_int(result, static_cast<std::int64_t>(x.exp) - 1);
        long_timer_report("LOG Calc. Time: ", start);
        return 0;
    }
    const LongPrecisionGuard guard;
    const int target = long_state.mode.precision;
    LongWorkFrame frame;
    LongNumber& ln = frame.take(target + 32);
    LongNumber& ln10 = frame.take(target + 32);
    long_set_precision(target + 8);
    rc = natural_log(x, ln);
    if (rc == 0) rc = cached_ln10(ln10);
    if (rc == 0) rc = long_divide(ln, ln10, result);
    if (rc < 0) return rc;
    long_round_at(result, target);
    long_timer_report("LOG Calc. Time: ", start);
    return 0;
}

}  // namespace tl
