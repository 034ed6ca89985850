// long_factorial.cpp — n! exactly, by repeated multiplication of a block array.
#include <algorithm>

#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "longmath/long_blocks.h"
#include "longmath/long_convert.h"
#include "longmath/long_functions.h"
#include "longmath/long_state.h"
#include "longmath/long_support.h"
#include "longmath/long_timing.h"

namespace tl {
namespace {

constexpr std::int64_t factorial_limit = 205022;
/// Blocks in use added up between two interruption checks.
constexpr std::uint32_t factorial_poll_work = 50000;
/// Consecutive factors are multiplied together while the product stays
/// below this, so that a block times the product plus a carry fits 64 bits.
constexpr std::uint64_t max_combined_factor = 180000000000ull;

}  // namespace

int long_factorial(const LongNumber& n, LongNumber& result) {
    // The integer part of n counts; 1 <= n < 205022.
    if (long_is_zero(n) || n.sgn == -1 || n.exp < 1 || n.exp > 6) return report_error(err_factorial_number_out_range);
    const std::int64_t count = long_small_integer(n);
    if (count < 1 || count >= factorial_limit) return report_error(err_factorial_number_out_range);

    // Right-aligned in B blocks; `top` is the highest block in use.
    const int B = static_cast<int>((5 * count + 7) / 8);
    long_reserve(result, B * 8);
    std::uint32_t* b = result.blocks.data();
    std::fill(b, b + B, 0u);
    b[B - 1] = 1;
    int top = B - 1;
    std::uint32_t work = 0;
    for (std::uint64_t k = 2; k <= static_cast<std::uint64_t>(count);) {
        std::uint64_t factor = k++;
        while (k <= static_cast<std::uint64_t>(count) && factor * k <= max_combined_factor) factor *= k++;
        std::uint64_t carry = 0;
        for (int i = B - 1; i >= top; --i) {
            const std::uint64_t v = b[i] * factor + carry;
            carry = v / long_base;
            b[i] = static_cast<std::uint32_t>(v - carry * long_base);
        }
        while (carry != 0) {
            if (top == 0) {
                long_set_zero(result);
                return report_error(err_factorial_overflow);
            }
            b[--top] = static_cast<std::uint32_t>(carry % long_base);
            carry /= long_base;
        }
        const int rc = long_poll_interrupt(work, static_cast<std::uint32_t>(B - top), factorial_poll_work);
        if (rc < 0) {
            long_set_zero(result);
            return rc;
        }
    }
    result.blks = B;
    result.len = 8 * B;
    result.exp = 8 * B;
    result.sgn = 0;
    result.nrm = 0;
    long_normalise(result, normalise_cut);
    return 0;  // the caller reports "Factorial Calc. Time:" when timing is on
}

}  // namespace tl
