// long_cores.h — the inner routines that several long functions share.
#pragma once

#include "longmath/long_number.h"

namespace tl {

/// e^z for |z| <= 3.5 at the current precision (error 168 above): z is cut
/// into pieces at the "expcrossover" digit positions, each piece's exponential
/// is summed by its power series and the results are multiplied together.
[[nodiscard]] int long_exp_core(const LongNumber& z, LongNumber& out);

/// ln m for 0.31 <= m <= 10 at the current precision, by Newton stages from a
/// double start (stage times go to the "...calctime(k)" variables).
[[nodiscard]] int long_log_mantissa(const LongNumber& m, LongNumber& out);

/// arctan x for 0 <= x < 1 at the current precision (pieces at the
/// "atncrossover" positions, joined by the tangent subtraction identity).
[[nodiscard]] int long_atan_core(const LongNumber& x, LongNumber& out);

}  // namespace tl
