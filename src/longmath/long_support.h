// long_support.h — shared helpers of the long elementary functions: working
// records, precision guards, small-integer operations, the tuning and timing
// variables, and the interruption polling of their own loops.
#pragma once

#include <cstddef>
#include <cstdint>

#include "longmath/long_number.h"

namespace tl {

/// Working records taken from the function record stack; everything taken
/// through a frame is given back when the frame ends, on every path.
struct LongWorkFrame {
    std::size_t mark;
    LongWorkFrame();
    ~LongWorkFrame();
    LongWorkFrame(const LongWorkFrame&) = delete;
    LongWorkFrame& operator=(const LongWorkFrame&) = delete;
    /// A record set to zero with room for at least `digits` digits.
    LongNumber& take(int digits);
};

/// Restores the global precision when it ends.
struct LongPrecisionGuard {
    int saved;
    LongPrecisionGuard();
    ~LongPrecisionGuard();
    LongPrecisionGuard(const LongPrecisionGuard&) = delete;
    LongPrecisionGuard& operator=(const LongPrecisionGuard&) = delete;
};

/// Sets the working precision (at least 8 digits).
void long_set_precision(int digits);
/// Sets the working precision to `digits` and normalises `x` to it again,
/// rounding as the rounding rule says (the end of a function that worked with
/// more digits).
void long_round_at(LongNumber& x, int digits);

/// Division of a 64-bit value by a fixed small divisor through a multiply by
/// its reciprocal (divisor below 2^32, numerator below divisor * 10^8).
struct SmallDivisor {
    std::uint64_t d;
    std::uint64_t m;  ///< floor((2^64 - 1) / d)
    explicit SmallDivisor(std::uint64_t divisor) : d(divisor), m(~std::uint64_t{0} / divisor) {}
    std::uint64_t divide(std::uint64_t n, std::uint64_t& rest) const {
        __extension__ typedef unsigned __int128 u128;
        std::uint64_t q = static_cast<std::uint64_t>((static_cast<u128>(n) * m) >> 64);
        std::uint64_t r = n - q * d;
        while (r >= d) {
            ++q;
            r -= d;
        }
        rest = r;
        return q;
    }
};

/// n = v exactly (any mode).
void long_set_int(LongNumber& n, std::int64_t v);
/// out = x * k, rounded to the precision (k below 2^32).
void long_multiply_small(const LongNumber& x, std::uint32_t k, LongNumber& out);
/// out = x / d to the precision, rounded (0 < d < 2^32). Polls the interruption check.
[[nodiscard]] int long_divide_small(const LongNumber& x, std::uint32_t d, LongNumber& out);
/// True when the normalised `n` is an integer.
[[nodiscard]] bool long_is_integer(const LongNumber& n);
/// Exchanges the values (digits and fields, not the owner words) of two records.
void long_exchange(LongNumber& a, LongNumber& b);
/// Makes `n` its own absolute value.
inline void long_make_positive(LongNumber& n) { n.sgn = 0; }
/// Flips the sign of a non-zero `n`.
void long_flip_sign(LongNumber& n);
/// The value of a small normalised integer `n` (|n| < 2^62), for counts and exponents.
[[nodiscard]] std::int64_t long_small_integer(const LongNumber& n);

/// Reports error 162 in integer mode.
[[nodiscard]] int long_require_floating();

/// Polls the interruption check after `work` more units of the functions' own
/// loops (about one unit per block operation).
[[nodiscard]] int long_poll_functions(std::uint64_t work);

/// Reads the crossovers "<prefix>1" .. "<prefix><count>" into `out`: a
/// missing or zero variable gives the default, and each must be at least 8
/// above the one before it (it is raised otherwise).
void long_read_crossovers(const char* prefix, int count, const int* defaults, int* out);

/// Stores a time into the double variable "<base>" or the element "<base>(k)".
void long_store_time(const char* base, double ms);
void long_store_time(const char* base, int k, double ms);

}  // namespace tl
