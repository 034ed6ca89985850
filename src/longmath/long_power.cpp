// long_power.cpp — x^y and the n-th root.
#include <cmath>
#include <cstdlib>

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

/// Largest decimal exponent a power may reach (that of 10^x's exact results).
constexpr double max_power_exponent = 10000000.0;
/// Integer exponents up to this are done by repeated squaring.
constexpr std::int64_t max_integer_exponent = 1LL << 31;

int power_error() { return report_error(err_power_root_error_result); }

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

/// x^n for an integer n by repeated squaring, at the current precision.
int integer_power(const LongNumber& x, std::int64_t n, LongNumber& result) {
    LongWorkFrame frame;
    const int precision = long_state.mode.precision;
    LongNumber& square = frame.take(precision + 16);
    LongNumber& product = frame.take(precision + 16);
    LongNumber& one = frame.take(8);
    long_set_int(one, 1);
    long_copy(x, square);
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
    if (n < 0) {
        long_copy(result, square);
        return long_divide(one, square, result);
    }
    return 0;
}

/// e^(y ln|x|) for x > 0.
int real_power(const LongNumber& x, const LongNumber& y, LongNumber& result) {
    LongWorkFrame frame;
    const int precision = long_state.mode.precision;
    LongNumber& ln = frame.take(precision + 16);
    LongNumber& t = frame.take(precision + 16);
    int rc = long_log(x, ln);
    if (rc == 0) rc = long_multiply(ln, y, t);
    if (rc == 0) rc = long_exp(t, result);
    return rc;
}

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
    // The size of the result, estimated: too large an exponent is refused here.
    const double magnitude = std::fabs(to_double_or_zero(y) * decimal_log(x));
    if (!(magnitude <= max_power_exponent)) return power_error();

    const LongPrecisionGuard guard;
    const int target = long_state.mode.precision;
    LongWorkFrame frame;
    LongNumber& base = frame.take(target + 48);
    long_copy(x, base);
    base.sgn = 0;
    if (by_squaring) {
        // Each squaring doubles the relative error: guard digits for n's digits.
        long_set_precision(target + 8 + static_cast<int>(std::log10(static_cast<double>(std::llabs(n)) + 1.0)));
        rc = integer_power(base, n, result);
    } else {
        // The exponent's size costs digits of ln x.
        const int extra = 8 + static_cast<int>(std::log10(magnitude + 1.0));
        long_set_precision(target + extra);
        rc = real_power(base, y, result);
    }
    if (rc < 0) return rc;
    if (x.sgn == -1 && odd) long_flip_sign(result);
    long_set_precision(target);
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
    LongNumber& base = frame.take(target + 48);
    LongNumber& one = frame.take(8);
    LongNumber& exponent = frame.take(target + 48);
    LongNumber& divisor = frame.take(target + 48);
    long_copy(x, base);
    base.sgn = 0;
    // The square root is correctly rounded at the target itself; rounding
    // it again from more digits could not be.
    if (integer && k == 2) return long_sqrt(base, result);
    long_set_precision(target + 8);
    long_set_int(one, 1);
    long_copy(n, divisor);
    rc = long_divide(one, divisor, exponent);
    if (rc == 0) rc = long_power(base, exponent, result);
    if (rc < 0) return rc;
    if (x.sgn == -1) long_flip_sign(result);
    long_set_precision(target);
    result.nrm = 0;
    long_normalise(result, normalise_round);
    return 0;  // the caller reports "ROOT Calc. Time:" when timing is on
}

}  // namespace tl
