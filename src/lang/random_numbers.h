// random_numbers.h — the random-number generator behind RND and RANDOMIZE.
//
// Each draw is the portable sample generator of the C standard (a 32-bit
// linear congruence, 15 bits out), so a seed gives the same sequence on every
// platform. RND builds one number in [0, 1) from three draws.
#pragma once

#include <cstdint>

namespace tl {

struct RandomState {
    std::uint32_t next = 1;  ///< generator state; 1 until the first seed
    double previous = 0.0;   ///< the last number made (rnd(0) repeats it)
};

/// Seeds the generator (the previous number is kept).
void seed_random(std::uint32_t seed);

/// One draw, 0..32767.
[[nodiscard]] int random_draw();

/// A new number in [0, 1) from three draws; it becomes the previous number.
[[nodiscard]] double next_random();

/// Checks a RANDOMIZE or rnd(-x) seed: the whole part of |x| must lie in
/// 1..4294967295. Returns false when it does not.
[[nodiscard]] bool random_seed_of(double x, std::uint32_t& seed);

}  // namespace tl
