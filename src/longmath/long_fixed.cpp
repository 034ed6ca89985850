// long_fixed.cpp — fixed-point block arrays and the power series summed on them.
#include "longmath/long_fixed.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "exec/front_end.h"
#include "longmath/long_blocks.h"
#include "longmath/long_convert.h"
#include "longmath/long_state.h"
#include "longmath/long_support.h"

namespace tl {
namespace {

/// Rows a 64-bit column takes before its carries must move on:
/// 1000 * (10^8 - 1)^2 + 10^8 < 2^64.
constexpr int rows_between_carries = 1000;

void carry_columns(std::uint64_t* cols, int from, int W) {
    std::uint64_t carry = 0;
    for (int k = W - 1; k >= from; --k) {
        const std::uint64_t v = cols[k] + carry;
        carry = v / long_base;
        cols[k] = v - carry * long_base;
    }
}

std::uint32_t* grow(LongNumber& record, int W) {
    long_reserve(record, W * 8);
    return record.blocks.data();
}

/// f[from..W) /= d in place; returns the first non-zero block.
int divide_in_place(std::uint32_t* f, int from, int W, std::uint64_t d) {
    const SmallDivisor div(d);
    std::uint64_t rest = 0;
    for (int i = from; i < W; ++i) {
        const std::uint64_t v = rest * long_base + f[i];
        f[i] = static_cast<std::uint32_t>(div.divide(v, rest));
    }
    return fixed_first_nonzero(f, from, W);
}

/// q[from..W) = f[from..W) / d (q zero before `from`); returns q's first non-zero block.
int divide_into(const std::uint32_t* f, int from, int W, std::uint64_t d, std::uint32_t* q) {
    const SmallDivisor div(d);
    std::uint64_t rest = 0;
    std::fill(q, q + from, 0u);
    for (int i = from; i < W; ++i) {
        const std::uint64_t v = rest * long_base + f[i];
        q[i] = static_cast<std::uint32_t>(div.divide(v, rest));
    }
    return fixed_first_nonzero(q, from, W);
}

/// Divides by a product of two factors, in one step when it fits 32 bits.
int divide_twice(std::uint32_t* f, int from, int W, std::uint64_t a, std::uint64_t b) {
    if (a * b < (std::uint64_t{1} << 32)) return divide_in_place(f, from, W, a * b);
    from = divide_in_place(f, from, W, a);
    return from < W ? divide_in_place(f, from, W, b) : W;
}

void accumulate(std::int64_t* acc, const std::uint32_t* t, int from, int W, bool subtract) {
    if (subtract) {
        for (int i = from; i < W; ++i) acc[i] -= t[i];
    } else {
        for (int i = from; i < W; ++i) acc[i] += t[i];
    }
}

}  // namespace

std::int32_t fixed_settle(std::int64_t* acc, std::uint32_t* out, int W) {
    const std::int64_t base = long_base;
    auto carry_all = [&]() {
        std::int64_t carry = 0;
        for (int i = W - 1; i >= 1; --i) {
            std::int64_t v = acc[i] + carry;
            std::int64_t q = v / base;
            std::int64_t r = v - q * base;
            if (r < 0) {
                r += base;
                --q;
            }
            acc[i] = r;
            carry = q;
        }
        acc[0] += carry;
    };
    carry_all();
    std::int32_t sgn = 0;
    if (acc[0] < 0) {
        for (int i = 0; i < W; ++i) acc[i] = -acc[i];
        carry_all();
        sgn = -1;
    }
    for (int i = 0; i < W; ++i) out[i] = static_cast<std::uint32_t>(acc[i]);
    return sgn;
}

void fixed_from_long(const LongNumber& x, std::uint32_t* f, int W) {
    std::fill(f, f + W, 0u);
    if (long_is_zero(x)) return;
    const long shift = 8L - x.exp;  // digit j of x (1-based) lands on digit j + shift - 1 of f
    if (shift < 0) return;
    const long block_shift = shift / 8;
    const int r = static_cast<int>(shift % 8);
    const std::uint32_t low = long_pow10[r];
    const std::uint32_t up = long_pow10[8 - r];
    for (int i = 0; i < x.blks; ++i) {
        const long target = i + block_shift;
        if (target >= W) break;
        const std::uint32_t b = x.blocks[static_cast<std::size_t>(i)];
        if (r == 0) {
            f[target] = b;
        } else {
            f[target] += b / low;
            if (target + 1 < W) f[target + 1] += b % low * up;
        }
    }
}

void fixed_to_long(const std::uint32_t* f, int W, std::int32_t sgn, LongNumber& out) {
    long_reserve(out, W * 8);
    std::memcpy(out.blocks.data(), f, static_cast<std::size_t>(W) * sizeof(std::uint32_t));
    out.blks = W;
    out.len = 8 * W;
    out.exp = 8;
    out.sgn = sgn;
    out.nrm = 0;
}

void fixed_debug_dump(const char* label, const std::uint32_t* f, int W, std::int32_t sgn) {
    if (!long_state.mode.debug_display) return;
    LongWorkFrame frame;
    LongNumber& n = frame.take(W * 8);
    fixed_to_long(f, W, sgn, n);
    long_normalise(n, normalise_strip);
    long_debug_dump(label, n, 0);
}

int fixed_first_nonzero(const std::uint32_t* f, int from, int W) {
    while (from < W && f[from] == 0) ++from;
    return from;
}

int fixed_last_nonzero(const std::uint32_t* y, int from, int to) {
    while (to >= from && y[to] == 0) --to;
    return to;
}

int fixed_multiply(const std::uint32_t* x, int xf, const std::uint32_t* y, int yf, int yl, std::uint32_t* z, int W) {
    const int lo = xf + yf;
    if (lo >= W || yl < yf) {
        std::fill(z, z + W, 0u);
        return W;
    }
    // The product is below one unit of block lo - 2, so block lo - 1 takes every carry.
    const int start = std::max(lo - 1, 0);
    std::vector<std::uint64_t>& columns = long_state.functions.fixed_columns;
    if (columns.size() < static_cast<std::size_t>(W)) columns.resize(static_cast<std::size_t>(W));
    std::uint64_t* cols = columns.data();
    std::fill(cols + start, cols + W, 0);
    int rows = 0;
    for (int j = yf; j <= yl && j + xf < W; ++j) {
        const std::uint64_t factor = y[j];
        if (factor == 0) continue;
        std::uint64_t* row = cols + j;
        const int last = W - 1 - j;
        for (int i = xf; i <= last; ++i) row[i] += x[i] * factor;
        if (++rows == rows_between_carries) {
            carry_columns(cols, start, W);
            rows = 0;
        }
    }
    carry_columns(cols, start, W);
    std::fill(z, z + start, 0u);
    for (int k = start; k < W; ++k) z[k] = static_cast<std::uint32_t>(cols[k]);
    return fixed_first_nonzero(z, start, W);
}

int fixed_series(FixedSeries kind, const std::uint32_t* p, int pf, int pl, const std::uint32_t* square, int sf, int sl,
                 bool negative, int W, LongNumber& out) {
    LongWorkFrame frame;
    std::uint32_t* T = grow(frame.take(W * 8), W);
    std::uint32_t* U = grow(frame.take(W * 8), W);
    std::uint32_t* V = kind == series_atan ? grow(frame.take(W * 8), W) : nullptr;
    std::vector<std::int64_t>& sums = long_state.functions.fixed_sum;
    if (sums.size() < static_cast<std::size_t>(W)) sums.resize(static_cast<std::size_t>(W));
    std::int64_t* acc = sums.data();
    std::fill(acc, acc + W, 0);

    const bool by_square = kind != series_exp;
    const std::uint32_t* y = by_square ? square : p;
    const int yf = by_square ? sf : pf;
    const int yl = by_square ? sl : pl;
    std::fill(T, T + W, 0u);
    if (kind == series_sin || kind == series_atan) {
        for (int i = pf; i <= pl && i < W; ++i) T[i] = p[i];
    } else {
        T[0] = 1;
    }
    int tf = fixed_first_nonzero(T, 0, W);
    accumulate(acc, T, tf, W, false);
    fixed_debug_dump(kind == series_atan ? "powr" : "trm1", T, W, 0);
    if (by_square && long_state.mode.debug_display) {
        console_print("x2_start_block - %d, x2_num_blocks = %d\n", yf, yl - yf + 1);
    }

    for (std::uint64_t n = 1; tf < W; ++n) {
        tf = fixed_multiply(T, tf, y, yf, yl, U, W);
        std::swap(T, U);
        if (tf >= W) break;
        const std::uint64_t work = static_cast<std::uint64_t>(W - tf) * static_cast<std::uint64_t>(yl - yf + 2);
        bool subtract = (n & 1) != 0;
        if (kind == series_sin) {
            tf = divide_twice(T, tf, W, 2 * n, 2 * n + 1);
        } else if (kind == series_cos) {
            tf = divide_twice(T, tf, W, 2 * n - 1, 2 * n);
        } else if (kind == series_exp) {
            tf = divide_in_place(T, tf, W, n);
            subtract = negative && subtract;
        }
        if (long_state.mode.debug_display) console_print("n = %d, div_start = %d\n", static_cast<int>(n), tf);
        if (kind == series_atan) {
            const int vf = divide_into(T, tf, W, 2 * n + 1, V);
            accumulate(acc, V, vf, W, subtract);
            fixed_debug_dump("powr", T, W, 0);
            fixed_debug_dump("term", V, W, subtract ? -1 : 0);
        } else if (tf < W) {
            accumulate(acc, T, tf, W, subtract);
            fixed_debug_dump("term", T, W, subtract ? -1 : 0);
        }
        const int rc = long_poll_functions(work);
        if (rc < 0) return rc;
    }
    const std::int32_t sgn = fixed_settle(acc, U, W);
    fixed_to_long(U, W, sgn, out);
    long_normalise(out, normalise_round);
    return 0;
}

}  // namespace tl
