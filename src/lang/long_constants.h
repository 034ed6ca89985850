// long_constants.h — "pi" and "euler" as long numbers in the long-default mode.
#pragma once

#include "longmath/long_number.h"

namespace tl {

enum LongConstant : int { long_constant_pi, long_constant_e };

/// Puts the constant, rounded to the current floating-point length, into
/// `dest` (computed once per length and kept; integer mode gives the integer
/// part). Returns 0, or a reported, negated error.
[[nodiscard]] int long_constant(LongConstant which, LongNumber& dest);

}  // namespace tl
