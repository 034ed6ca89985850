// long_functions.h — elementary functions of long numbers, to the current precision.
//
// All return 0 or a negated error number (already reported). `result` must not
// be an operand. Trigonometric functions take the angle unit of the caller
// (`degrees`). Floating-point mode only, unless stated.
#pragma once

#include "longmath/long_number.h"

namespace tl {

[[nodiscard]] int long_sqrt(const LongNumber& x, LongNumber& result);   ///< 199 for x < 0, 167 internal
[[nodiscard]] int long_exp(const LongNumber& x, LongNumber& result);    ///< e^x; 168/169 limits
[[nodiscard]] int long_exp10(const LongNumber& x, LongNumber& result);  ///< 10^x; 170 limit
/// e^x for any x whose result lies in the exponent range, through the same
/// split as e^x (10^c times e^(m ln 10)); a result out of it is 151.
[[nodiscard]] int long_exp_wide(const LongNumber& x, LongNumber& result);
[[nodiscard]] int long_log(const LongNumber& x, LongNumber& result);    ///< ln x; 209, 210
[[nodiscard]] int long_log10(const LongNumber& x, LongNumber& result);  ///< log10 x through ln 10
[[nodiscard]] int long_sin(const LongNumber& x, bool degrees, LongNumber& result);
[[nodiscard]] int long_cos(const LongNumber& x, bool degrees, LongNumber& result);
[[nodiscard]] int long_tan(const LongNumber& x, bool degrees, LongNumber& result);
[[nodiscard]] int long_cot(const LongNumber& x, bool degrees, LongNumber& result);
[[nodiscard]] int long_atn(const LongNumber& x, bool degrees, LongNumber& result);
[[nodiscard]] int long_acot(const LongNumber& x, bool degrees, LongNumber& result);
[[nodiscard]] int long_pi(LongNumber& result);     ///< cached until the rounding rule changes
[[nodiscard]] int long_e(LongNumber& result);      ///< cached until the rounding rule changes
/// n! exactly, 1 <= n < 205022 (186 out of range, 187 overflow); any mode.
[[nodiscard]] int long_factorial(const LongNumber& n, LongNumber& result);
/// x^y correctly rounded to the precision.
[[nodiscard]] int long_power(const LongNumber& x, const LongNumber& y, LongNumber& result);
/// x^y as the "^" operator and the LONG power operation give it: formed with
/// 16 more digits and rounded back to the precision (correctly rounded).
[[nodiscard]] int long_power_operator_value(const LongNumber& x, const LongNumber& y, LongNumber& result);
/// The n-th root of x (error 20 on failure).
[[nodiscard]] int long_root(const LongNumber& x, const LongNumber& n, LongNumber& result);
/// x / 2, exact.
[[nodiscard]] int long_half(const LongNumber& x, LongNumber& result);

/// Forgets the cached constants (ln 10, pi, e); the "round"/"truncate" options call it.
void clear_long_constants();

}  // namespace tl
