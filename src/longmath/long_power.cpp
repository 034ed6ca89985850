// long_power.cpp — x^y and the n-th root.
#include <cmath>
#include <cstdlib>

#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "longmath/long_arith.h"
#include "longmath/long_blocks.h"
#include "longmath/long_convert.h"
#include "longmath/long_functions.h"
#include "longmath/long_guard_digits.h"
#include "longmath/long_state.h"
#include "longmath/long_support.h"
#include "longmath/long_timing.h"

namespace tl {
namespace {

/// Estimated |decimal exponent| of a power beyond which it is refused at
/// once as out of range. Up to it the power is formed and its exponent
/// checked exactly; the estimate is far closer than the 2 of slack.
constexpr double max_power_exponent = static_cast<double>(long_exponent_limit) + 2.0;
/// ln 10, to turn a decimal exponent into the size of y ln x.
constexpr double ln_ten = 2.302585092994046;
/// Integer exponents up to this are done by repeated squaring.
constexpr std::int64_t max_integer_exponent = 1LL << 31;
/// The longest exact power an integer root's exact check forms.
constexpr std::int64_t max_exact_root_digits = 100000;

int power_error() { return report_error(err_power_root_error_result); }
int range_error() { return report_error(err_exponent_out_range); }

/// log10 |x| as a double (x non-zero, normalised).
double decimal_log(const LongNumber& x) {
    const double lead = x.blocks[0] / 1e8 + (x.blks > 1 ? x.blocks[1] / 1e16 : 0.0);
    return std::log10(lead) + x.exp;
}

double to_double_or_zero(const LongNumber& n) {
    double v = 0.0;
    if (long_to_double(n, v, false) < 0) return n.sgn == -1 ? -HUGE_VAL : HUGE_VAL;
    return v;
}

/// True for an odd integer n.
bool odd_integer(const LongNumber& n) {
    if (long_is_zero(n) || !long_is_integer(n)) return false;
    const int d = n.exp - 1;  // the units digit
    if (d >= 8 * n.blks) return false;
    return (n.blocks[static_cast<std::size_t>(d / 8)] / long_pow10[7 - d % 8]) % 2 != 0;
}

/// True for y = 0.5 exactly.
bool is_one_half(const LongNumber& y) {
    return y.sgn != -1 && y.exp == 0 && y.blks == 1 && y.blocks[0] == 50000000u;
}

/// True for x = 1 or x = -1.
bool unit_magnitude(const LongNumber& x) { return x.exp == 1 && x.blks == 1 && x.blocks[0] == 10000000u; }

/// x^n for an integer n by repeated squaring, at the current precision. A
/// negative n squares 1/x, so that no square lies further from 1 than the
/// result (x^|n| may be out of range where x^n is not).
int integer_power(const LongNumber& x, std::int64_t n, LongNumber& result) {
    LongWorkFrame frame;
    const int precision = long_state.mode.precision;
    LongNumber& square = frame.take(precision + 16);
    LongNumber& product = frame.take(precision + 16);
    LongNumber& one = frame.take(8);
    long_set_int(one, 1);
    long_copy(x, square);
    if (n < 0) {
        long_copy(square, product);
        const int rc = long_divide(one, product, square);
        if (rc < 0) return rc;
    }
    long_set_int(result, 1);
    std::uint64_t m = static_cast<std::uint64_t>(std::llabs(n));
    for (;;) {
        int rc = 0;
        if ((m & 1u) != 0) {
            rc = long_multiply(result, square, product);
            if (rc < 0) return rc;
            long_exchange(result, product);
        }
        m >>= 1;
        if (m == 0) break;
        rc = long_multiply(square, square, product);
        if (rc < 0) return rc;
        long_exchange(square, product);
    }
    return 0;
}

/// e^(y ln|x|) for x > 0, over the whole exponent range (151 beyond it).
int real_power(const LongNumber& x, const LongNumber& y, LongNumber& result) {
    LongWorkFrame frame;
    const int precision = long_state.mode.precision;
    LongNumber& ln = frame.take(precision + 16);
    LongNumber& t = frame.take(precision + 16);
    int rc = long_log(x, ln);
    if (rc == 0) rc = long_multiply(ln, y, t);
    if (rc == 0) rc = long_exp_wide(t, result);
    return rc;
}

/// Exact decision of an integer root, for when the guard digits leave it
/// open: `r` (the root of |x| rounded to `target` digits from an
/// approximation) is checked against the exact n-th powers of the rounding
/// boundaries beside it and moved by a unit in its last digit when it lies on
/// the wrong side. For a negative n the root of x is 1 / x^(1/|n|): the
/// boundary b is compared through x * b^|n| against 1 instead.
int settle_integer_root(const LongNumber& x, std::int64_t n, int target, LongNumber& r) {
    const std::int64_t k = n < 0 ? -n : n;
    if (long_is_zero(r) || k * (target + 2) > max_exact_root_digits) return 0;
    const LongPrecisionGuard guard;
    LongWorkFrame frame;
    LongNumber& unit = frame.take(8);
    LongNumber& boundary = frame.take(target + 24);
    LongNumber& power = frame.take(static_cast<int>(k) * (target + 2) + 16);
    LongNumber& product = frame.take(static_cast<int>(k) * (target + 2) + 16);
    LongNumber& one = frame.take(8);
    long_set_int(one, 1);
    // Exact products: room for the power of a number of target + 1 digits,
    // and for x times it.
    long_set_precision(static_cast<int>(k) * (target + 2) + x.len + 16);
    // -1, 0 or 1 as the exact root is below, at or above `b`.
    auto side_of = [&](const LongNumber& b, int& side) {
        int rc = integer_power(b, k, power);
        if (rc < 0) return rc;
        if (n > 0) {
            side = long_compare(x, power);
            return 0;
        }
        rc = long_multiply(x, power, product);
        if (rc < 0) return rc;
        side = long_compare(one, product);
        return 0;
    };
    // u: a unit in r's last digit (half of one for the midpoint).
    auto boundary_at = [&](int sign, bool half) {
        long_set_int(unit, 1);
        unit.blocks[0] = half ? 50000000u : 10000000u;
        unit.exp = r.exp - target + (half ? 0 : 1);
        // Below a power of ten the digits are ten times finer.
        if (sign < 0 && r.len == 1 && r.blocks[0] == 10000000u) unit.exp -= 1;
        unit.sgn = sign < 0 ? -1 : 0;
        const int rc = long_add(r, unit, boundary);
        boundary.nrm = 0;
        long_normalise(boundary, normalise_strip);
        return rc;
    };
    int side = 0;
    int rc = 0;
    if (long_state.mode.rounding) {
        // r is right when r - u/2 <= root < r + u/2 (a tie rounds up).
        if ((rc = boundary_at(1, true)) < 0 || (rc = side_of(boundary, side)) < 0) return rc;
        int step = side >= 0 ? 1 : 0;
        if (step == 0) {
            if ((rc = boundary_at(-1, true)) < 0 || (rc = side_of(boundary, side)) < 0) return rc;
            step = side < 0 ? -1 : 0;
        }
        if (step != 0 && (rc = boundary_at(step, false)) < 0) return rc;
        if (step != 0) long_copy(boundary, r);
        return 0;
    }
    // Cut: r <= root < r + u.
    if ((rc = side_of(r, side)) < 0) return rc;
    if (side < 0) {
        if ((rc = boundary_at(-1, false)) < 0) return rc;
        long_copy(boundary, r);
        return 0;
    }
    if ((rc = boundary_at(1, false)) < 0 || (rc = side_of(boundary, side)) < 0) return rc;
    if (side >= 0) {
        if ((rc = boundary_at(1, false)) < 0) return rc;
        long_copy(boundary, r);
    }
    return 0;
}

/// Digits lost to the size of t = y ln x in e^t: its integer digits.
int digits_lost_to(double magnitude) { return 1 + static_cast<int>(std::log10(magnitude + 1.0)); }

}  // namespace

int long_power(const LongNumber& x, const LongNumber& y, LongNumber& result) {
    int rc = long_require_floating();
    if (rc < 0) return rc;
    if (long_is_zero(y)) {
        long_set_int(result, 1);
        return 0;
    }
    if (long_is_zero(x)) {
        if (y.sgn == -1) return power_error();
        long_set_zero(result);
        return 0;
    }
    const bool integer = long_is_integer(y);
    const bool odd = odd_integer(y);
    const std::int64_t n = integer && y.exp <= 10 ? long_small_integer(y) : 0;
    const bool by_squaring = integer && y.exp <= 10 && std::llabs(n) < max_integer_exponent;
    if (x.sgn == -1 && !integer) return power_error();
    if (unit_magnitude(x)) {
        long_set_int(result, x.sgn == -1 && odd ? -1 : 1);
        return 0;
    }
    // x ^ 0.5 is the square root, correctly rounded at the precision.
    if (is_one_half(y)) return long_sqrt(x, result);
    // The size of the result, estimated: an exponent far out of range is
    // refused here, one near its ends when the power is formed.
    const double magnitude = std::fabs(to_double_or_zero(y) * decimal_log(x));
    if (!(magnitude <= max_power_exponent)) return range_error();

    const LongPrecisionGuard guard;
    const int target = long_state.mode.precision;
    LongWorkFrame frame;
    LongNumber& base = frame.take(x.len + 8);
    long_copy(x, base);
    base.sgn = 0;
    // Each squaring can double the relative error: n's digits are lost; so
    // are the integer digits of y ln x in e^(y ln x).
    const int extra = by_squaring ? digits_lost_to(static_cast<double>(std::llabs(n)))
                                  : digits_lost_to(magnitude * ln_ten);
    bool decided = false;
    rc = long_round_from_guard_digits(
        target, extra,
        [&](LongNumber& out) { return by_squaring ? integer_power(base, n, out) : real_power(base, y, out); }, result,
        decided);
    if (rc < 0) return rc;
    if (x.sgn == -1 && odd) long_flip_sign(result);
    return 0;
}

int long_power_operator_value(const LongNumber& x, const LongNumber& y, LongNumber& result) {
    LongMode& mode = long_state.mode;
    const int target = mode.precision;
    {
        const LongPrecisionGuard guard;
        long_set_precision(target + 16);
        const int rc = long_power(x, y, result);
        if (rc < 0) return rc;
    }
    // Rounding twice is rounding once unless the 16 extra digits read as a
    // boundary (5000... say, from a root just below it): then the power is
    // formed at the length itself, correctly rounded there.
    if (!long_rounding_decided(result, target, 18)) return long_power(x, y, result);
    result.nrm = 0;
    long_normalise(result, normalise_round);
    return 0;
}

int long_root(const LongNumber& x, const LongNumber& n, LongNumber& result) {
    int rc = long_require_floating();
    if (rc < 0) return rc;
    if (long_is_zero(n)) return power_error();
    const bool integer = long_is_integer(n) && n.exp <= 10;
    const std::int64_t k = integer ? long_small_integer(n) : 0;
    const bool odd = odd_integer(n);
    if (long_is_zero(x)) {
        if (n.sgn == -1) return power_error();
        long_set_zero(result);
        return 0;
    }
    // A negative radicand has a real root only for an odd integer n.
    if (x.sgn == -1 && !odd) return power_error();
    const LongPrecisionGuard guard;
    const int target = long_state.mode.precision;
    LongWorkFrame frame;
    LongNumber& base = frame.take(x.len + 8);
    LongNumber& one = frame.take(8);
    LongNumber& exponent = frame.take(target + 2 * last_guard_digits + 48);
    LongNumber& divisor = frame.take(n.len + 8);
    long_copy(n, divisor);
    long_copy(x, base);
    base.sgn = 0;
    // The square root is correctly rounded at the target itself.
    if (integer && k == 2) return long_sqrt(base, result);
    if (unit_magnitude(base)) {
        long_set_int(result, x.sgn == -1 ? -1 : 1);
        return 0;
    }
    long_set_int(one, 1);
    // |log10 x / n| estimated, the size of the result: far out of range is
    // refused here (an n too small for a double gives infinity). The digits
    // of 1/n and of ln x it costs are added.
    const double decimal_magnitude = std::fabs(decimal_log(base) / to_double_or_zero(n));
    if (!(decimal_magnitude <= max_power_exponent)) return range_error();
    const double magnitude = decimal_magnitude * ln_ten;
    bool decided = false;
    rc = long_round_from_guard_digits(
        target, digits_lost_to(magnitude),
        [&](LongNumber& out) {
            const int r = long_divide(one, divisor, exponent);
            return r < 0 ? r : real_power(base, exponent, out);
        },
        result, decided);
    if (rc < 0) return rc;
    // Left open by the guard digits: the root is exact, a tie, or very close
    // to one; for an integer n exact powers decide.
    if (!decided && integer) {
        rc = settle_integer_root(base, k, target, result);
        if (rc < 0) return rc;
    }
    if (x.sgn == -1) long_flip_sign(result);
    return 0;  // the caller reports "ROOT Calc. Time:" when timing is on
}

}  // namespace tl
