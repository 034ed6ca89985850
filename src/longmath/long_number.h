// long_number.h — the LONGMATH number record: signed decimal digits in 8-digit blocks.
#pragma once

#include <cstdint>
#include <vector>

namespace tl {

/// Base of one digit block: each block holds 8 decimal digits, 0..99 999 999.
inline constexpr std::uint32_t long_base = 100000000u;
inline constexpr int long_block_digits = 8;

/// Value = sgn * 0.d1 d2 ... d_len * 10^exp, digits left-aligned in `blocks`
/// (block 0 most significant). Zero is canonical: sgn 0, exp 1, blks 1, len 1,
/// block 0 = 0, nrm 1.
struct LongNumber {
    /// Words that belong to the owning space; the arithmetic never reads them.
    /// owner[0] is 1 while the slot is in use.
    std::uint32_t owner[4] = {0, 0, 0, 0};
    /// Digit blocks; the allocated capacity is blocks.size().
    std::vector<std::uint32_t> blocks = std::vector<std::uint32_t>(1, 0);
    std::int32_t len = 1;   ///< significant decimal digits
    std::int32_t blks = 1;  ///< blocks in use
    std::int32_t sgn = 0;   ///< -1 negative; any other value counts as non-negative
    std::int32_t exp = 1;   ///< decimal exponent
    std::uint32_t nrm = 1;  ///< 1 when normalised
};

}  // namespace tl
