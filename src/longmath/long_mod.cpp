// long_mod.cpp — the remainder of a long division.
#include <algorithm>
#include <cstdint>

#include "longmath/long_arith.h"
#include "longmath/long_blocks.h"
#include "longmath/long_convert.h"
#include "longmath/long_space.h"
#include "longmath/long_state.h"
#include "longmath/long_support.h"
#include "longmath/long_timing.h"

namespace tl {
namespace {

/// Digits beyond the span of the operands that the division carries.
constexpr std::int64_t mod_guard_digits = 16;
/// The widest span worked exactly (the longest number there is); wider ones
/// are worked at the precision.
constexpr std::int64_t max_exact_mod_digits = 1000000 + mod_guard_digits;

}  // namespace

int long_mod(const LongNumber& a, const LongNumber& b, LongNumber& result) {
    const auto start = long_timer_start();
    LongMode& mode = long_state.mode;
    // The division consumes its operands: it works on temporary copies.
    const std::uint32_t mark = temp_long_mark();
    const std::int64_t a_ref = new_temp_long();
    if (a_ref < 0) return -1;
    const std::int64_t b_ref = new_temp_long();
    if (b_ref < 0) {
        release_temp_longs(mark);
        return -1;
    }
    LongNumber& a_copy = long_at(static_cast<std::uint32_t>(a_ref));
    LongNumber& b_copy = long_at(static_cast<std::uint32_t>(b_ref));
    long_copy(a, a_copy);
    long_copy(b, b_copy);

    // In floating-point mode the work spans every digit position of a and
    // b, so that int(a / b) is whole and a - int(a / b) * b exact: a
    // dividend above the precision keeps its remainder. Only the result is
    // cut to the precision.
    const LongPrecisionGuard guard;
    const int target = mode.precision;
    if (!mode.integer_mode && !long_is_zero(a) && !long_is_zero(b)) {
        const std::int64_t top = std::max<std::int64_t>(a.exp, b.exp);
        const std::int64_t bottom = std::min<std::int64_t>(std::int64_t{a.exp} - a.len, std::int64_t{b.exp} - b.len);
        const std::int64_t span = top - bottom + mod_guard_digits;
        if (span > target && span <= max_exact_mod_digits) long_set_precision(static_cast<int>(span));
    }

    // The quotient is truncated, not rounded.
    const bool rounding = mode.rounding;
    mode.rounding = false;
    LongNumber& q = long_state.scratch;
    int rc = long_divide(a_copy, b_copy, q);
    mode.rounding = rounding;
    if (rc == 0) {
        if (mode.integer_mode) {
            long_copy(long_state.remainder, result);
        } else {
            // a - int(a / b) * b; the copies still hold a and b.
            long_cut_to_integer(q);
            LongNumber& p = long_state.remainder;
            rc = long_multiply_unnormalised(q, b_copy, p);
            if (rc == 0) {
                long_normalise(p, normalise_cut);
                rc = long_subtract(a_copy, p, result);
                long_normalise(result, normalise_cut);
                long_set_precision(target);
                result.nrm = 0;
                long_normalise(result, normalise_cut);
            }
        }
    }
    release_temp_longs(mark);
    if (rc == 0) long_timer_report("Mod Calc. Time: ", start);
    return rc;
}

}  // namespace tl
