// long_constants_cache.h — pi, e and ln 10 for the long functions, kept once computed.
#pragma once

#include "longmath/long_number.h"

namespace tl {

/// Puts the constant, rounded to the current precision, into `out`; computes
/// it (and keeps it) when the cached digits do not cover the precision.
/// Returns 0 or a negated error (allocation, interruption).
[[nodiscard]] int cached_pi(LongNumber& out);
[[nodiscard]] int cached_e(LongNumber& out);
[[nodiscard]] int cached_ln10(LongNumber& out);

/// arctan(1/10) by the Gregory series on fixed-point arrays.
[[nodiscard]] int cached_arctan_tenth(LongNumber& out);

/// Copies a cached constant of `digits` digits into `out`, rounded to the
/// precision; false when the cache does not cover the precision.
bool serve_cached(const LongNumber& cached, int digits, LongNumber& out);
/// Keeps `value` (unrounded) as a cached constant of `digits` digits.
void keep_cached(const LongNumber& value, int digits, LongNumber& cached, int& cached_digits);

}  // namespace tl
