// random_numbers.cpp — the random-number generator behind RND and RANDOMIZE.
#include "lang/random_numbers.h"

#include <cmath>

#include "lang/lang_state.h"

namespace tl {

void seed_random(std::uint32_t seed) { lang.random.next = seed; }

int random_draw() {
    RandomState& r = lang.random;
    r.next = r.next * 1103515245u + 12345u;  // wraps modulo 2^32
    return static_cast<int>((r.next / 65536u) % 32768u);
}

double next_random() {
    const double a = random_draw() / 32768.0;
    const double b = (random_draw() + a) / 32768.0;
    const double x = (random_draw() + b) / 32768.0;
    lang.random.previous = x;
    return x;
}

bool random_seed_of(double x, std::uint32_t& seed) {
    const double whole = std::trunc(std::fabs(x));
    if (!(whole >= 1.0 && whole <= 4294967295.0)) return false;
    seed = static_cast<std::uint32_t>(whole);
    return true;
}

}  // namespace tl
