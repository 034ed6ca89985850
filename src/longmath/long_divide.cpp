// long_divide.cpp — floating-point and integer division of long numbers.
#include <algorithm>
#include <cstring>

#include "exec/front_end.h"
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "longmath/long_arith.h"
#include "longmath/long_blocks.h"
#include "longmath/long_convert.h"
#include "longmath/long_divide_core.h"
#include "longmath/long_state.h"
#include "longmath/long_timing.h"

namespace tl {
namespace {

std::uint32_t* grow(std::vector<std::uint32_t>& v, int blocks) {
    if (v.size() < static_cast<std::size_t>(blocks)) v.resize(static_cast<std::size_t>(blocks));
    return v.data();
}

int divide_by_zero(bool report) {
    return report ? report_error(err_long_divide_by_zero) : -err_long_divide_by_zero;
}

/// Floating-point division: Q = (precision + 17) / 8 quotient blocks, rounded.
int divide_floating(LongNumber& dividend, LongNumber& divisor, LongNumber& quotient) {
    const LongMode& mode = long_state.mode;
    long_normalise(dividend, normalise_cut);
    long_normalise(divisor, normalise_cut);
    if (long_is_zero(divisor)) {
        long_set_zero(quotient);
        return divide_by_zero(true);
    }
    if (long_is_zero(dividend)) {
        long_set_zero(quotient);
        return 0;
    }
    // The quotient's exponent is the difference, or one more.
    if (int rc = long_check_exponent_sum(static_cast<std::int64_t>(dividend.exp) - divisor.exp, true); rc < 0) {
        long_set_zero(quotient);
        return rc;
    }
    const int Q = (mode.precision + 17) / 8;
    const int n = divisor.blks;
    const int rest_blocks = n + Q - 1;
    if (mode.debug_display) console_print("quotient length = %d\n", Q);
    long_debug_dump("op1", dividend, 0);
    long_debug_dump("op2", divisor, 0);

    std::uint32_t* r = grow(long_state.division_rest, rest_blocks);
    const int copied = std::min(dividend.blks, rest_blocks);
    std::memcpy(r, dividend.blocks.data(), static_cast<std::size_t>(copied) * sizeof(std::uint32_t));
    std::fill(r + copied, r + rest_blocks, 0u);
    std::uint32_t* d = grow(long_state.division_divisor, n);
    std::memcpy(d, divisor.blocks.data(), static_cast<std::size_t>(n) * sizeof(std::uint32_t));
    const std::int32_t exp = dividend.exp - divisor.exp + 8;
    const std::int32_t sgn = (dividend.sgn == -1) == (divisor.sgn == -1) ? 0 : -1;

    long_reserve(quotient, Q * 8);
    std::fill(quotient.blocks.data(), quotient.blocks.data() + Q, 0u);
    const int rc = long_divide_blocks(r, d, n, quotient.blocks.data(), Q);
    if (rc < 0) {
        long_set_zero(quotient);
        return rc;
    }
    quotient.blks = Q;
    quotient.len = 8 * Q;
    quotient.exp = exp;
    quotient.sgn = sgn;
    quotient.nrm = 0;
    if (mode.debug_display) {
        console_print("High guesses = %d, low guesses = %d\n", long_state.high_guesses, long_state.low_guesses);
    }
    long_normalise(quotient, normalise_round);
    return 0;
}

/// Integer division: the quotient's integer part, the remainder in the
/// global remainder number.
int divide_integer(LongNumber& dividend, LongNumber& divisor, LongNumber& quotient) {
    const LongMode& mode = long_state.mode;
    LongNumber& remainder = long_state.remainder;
    long_cut_to_integer(dividend);
    long_cut_to_integer(divisor);
    long_debug_dump("ddi", dividend, 0);
    long_debug_dump("dsi", divisor, 0);
    if (long_is_zero(divisor)) {
        long_set_zero(quotient);
        return divide_by_zero(true);
    }
    // |divisor| > |dividend|: quotient 0, the dividend is the remainder.
    bool smaller = long_is_zero(dividend) || dividend.exp < divisor.exp;
    if (!smaller && dividend.exp == divisor.exp) {
        const int common = std::min(dividend.blks, divisor.blks);
        int k = 0;
        while (k < common && dividend.blocks[static_cast<std::size_t>(k)] == divisor.blocks[static_cast<std::size_t>(k)]) ++k;
        smaller = k < common ? dividend.blocks[static_cast<std::size_t>(k)] < divisor.blocks[static_cast<std::size_t>(k)]
                             : dividend.blks < divisor.blks;
    }
    if (smaller) {
        long_copy(dividend, remainder);
        long_set_zero(quotient);
        long_debug_dump("rem", remainder, 0);
        return 0;
    }

    // Shift the dividend so that its digits and the divisor's lie on the
    // same block boundaries, with one spare leading block.
    const int s = ((dividend.exp - divisor.exp) % 8 + 8) % 8;
    const std::int32_t shifted_exp = dividend.exp + 8 - s;
    const int quotient_blocks = (shifted_exp - divisor.exp) / 8 + 1;
    const int dividend_blocks = dividend.blks + 1;
    // Divisor blocks (zeros appended when the dividend reaches further down).
    const int n = std::max(divisor.blks, dividend_blocks - quotient_blocks + 1);
    const int rest_blocks = n + quotient_blocks - 1;
    if (mode.debug_display) console_print("quotient blocks = %d, shift digits = %d\n", quotient_blocks, s);

    std::uint32_t* r = grow(long_state.division_rest, rest_blocks);
    const std::uint32_t* src = dividend.blocks.data();
    const std::uint64_t scale = long_pow10[s];
    std::uint64_t carry = 0;
    for (int i = dividend.blks - 1; i >= 0; --i) {
        const std::uint64_t v = src[i] * scale + carry;
        carry = v / long_base;
        r[i + 1] = static_cast<std::uint32_t>(v - carry * long_base);
    }
    r[0] = static_cast<std::uint32_t>(carry);
    std::fill(r + dividend_blocks, r + rest_blocks, 0u);
    std::uint32_t* d = grow(long_state.division_divisor, n);
    std::memcpy(d, divisor.blocks.data(), static_cast<std::size_t>(divisor.blks) * sizeof(std::uint32_t));
    std::fill(d + divisor.blks, d + n, 0u);
    const std::int32_t quotient_sgn = (dividend.sgn == -1) == (divisor.sgn == -1) ? 0 : -1;
    const std::int32_t remainder_sgn = dividend.sgn == -1 ? -1 : 0;
    if (mode.debug_display) {
        LongNumber shown;
        shown.blocks.assign(r, r + rest_blocks);
        shown.blks = rest_blocks;
        shown.len = 8 * rest_blocks;
        shown.exp = shifted_exp;
        shown.sgn = dividend.sgn;
        shown.nrm = 0;
        long_debug_dump("ndd", shown, 0);
    }

    long_reserve(quotient, quotient_blocks * 8);
    std::fill(quotient.blocks.data(), quotient.blocks.data() + quotient_blocks, 0u);
    const int rc = long_divide_blocks(r, d, n, quotient.blocks.data(), quotient_blocks);
    if (rc < 0) {
        long_set_zero(quotient);
        return rc;
    }
    quotient.blks = quotient_blocks;
    quotient.len = 8 * quotient_blocks;
    quotient.exp = 8 * quotient_blocks;
    quotient.sgn = quotient_sgn;
    quotient.nrm = 0;
    long_debug_dump("qu", quotient, 0);
    long_normalise(quotient, normalise_cut);

    long_reserve(remainder, rest_blocks * 8);
    std::memcpy(remainder.blocks.data(), r, static_cast<std::size_t>(rest_blocks) * sizeof(std::uint32_t));
    remainder.blks = rest_blocks;
    remainder.len = 8 * rest_blocks;
    remainder.exp = shifted_exp;
    remainder.sgn = remainder_sgn;
    remainder.nrm = 0;
    long_debug_dump("remdr", remainder, 0);
    long_normalise(remainder, normalise_cut);
    long_debug_dump("rem", remainder, 0);
    long_debug_dump("qun", quotient, 0);
    if (mode.debug_display) {
        console_print("High guesses = %d, low guesses = %d\n", long_state.high_guesses, long_state.low_guesses);
    }
    return 0;
}

}  // namespace

int long_divide(LongNumber& dividend, LongNumber& divisor, LongNumber& quotient) {
    const auto start = long_timer_start();
    long_state.high_guesses = 0;
    long_state.low_guesses = 0;
    int rc;
    if (&dividend == &divisor) {
        // x / x: the same record cannot be both the running dividend and the divisor.
        long_copy(divisor, long_state.alias_result);
        LongNumber& copy = long_state.alias_result;
        rc = long_state.mode.integer_mode ? divide_integer(dividend, copy, quotient)
                                          : divide_floating(dividend, copy, quotient);
    } else if (long_state.mode.integer_mode) {
        rc = divide_integer(dividend, divisor, quotient);
    } else {
        rc = divide_floating(dividend, divisor, quotient);
    }
    if (rc == 0) long_timer_report("Div Calc. Time: ", start);
    if (rc == 0) rc = long_check_exponent(quotient, true);
    return rc;
}

}  // namespace tl
