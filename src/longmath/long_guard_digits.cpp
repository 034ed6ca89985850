// long_guard_digits.cpp — deciding the rounding of an approximation from its guard digits.
#include "longmath/long_guard_digits.h"

#include "longmath/long_blocks.h"

namespace tl {
namespace {

/// Digit `i` (1 = the leading digit) of the normalised `n`; 0 beyond its length.
int digit_at(const LongNumber& n, int i) {
    if (i < 1 || i > n.len) return 0;
    const int block = (i - 1) / 8;
    if (block >= n.blks) return 0;
    return static_cast<int>(n.blocks[static_cast<std::size_t>(block)] / long_pow10[7 - (i - 1) % 8] % 10);
}

}  // namespace

bool long_rounding_decided(const LongNumber& a, int target, int trusted) {
    // The error may change the last two trusted digits; only the digits
    // before them are sure. Those lie next to the boundary when they read
    // 4999... or 5000... (rounding to nearest) or 0000... or 9999... (cutting).
    const int sure = trusted - 2;
    if (sure < 1) return false;
    const int first = digit_at(a, target + 1);
    if (long_state.mode.rounding) {
        if (first != 4 && first != 5) return true;
        const int rest = first == 4 ? 9 : 0;
        for (int i = 2; i <= sure; ++i) {
            if (digit_at(a, target + i) != rest) return true;
        }
        return false;
    }
    if (first != 0 && first != 9) return true;
    for (int i = 2; i <= sure; ++i) {
        if (digit_at(a, target + i) != first) return true;
    }
    return false;
}

void long_round_to_nearest(LongNumber& a, int digits) {
    LongMode& mode = long_state.mode;
    const LongPrecisionGuard guard;
    const bool rounding = mode.rounding;
    mode.rounding = true;
    long_round_at(a, digits);
    mode.rounding = rounding;
}

}  // namespace tl
