// long_constants.h — "pi" and "euler" as long numbers in the long-default mode.
#pragma once

#include "longmath/long_number.h"

namespace tl {

enum LongConstant : int { long_constant_pi, long_constant_e };

/// Digits of the constants held as text; precisions up to this are served
/// from the text (rounded to the precision).
inline constexpr int long_constant_text_digits = 110;

/// Puts the constant, rounded to the current floating-point length, into
/// `dest`. Lengths above the digits held are computed by long_pi / long_e.
/// Returns 0 or a reported, negated error.
[[nodiscard]] int long_constant(LongConstant which, LongNumber& dest);

}  // namespace tl
