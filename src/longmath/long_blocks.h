// long_blocks.h — small helpers on digit blocks shared by the long-number routines.
#pragma once

#include <cstdint>

#include "longmath/long_number.h"

namespace tl {

/// 10^k for k = 0..8.
inline constexpr std::uint32_t long_pow10[9] = {1u,      10u,      100u,      1000u,     10000u,
                                                100000u, 1000000u, 10000000u, 100000000u};

/// True for a zero value (block 0 of a normalised number is 0 only for zero).
inline bool long_is_zero(const LongNumber& n) { return n.blocks[0] == 0; }

/// Number of decimal digits of v (v < 10^8); 0 for v = 0.
inline int long_digit_count(std::uint32_t v) {
    int d = 0;
    while (d < 8 && v >= long_pow10[d]) ++d;
    return d;
}

/// Trailing zero digits of a non-zero block (0..7).
inline int long_trailing_zeros(std::uint32_t v) {
    int k = 0;
    while (k < 7 && v % long_pow10[k + 1] == 0) ++k;
    return k;
}

/// Blocks needed for `digits` digits.
inline int long_blocks_for(int digits) { return (digits + 7) / 8; }

/// Clears the digits of `n` beyond `n.len` inside its last block.
inline void long_clear_beyond_len(LongNumber& n) {
    const int r = n.len % 8;
    if (r != 0 && n.len / 8 < n.blks) {
        std::uint32_t& b = n.blocks[static_cast<std::size_t>(n.len / 8)];
        b = b / long_pow10[8 - r] * long_pow10[8 - r];
    }
}

/// Writes `count` digit characters of the mantissa of `n`, from digit
/// `from` (0 = the first), zeros beyond the blocks.
void long_write_digits(const LongNumber& n, int from, int count, char* out);

/// Cuts a normalised number to its integer part (fraction digits dropped;
/// a value below 1 becomes zero). Used by integer-mode division and Mod.
void long_cut_to_integer(LongNumber& n);

/// The interruption check, polled by long loops after `work` more units of
/// work; `counter` is reset once it reaches `limit`. Returns 0 or the check's
/// negative code.
[[nodiscard]] int long_poll_interrupt(std::uint32_t& counter, std::uint32_t work, std::uint32_t limit);

}  // namespace tl
