// long_divide_core.h — the block long-division core shared by both division modes.
#pragma once

#include <cstdint>

namespace tl {

/// q[0..Q-1] += r / d by whole 8-digit quotient blocks, where r has
/// n + Q - 1 normalised blocks and d has n blocks with d[0] >= 10^7. The
/// remainder is left in r (blocks 0..Q-2 become zero). Each block is guessed
/// from the two leading blocks of the running dividend through the multiplier
/// 10^8 - d[1] / d[0]; a guess that was too high is lowered by one until the
/// rest is not negative, one that was too low is followed by another guess at
/// the same position. The corrections are counted in long_state.high_guesses
/// and long_state.low_guesses. Returns 0 or the interruption check's negative code.
[[nodiscard]] int long_divide_blocks(std::uint32_t* r, const std::uint32_t* d, int n, std::uint32_t* q, int Q);

}  // namespace tl
