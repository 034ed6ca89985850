// long_add.cpp — addition, subtraction and comparison of long numbers.
#include <algorithm>
#include <cstring>

#include "longmath/long_arith.h"
#include "longmath/long_blocks.h"
#include "longmath/long_convert.h"
#include "longmath/long_state.h"

namespace tl {
namespace {

/// -1, 0 or 1 as |a| <, =, > |b| (both normalised and non-zero).
int compare_magnitudes(const LongNumber& a, const LongNumber& b) {
    if (a.exp != b.exp) return a.exp > b.exp ? 1 : -1;
    const int common = std::min(a.blks, b.blks);
    for (int i = 0; i < common; ++i) {
        const std::uint32_t x = a.blocks[static_cast<std::size_t>(i)];
        const std::uint32_t y = b.blocks[static_cast<std::size_t>(i)];
        if (x != y) return x > y ? 1 : -1;
    }
    return a.blks == b.blks ? 0 : (a.blks > b.blks ? 1 : -1);
}

/// result = a + (b with sign b_sign); result is not a or b.
void add_signed(const LongNumber& a, const LongNumber& b, std::int32_t b_sign, LongNumber& r) {
    const LongMode& mode = long_state.mode;
    if (long_is_zero(b)) {
        long_copy(a, r);
        r.nrm = 0;
        return;
    }
    if (long_is_zero(a)) {
        long_copy(b, r);
        r.sgn = b_sign;
        r.nrm = 0;
        return;
    }
    const bool same_signs = (a.sgn == -1) == (b_sign == -1);

    // The operand of larger magnitude is L (at equal exponents and signs, a).
    bool a_is_large;
    if (a.exp != b.exp) {
        a_is_large = a.exp > b.exp;
    } else if (same_signs) {
        a_is_large = true;
    } else {
        a_is_large = compare_magnitudes(a, b) >= 0;
    }
    const LongNumber& L = a_is_large ? a : b;
    const LongNumber& S = a_is_large ? b : a;
    const std::int32_t l_sign = a_is_large ? a.sgn : b_sign;

    const long gap = static_cast<long>(L.exp) - S.exp;
    if (!mode.integer_mode && gap > mode.precision + 2) {
        long_copy(L, r);
        r.sgn = l_sign;
        r.nrm = 0;
        return;
    }

    // Shift L left by s digits into blocks 1.. so that S falls on whole blocks.
    const int s = static_cast<int>(((gap % 8) + 8) % 8);
    const long result_exp = L.exp + 8 - s;
    long capacity = std::max<long>(L.len + 8, result_exp - S.exp + S.len);
    if (!mode.integer_mode) capacity = std::min<long>(capacity, mode.precision + 8 + (same_signs ? 1 : 2));
    const int nb = long_blocks_for(static_cast<int>(capacity));
    long_reserve(r, nb * 8);
    std::uint32_t* out = r.blocks.data();
    const std::uint32_t* lb = L.blocks.data();
    const int l_blocks = std::min(L.blks, nb - 1);
    if (s == 0) {
        out[0] = 0;
        std::memcpy(out + 1, lb, static_cast<std::size_t>(l_blocks) * sizeof(std::uint32_t));
    } else {
        const std::uint64_t scale = long_pow10[s];
        std::uint64_t carry = 0;
        if (l_blocks < L.blks) carry = static_cast<std::uint64_t>(lb[l_blocks]) * scale / long_base;
        for (int i = l_blocks - 1; i >= 0; --i) {
            const std::uint64_t v = static_cast<std::uint64_t>(lb[i]) * scale + carry;
            carry = v / long_base;
            out[i + 1] = static_cast<std::uint32_t>(v - carry * long_base);
        }
        out[0] = static_cast<std::uint32_t>(carry);
    }
    if (l_blocks + 1 < nb) {
        std::memset(out + l_blocks + 1, 0, static_cast<std::size_t>(nb - l_blocks - 1) * sizeof(std::uint32_t));
    }

    // Add or subtract S's blocks, from its last block that fits upwards.
    const long offset = (result_exp - S.exp) / 8;
    const std::uint32_t* sb = S.blocks.data();
    if (offset < nb) {
        const int count = static_cast<int>(std::min<long>(S.blks, nb - offset));
        std::uint32_t* dst = out + offset;
        int k = count - 1;
        if (same_signs) {
            std::uint32_t carry = 0;
            for (; k >= 0; --k) {
                std::uint32_t v = dst[k] + sb[k] + carry;
                carry = v >= long_base ? 1u : 0u;
                dst[k] = v - carry * long_base;
            }
            for (long i = offset - 1; carry != 0 && i >= 0; --i) {
                const std::uint32_t v = out[i] + 1;
                carry = v >= long_base ? 1u : 0u;
                out[i] = v - carry * long_base;
            }
        } else {
            std::uint32_t borrow = 0;
            for (; k >= 0; --k) {
                const std::uint32_t take = sb[k] + borrow;
                if (dst[k] >= take) {
                    dst[k] -= take;
                    borrow = 0;
                } else {
                    dst[k] = dst[k] + long_base - take;
                    borrow = 1;
                }
            }
            for (long i = offset - 1; borrow != 0 && i >= 0; --i) {
                if (out[i] > 0) {
                    --out[i];
                    borrow = 0;
                } else {
                    out[i] = long_base - 1;
                }
            }
        }
    }
    r.blks = nb;
    r.len = static_cast<std::int32_t>(capacity);
    r.exp = static_cast<std::int32_t>(result_exp);
    r.sgn = l_sign;
    r.nrm = 0;
}

int add_into(const LongNumber& a, const LongNumber& b, std::int32_t b_sign, LongNumber& result) {
    if (&result == &a || &result == &b) {
        add_signed(a, b, b_sign, long_state.alias_result);
        long_copy(long_state.alias_result, result);
    } else {
        add_signed(a, b, b_sign, result);
    }
    return 0;
}

}  // namespace

int long_add(const LongNumber& a, const LongNumber& b, LongNumber& result) { return add_into(a, b, b.sgn, result); }

int long_subtract(const LongNumber& a, const LongNumber& b, LongNumber& result) {
    return add_into(a, b, b.sgn == -1 ? 0 : -1, result);
}

int long_compare(const LongNumber& a, const LongNumber& b) {
    const bool a_zero = long_is_zero(a);
    const bool b_zero = long_is_zero(b);
    const bool a_negative = a.sgn == -1;
    const bool b_negative = b.sgn == -1;
    if (a_zero && b_zero) return 0;
    if (a_zero) return b_negative ? 1 : -1;
    if (b_zero) return a_negative ? -1 : 1;
    if (a_negative != b_negative) return a_negative ? -1 : 1;
    const int m = compare_magnitudes(a, b);
    return a_negative ? -m : m;
}

}  // namespace tl
