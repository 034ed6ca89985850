// long_normalise.cpp — canonical form, rounding at the precision, and record copies.
#include <algorithm>
#include <cstring>

#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "longmath/long_arith.h"
#include "longmath/long_blocks.h"
#include "longmath/long_convert.h"
#include "longmath/long_state.h"

namespace tl {

void long_reserve(LongNumber& n, int digits) {
    const auto need = static_cast<std::size_t>(std::max(long_blocks_for(digits), 1));
    if (n.blocks.size() < need) n.blocks.resize(need);
}

void long_set_zero(LongNumber& dest) {
    if (dest.blocks.empty()) dest.blocks.resize(1);
    dest.blocks[0] = 0;
    dest.len = 1;
    dest.blks = 1;
    dest.sgn = 0;
    dest.exp = 1;
    dest.nrm = 1;
}

void long_copy(const LongNumber& src, LongNumber& dest) {
    if (&src == &dest) return;
    const int blks = std::max(src.blks, 1);
    long_reserve(dest, blks * 8);
    std::memcpy(dest.blocks.data(), src.blocks.data(), static_cast<std::size_t>(blks) * sizeof(std::uint32_t));
    dest.len = src.len;
    dest.blks = blks;
    dest.sgn = src.sgn;
    dest.exp = src.exp;
    dest.nrm = src.nrm;
}

int long_check_exponent(const LongNumber& n, bool report) {
    if (n.exp >= -long_exponent_limit && n.exp <= long_exponent_limit) return 0;
    if (n.blocks[0] == 0) return 0;
    return report ? report_error(err_exponent_out_range) : -err_exponent_out_range;
}

int long_check_exponent_sum(std::int64_t exp, bool report) {
    constexpr std::int64_t bound = static_cast<std::int64_t>(long_exponent_limit) + 1;
    if (exp >= -bound && exp <= bound) return 0;
    return report ? report_error(err_exponent_out_range) : -err_exponent_out_range;
}

void long_normalise(LongNumber& n, int round_flag) {
    if (n.nrm == 1) return;
    std::uint32_t* b = n.blocks.data();
    const LongMode& mode = long_state.mode;

    // Leading zero blocks.
    int first = 0;
    while (first < n.blks && b[first] == 0) ++first;
    if (first == n.blks || n.len <= 8 * first) {
        long_set_zero(n);
        return;
    }
    if (first > 0) {
        std::memmove(b, b + first, static_cast<std::size_t>(n.blks - first) * sizeof(std::uint32_t));
        n.blks -= first;
        n.len -= 8 * first;
        n.exp -= 8 * first;
    }
    if (n.len > 8 * n.blks) n.len = 8 * n.blks;

    // Leading zero digits of block 0: shift the whole mantissa left.
    if (b[0] < 10000000u) {
        const int k = 8 - long_digit_count(b[0]);
        if (k >= n.len) {
            long_set_zero(n);
            return;
        }
        const std::uint32_t keep = long_pow10[8 - k];
        const std::uint32_t up = long_pow10[k];
        for (int i = 0; i + 1 < n.blks; ++i) b[i] = b[i] % keep * up + b[i + 1] / keep;
        b[n.blks - 1] = b[n.blks - 1] % keep * up;
        n.len -= k;
        n.exp -= k;
    }

    const bool floating = !mode.integer_mode;
    const int precision = mode.precision;

    // Round half away from zero: add half a unit at the first dropped digit.
    if (round_flag == normalise_round && floating && mode.rounding && n.len > precision &&
        precision / 8 < n.blks) {
        int i = precision / 8;
        std::uint32_t carry = 5u * long_pow10[7 - precision % 8];
        while (carry != 0 && i >= 0) {
            std::uint32_t v = b[i] + carry;
            carry = 0;
            if (v >= long_base) {
                v -= long_base;
                carry = 1;
            }
            b[i] = v;
            --i;
        }
        if (carry != 0) {
            b[0] = 10000000u;
            n.exp += 1;
            n.len = 1;
            n.blks = 1;
            n.nrm = 1;
            return;
        }
    }

    // Cut to the precision.
    if (round_flag != normalise_strip && floating) {
        if (n.len > precision) n.len = precision;
        n.blks = std::min(n.blks, long_blocks_for(n.len));
    }

    // The digits beyond len are not part of the number; clear them so that
    // the blocks and len always describe the same value.
    n.blks = std::min(n.blks, long_blocks_for(n.len));
    long_clear_beyond_len(n);
    while (n.blks > 1 && b[n.blks - 1] == 0) --n.blks;
    n.len = 8 * n.blks - long_trailing_zeros(b[n.blks - 1]);
    n.nrm = 1;
}

void long_cut_to_integer(LongNumber& n) {
    if (long_is_zero(n) || n.len <= n.exp) return;
    if (n.exp <= 0) {
        long_set_zero(n);
        return;
    }
    n.len = n.exp;
    n.blks = long_blocks_for(n.len);
    long_clear_beyond_len(n);
    while (n.blks > 1 && n.blocks[static_cast<std::size_t>(n.blks - 1)] == 0) --n.blks;
    n.len = 8 * n.blks - long_trailing_zeros(n.blocks[static_cast<std::size_t>(n.blks - 1)]);
}

}  // namespace tl
