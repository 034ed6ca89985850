// long_fixed.h — fixed-point block arrays for the series of the long functions.
//
// A fixed-point array of W blocks holds block 0 as the integer part (0..10^8-1)
// and blocks 1..W-1 as the fraction, 8 digits each: value = sum f[i] * 10^(-8 i).
// Products and quotients are truncated below block W - 1.
#pragma once

#include <cstdint>

#include "longmath/long_number.h"

namespace tl {

/// Fixed-point copy of |x| (x < 10^8), truncated to W blocks.
void fixed_from_long(const LongNumber& x, std::uint32_t* f, int W);

/// out = the fixed-point value f[0..W-1] with sign `sgn`, unnormalised.
void fixed_to_long(const std::uint32_t* f, int W, std::int32_t sgn, LongNumber& out);

/// The long-number debug dump of the fixed-point value f[0..W-1] (only while
/// the debug display is on).
void fixed_debug_dump(const char* label, const std::uint32_t* f, int W, std::int32_t sgn);

/// Carries the signed column sums acc[0..W-1] (acc is used up) into the
/// blocks out[0..W-1]; returns the sign of the value (out then holds its
/// magnitude).
std::int32_t fixed_settle(std::int64_t* acc, std::uint32_t* out, int W);

/// Index of the first non-zero block at or after `from` (W when none).
[[nodiscard]] int fixed_first_nonzero(const std::uint32_t* f, int from, int W);

/// z = x * y truncated to W blocks, where x is zero before block xf and y is
/// zero outside blocks yf..yl; z must be neither operand. Returns the index
/// of z's first non-zero block (W for zero).
int fixed_multiply(const std::uint32_t* x, int xf, const std::uint32_t* y, int yf, int yl, std::uint32_t* z,
                   int W);

/// Which series `fixed_series` sums for a piece p.
enum FixedSeries : int {
    series_sin = 0,  ///< p - p^3/3! + p^5/5! - ...
    series_cos = 1,  ///< 1 - p^2/2! + p^4/4! - ...
    series_exp = 2,  ///< 1 + p + p^2/2! + ... (alternating for a negative piece)
    series_atan = 3, ///< p - p^3/3 + p^5/5 - ...
};

/// Sums the series of the piece held in blocks pf..pl of `p` (zero elsewhere,
/// W blocks) into `out` (rounded to the current precision). `square` must hold
/// p * p (blocks sf..sl) for the sine, cosine and arctangent series.
/// Returns 0 or the interruption check's negative code.
[[nodiscard]] int fixed_series(FixedSeries kind, const std::uint32_t* p, int pf, int pl, const std::uint32_t* square,
                               int sf, int sl, bool negative, int W, LongNumber& out);

/// The last non-zero block of y at or before `to` (from - 1 when none).
[[nodiscard]] int fixed_last_nonzero(const std::uint32_t* y, int from, int to);

}  // namespace tl
