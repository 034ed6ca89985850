// long_trig.h — the sine-cosine driver and core shared by sin, cos, tan and cot.
#pragma once

#include "longmath/long_number.h"

namespace tl {

/// Sine and cosine of 0 <= x < 1 at the current precision (the core): the
/// argument is cut into pieces at the "sincrossover" digit positions, each
/// piece's pair is summed by its series and the pairs are joined by the
/// addition theorems. Publishes the timing variables.
[[nodiscard]] int long_sin_cos_core(const LongNumber& x, LongNumber& s, LongNumber& c);

/// Sine and cosine of any x (radians, or degrees when `degrees`), computed
/// with the precision raised by `guard` digits and rounded back. Either
/// output may be null.
[[nodiscard]] int long_sin_cos(const LongNumber& x, bool degrees, int guard, LongNumber* s, LongNumber* c);

/// The angle in radians expressed in the caller's unit (degrees: times 180 / pi).
[[nodiscard]] int long_angle_out(LongNumber& angle, bool degrees);

}  // namespace tl
