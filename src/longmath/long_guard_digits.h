// long_guard_digits.h — correctly rounded results from approximations carried
// with guard digits.
//
// A function that can only approximate its result (through logarithms and
// exponentials, say) computes it with `guard` digits beyond the target. When
// the digits after the target are far enough from a rounding boundary, the
// approximation's error cannot move the result across it, and rounding (or
// cutting) the approximation gives the correctly rounded result. Otherwise
// the work is repeated with twice the guard digits. A result that stays on a
// boundary with many guard digits is taken to lie exactly on it (an exact
// power such as 4 ^ 1.5, or an exact tie).
#pragma once

#include "longmath/long_convert.h"
#include "longmath/long_number.h"
#include "longmath/long_state.h"
#include "longmath/long_support.h"

namespace tl {

/// Guard digits of the first attempt and the most an attempt carries.
inline constexpr int first_guard_digits = 12;
inline constexpr int last_guard_digits = 96;
/// The last digits of an approximation that are not trusted.
inline constexpr int untrusted_digits = 4;

/// True when the normalised approximation `a`, right to within a unit in
/// digit `target + trusted`, rounds (or is cut, after DEBUG truncate) to the
/// same `target` digits as the exact value it approximates.
[[nodiscard]] bool long_rounding_decided(const LongNumber& a, int target, int trusted);

/// Rounds `a` to `digits` digits to nearest, whatever the rounding rule
/// (the noise below the trusted digits of an approximation that lies on a boundary).
void long_round_to_nearest(LongNumber& a, int digits);

/// Runs `compute(out)` at the precision target + extra + guard, for guard =
/// 12, 24, 48, 96 digits, until its result decides the rounding at `target`;
/// `extra` is the number of digits the computation itself loses. Leaves the
/// result rounded at `target` (the precision is restored by the caller's
/// guard). `decided` tells whether the digits decided it, or whether the
/// result was taken to lie on a boundary.
template <typename Compute>
int long_round_from_guard_digits(int target, int extra, Compute compute, LongNumber& result, bool& decided) {
    int guard = first_guard_digits;
    for (;; guard *= 2) {
        long_set_precision(target + extra + guard);
        const int rc = compute(result);
        if (rc < 0) return rc;
        decided = long_rounding_decided(result, target, guard - untrusted_digits);
        if (decided || guard >= last_guard_digits) break;
    }
    if (!decided) long_round_to_nearest(result, target + guard - untrusted_digits);
    long_round_at(result, target);
    return 0;
}

}  // namespace tl
