// long_support.cpp — shared helpers of the long elementary functions.
#include "longmath/long_support.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

#include "exec/named_variables.h"
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "longmath/long_blocks.h"
#include "longmath/long_convert.h"
#include "longmath/long_state.h"

namespace tl {

namespace {
/// Block operations of the functions' loops between two interruption checks.
constexpr std::uint32_t function_poll_work = 4000000;
}  // namespace

LongWorkFrame::LongWorkFrame() : mark(long_state.functions.function_top) {}

LongWorkFrame::~LongWorkFrame() { long_state.functions.function_top = mark; }

LongNumber& LongWorkFrame::take(int digits) {
    std::deque<LongNumber>& records = long_state.functions.function_records;
    if (long_state.functions.function_top == records.size()) records.emplace_back();
    LongNumber& n = records[long_state.functions.function_top++];
    long_reserve(n, digits);
    long_set_zero(n);
    return n;
}

LongPrecisionGuard::LongPrecisionGuard() : saved(long_state.mode.precision) {}

LongPrecisionGuard::~LongPrecisionGuard() { long_state.mode.precision = saved; }

void long_set_precision(int digits) { long_state.mode.precision = std::max(digits, 8); }

void long_round_at(LongNumber& x, int digits) {
    long_set_precision(digits);
    x.nrm = 0;
    long_normalise(x, normalise_round);
}

void long_set_int(LongNumber& n, std::int64_t v) {
    if (v == 0) {
        long_set_zero(n);
        return;
    }
    std::uint64_t m = v < 0 ? static_cast<std::uint64_t>(-(v + 1)) + 1 : static_cast<std::uint64_t>(v);
    // At most 20 digits: three blocks, right-aligned, then normalised.
    long_reserve(n, 24);
    for (int i = 2; i >= 0; --i) {
        n.blocks[static_cast<std::size_t>(i)] = static_cast<std::uint32_t>(m % long_base);
        m /= long_base;
    }
    n.blks = 3;
    n.len = 24;
    n.exp = 24;
    n.sgn = v < 0 ? -1 : 0;
    n.nrm = 0;
    long_normalise(n, normalise_strip);
}

void long_multiply_small(const LongNumber& x, std::uint32_t k, LongNumber& out) {
    if (long_is_zero(x) || k == 0) {
        long_set_zero(out);
        return;
    }
    // Two spare leading blocks take the carry (below 2^32 * 10^8 / 10^8,
    // it may need more than one block); out may be x.
    const int nb = x.blks;
    long_reserve(out, (nb + 2) * 8);
    const std::uint32_t* src = x.blocks.data();
    std::uint32_t* dst = out.blocks.data();
    std::uint64_t carry = 0;
    for (int i = nb - 1; i >= 0; --i) {
        const std::uint64_t v = static_cast<std::uint64_t>(src[i]) * k + carry;
        carry = v / long_base;
        dst[i + 2] = static_cast<std::uint32_t>(v - carry * long_base);
    }
    dst[1] = static_cast<std::uint32_t>(carry % long_base);
    dst[0] = static_cast<std::uint32_t>(carry / long_base);
    out.blks = nb + 2;
    out.len = 8 * (nb + 2);
    out.exp = x.exp + 16;
    out.sgn = x.sgn;
    out.nrm = 0;
    long_normalise(out, normalise_round);
}

int long_divide_small(const LongNumber& x, std::uint32_t d, LongNumber& out) {
    if (long_is_zero(x)) {
        long_set_zero(out);
        return 0;
    }
    const LongMode& mode = long_state.mode;
    const int nb = x.blks;
    const int q_blocks = mode.integer_mode ? nb + 1 : std::max(nb, (mode.precision + 7) / 8 + 2);
    // The quotient starts one block up (it may begin with a zero block).
    long_reserve(out, q_blocks * 8);
    const SmallDivisor div(d);
    const std::uint32_t* src = x.blocks.data();
    std::uint32_t* dst = out.blocks.data();
    const std::int32_t exp = x.exp;
    const std::int32_t sgn = x.sgn;
    std::uint64_t rest = 0;
    for (int i = 0; i < q_blocks; ++i) {
        const std::uint64_t v = rest * long_base + (i < nb ? src[i] : 0u);
        dst[i] = static_cast<std::uint32_t>(div.divide(v, rest));
    }
    out.blks = q_blocks;
    out.len = 8 * q_blocks;
    out.exp = exp;
    out.sgn = sgn;
    out.nrm = 0;
    long_normalise(out, normalise_round);
    if (mode.integer_mode) long_cut_to_integer(out);
    return long_poll_functions(static_cast<std::uint64_t>(q_blocks));
}

void long_exchange(LongNumber& a, LongNumber& b) {
    std::swap(a.blocks, b.blocks);
    std::swap(a.len, b.len);
    std::swap(a.blks, b.blks);
    std::swap(a.sgn, b.sgn);
    std::swap(a.exp, b.exp);
    std::swap(a.nrm, b.nrm);
}

bool long_is_integer(const LongNumber& n) { return long_is_zero(n) || n.len <= n.exp; }

void long_flip_sign(LongNumber& n) {
    if (!long_is_zero(n)) n.sgn = n.sgn == -1 ? 0 : -1;
}

std::int64_t long_small_integer(const LongNumber& n) {
    if (long_is_zero(n) || n.exp <= 0) return 0;
    std::int64_t v = 0;
    for (int d = 0; d < n.exp && d < 18; ++d) {
        const int b = d / 8;
        const std::uint32_t block = b < n.blks ? n.blocks[static_cast<std::size_t>(b)] : 0u;
        v = v * 10 + block / long_pow10[7 - d % 8] % 10;
    }
    return n.sgn == -1 ? -v : v;
}

int long_require_floating() {
    if (long_state.mode.integer_mode) return report_error(err_long_operation_only_valid_floating);
    return 0;
}

int long_poll_functions(std::uint64_t work) {
    std::uint32_t& counter = long_state.functions.function_work;
    const std::uint64_t sum = counter + work;
    counter = static_cast<std::uint32_t>(std::min<std::uint64_t>(sum, function_poll_work));
    return long_poll_interrupt(counter, 0, function_poll_work);
}

void long_read_crossovers(const char* prefix, int count, const int* defaults, int* out) {
    char name[64];
    for (int k = 0; k < count; ++k) {
        std::snprintf(name, sizeof name, "%s%d", prefix, k + 1);
        const double v = named_double(name);
        int value = defaults[k];
        if (v != 0.0 && std::isfinite(v)) value = static_cast<int>(std::clamp(v, -1e9, 1e9));
        if (k > 0 && value < out[k - 1] + 8) value = out[k - 1] + 8;
        if (k == 0 && value < 8) value = 8;
        out[k] = value;
    }
}

void long_store_time(const char* base, double ms) { set_named_double(base, ms); }

void long_store_time(const char* base, int k, double ms) {
    char name[64];
    std::snprintf(name, sizeof name, "%s(%d)", base, k);
    set_named_double(name, ms);
}

}  // namespace tl

namespace tl {

LongFunctionState::LongFunctionState() = default;
LongFunctionState::~LongFunctionState() = default;
LongFunctionState::LongFunctionState(LongFunctionState&&) noexcept = default;
LongFunctionState& LongFunctionState::operator=(LongFunctionState&&) noexcept = default;

}  // namespace tl
