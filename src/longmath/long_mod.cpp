// long_mod.cpp — the remainder of a long division.
#include "longmath/long_arith.h"
#include "longmath/long_blocks.h"
#include "longmath/long_convert.h"
#include "longmath/long_space.h"
#include "longmath/long_state.h"
#include "longmath/long_timing.h"

namespace tl {

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
            }
        }
    }
    release_temp_longs(mark);
    if (rc == 0) long_timer_report("Mod Calc. Time: ", start);
    return rc;
}

}  // namespace tl
