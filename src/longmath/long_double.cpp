// long_double.cpp — conversions between long numbers and doubles.
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "lang/item.h"
#include "longmath/long_blocks.h"
#include "longmath/long_convert.h"
#include "longmath/long_state.h"
#include "longmath/long_timing.h"

namespace tl {
namespace {

__extension__ typedef unsigned __int128 u128;

int fail(int error, bool report) { return report ? report_error(error) : -error; }

/// A binary magnitude as little-endian 32-bit limbs.
using Limbs = std::vector<std::uint32_t>;

void multiply_small(Limbs& x, std::uint32_t factor) {
    std::uint64_t carry = 0;
    for (std::uint32_t& limb : x) {
        const std::uint64_t v = static_cast<std::uint64_t>(limb) * factor + carry;
        limb = static_cast<std::uint32_t>(v);
        carry = v >> 32;
    }
    if (carry != 0) x.push_back(static_cast<std::uint32_t>(carry));
}

/// x = x / divisor; returns true when the division left a remainder.
bool divide_small(Limbs& x, std::uint32_t divisor) {
    std::uint64_t rest = 0;
    for (std::size_t i = x.size(); i-- > 0;) {
        const std::uint64_t v = (rest << 32) | x[i];
        x[i] = static_cast<std::uint32_t>(v / divisor);
        rest = v % divisor;
    }
    while (!x.empty() && x.back() == 0) x.pop_back();
    return rest != 0;
}

int bit_length(const Limbs& x) {
    if (x.empty()) return 0;
    return static_cast<int>(32 * (x.size() - 1)) + (32 - __builtin_clz(x.back()));
}

bool bit_at(const Limbs& x, int i) { return ((x[static_cast<std::size_t>(i / 32)] >> (i % 32)) & 1u) != 0; }

bool any_bit_below(const Limbs& x, int i) {
    for (int w = 0; w < i / 32; ++w) {
        if (x[static_cast<std::size_t>(w)] != 0) return true;
    }
    return i % 32 != 0 && (x[static_cast<std::size_t>(i / 32)] & ((1u << (i % 32)) - 1u)) != 0;
}

/// The double nearest to (x + a fraction that is non-zero when `sticky`) * 2^e2,
/// ties to even, with gradual underflow.
double round_to_double(const Limbs& x, int e2, bool sticky) {
    const int bits = bit_length(x);
    if (bits == 0) return 0.0;
    // Significant bits available at this magnitude (fewer for subnormals).
    const int top = bits + e2 - 1;  // exponent of the leading bit
    int precision = 53;
    if (top < -1022) precision = 53 - (-1022 - top);
    if (precision <= 0) {
        // At most half the smallest subnormal: zero unless strictly above half.
        const bool above_half = precision == 0 && (any_bit_below(x, bits - 1) || sticky);
        return above_half ? std::ldexp(1.0, -1074) : 0.0;
    }
    const int drop = bits - precision;
    std::uint64_t mantissa = 0;
    if (drop <= 0) {
        for (int i = bits - 1; i >= 0; --i) mantissa = (mantissa << 1) | (bit_at(x, i) ? 1u : 0u);
        return std::ldexp(static_cast<double>(mantissa), e2);
    }
    for (int i = bits - 1; i >= drop; --i) mantissa = (mantissa << 1) | (bit_at(x, i) ? 1u : 0u);
    const bool half = bit_at(x, drop - 1);
    const bool rest = sticky || any_bit_below(x, drop - 1);
    if (half && (rest || (mantissa & 1u) != 0)) ++mantissa;
    return std::ldexp(static_cast<double>(mantissa), e2 + drop);
}

/// The double nearest to digits * 10^power (digits < 10^32).
double scale_decimal(u128 digits, int power) {
    Limbs x;
    for (u128 v = digits; v != 0; v >>= 32) x.push_back(static_cast<std::uint32_t>(v));
    if (x.empty()) return 0.0;
    if (power >= 0) {
        for (; power >= 9; power -= 9) multiply_small(x, 1000000000u);
        if (power > 0) multiply_small(x, long_pow10[power]);
        return round_to_double(x, 0, false);
    }
    // digits / 10^m = digits / 5^m * 2^-m: shift left enough for 66 quotient
    // bits, then divide by powers of 5 that fit a limb.
    const int m = -power;
    const int shift = m * 7 / 3 + 70;  // 7/3 > log2(5)
    Limbs shifted(static_cast<std::size_t>(shift / 32), 0u);
    shifted.insert(shifted.end(), x.begin(), x.end());
    shifted.push_back(0);
    if (shift % 32 != 0) {
        std::uint32_t carry = 0;
        for (std::size_t i = static_cast<std::size_t>(shift / 32); i < shifted.size(); ++i) {
            const std::uint32_t v = shifted[i];
            shifted[i] = (v << (shift % 32)) | carry;
            carry = v >> (32 - shift % 32);
        }
    }
    while (!shifted.empty() && shifted.back() == 0) shifted.pop_back();
    bool sticky = false;
    int left = m;
    for (; left >= 13; left -= 13) sticky |= divide_small(shifted, 1220703125u);  // 5^13
    std::uint32_t five = 1;
    for (int i = 0; i < left; ++i) five *= 5;
    if (five > 1) sticky |= divide_small(shifted, five);
    return round_to_double(shifted, -shift - m, sticky);
}

int too_large(bool report) { return fail(err_too_large_for_double, report); }

}  // namespace

int long_from_double(double x, LongNumber& dest, bool report) {
    if (!std::isfinite(x)) return fail(err_could_not_convert_number, report);
    // 24 correctly rounded significant digits: d.ddd...e+X.
    char text[64];
    std::snprintf(text, sizeof text, "%.23e", x);
    const char* p = text;
    std::int32_t sign = 0;
    if (*p == '-') {
        sign = -1;
        ++p;
    }
    std::uint32_t blocks[3] = {0, 0, 0};
    int count = 0;
    for (; *p != 'e'; ++p) {
        if (*p == '.') continue;
        blocks[count / 8] = blocks[count / 8] * 10 + static_cast<std::uint32_t>(*p - '0');
        ++count;
    }
    const int exponent = std::atoi(p + 1);
    long_reserve(dest, 24);
    for (int i = 0; i < 3; ++i) dest.blocks[static_cast<std::size_t>(i)] = blocks[i];
    dest.blks = 3;
    dest.len = 24;
    dest.exp = exponent + 1;
    dest.sgn = sign;
    dest.nrm = 0;
    long_normalise(dest, normalise_round);
    return 0;
}

int long_double_to_scratch(double x, bool report) {
    const int rc = long_from_double(x, long_state.scratch, report);
    return rc < 0 ? rc : static_cast<int>(kind_long);
}

int long_to_double(const LongNumber& n, double& out, bool report) {
    const LongMode& mode = long_state.mode;
    const auto start = long_timer_start();
    if (n.blocks[0] == 0) {
        out = 0.0;
        return 0;
    }
    auto block = [&](int i) { return i < n.blks ? n.blocks[static_cast<std::size_t>(i)] : 0u; };
    if (n.exp >= 310) return too_large(report);
    if (n.exp == 309) {
        const std::uint32_t b0 = block(0);
        const std::uint32_t b1 = block(1);
        if (b0 > 17976931u || (b0 == 17976931u && b1 > 34862315u) ||
            (b0 == 17976931u && b1 == 34862315u && block(2) >= 70000001u)) {
            return too_large(report);
        }
    }
    double value;
    if (mode.oldconvert) {
        char text[64];
        std::snprintf(text, sizeof text, "%c.%08u%08u%08ue%d", n.sgn == -1 ? '-' : '+', block(0), block(1),
                      block(2), n.exp);
        value = std::strtod(text, nullptr);
        if (std::isinf(value) && !mode.matherrok) return too_large(report);
        long_timer_report("old long-to-double Calc. Time: ", start);
    } else {
        u128 digits = 0;
        for (int i = 0; i < 4; ++i) digits = digits * long_base + block(i);
        // Far below the smallest subnormal: the scaling would only give zero.
        value = n.exp < -400 ? 0.0 : scale_decimal(digits, n.exp - 32);
        if (n.sgn == -1) value = -value;
        long_timer_report("long-to-double Calc. Time: ", start);
    }
    out = value;
    return 0;
}

}  // namespace tl
