// long_half.cpp — halving a long number block by block.
#include "longmath/long_blocks.h"
#include "longmath/long_convert.h"
#include "longmath/long_functions.h"
#include "longmath/long_state.h"

namespace tl {

int long_half(const LongNumber& x, LongNumber& result) {
    if (long_is_zero(x)) {
        long_set_zero(result);
        return 0;
    }
    // Each block is halved; an odd block passes 50 000 000 to the block below,
    // which is one more block than x has at the end.
    const int nb = x.blks;
    long_reserve(result, (nb + 1) * 8);
    const std::uint32_t* src = x.blocks.data();
    std::uint32_t* dst = result.blocks.data();
    const std::int32_t exp = x.exp;
    const std::int32_t sgn = x.sgn;
    std::uint32_t carry = 0;
    for (int i = 0; i < nb; ++i) {
        const std::uint32_t b = src[i];
        dst[i] = (b >> 1) + carry;
        carry = (b & 1u) != 0 ? long_base / 2 : 0u;
    }
    dst[nb] = carry;
    result.blks = nb + 1;
    result.len = 8 * (nb + 1);
    result.exp = exp;
    result.sgn = sgn;
    result.nrm = 0;
    long_normalise(result, normalise_round);
    if (long_state.mode.integer_mode) long_cut_to_integer(result);
    return 0;
}

}  // namespace tl
