// long_divide_core.cpp — long division by whole 8-digit quotient blocks.
//
// The running dividend is held in signed 64-bit columns whose carries are
// not moved on after each subtraction of a trial product. A row then costs one
// widening multiply and one subtraction per block, which the compiler turns
// into vector code, instead of a division by 10^8 and a borrow chain per block.
//
// The steps of the algorithm only need exact knowledge of the leading blocks:
// the two blocks a guess is made from, whether the span is below the divisor,
// and the sign of the rest after a subtraction. These are read from the four
// leading columns, with a bound on how much the columns further down can carry
// into them. When the bound leaves a step undecided (the rest lies within
// about 10^-13 of a block boundary), the columns are normalised and the step
// is decided on exact blocks. So every guess, and with it every quotient
// block and both guess counters, is what it would be with the blocks kept
// normalised throughout.
#include "longmath/long_divide_core.h"

#include <algorithm>

#include "longmath/long_blocks.h"
#include "longmath/long_state.h"

namespace tl {
namespace {

__extension__ typedef __int128 i128;

constexpr std::uint32_t divide_poll_work = 1500000;
constexpr std::int64_t base = long_base;
/// The columns are normalised before a row could take one beyond this size.
constexpr std::int64_t column_limit = std::int64_t{1} << 62;
/// Divisors of this many blocks and more are divided in columns.
constexpr int column_divisor_blocks = 16;

std::int64_t floor_div(std::int64_t a, std::int64_t b) {
    std::int64_t q = a / b;
    if (a - q * b < 0) --q;
    return q;
}

#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__)
/// Built twice, for processors with and without AVX2; the loader picks one.
/// (Clang does not combine these clones with noinline; it gets one build.)
#define LONG_ROW_CLONES gnu::target_clones("avx2", "default"),
#else
#define LONG_ROW_CLONES
#endif

/// span[0..n-1] -= d[0..n-1] * g, modulo 2^64. Kept out of line: with a
/// 32-bit factor of its own the compiler uses a vector 32 x 32 -> 64-bit multiply.
[[LONG_ROW_CLONES gnu::noinline]] void subtract_row(std::uint64_t* span, const std::uint32_t* d, int n, std::uint32_t g) {
    for (int k = 0; k < n; ++k) span[k] -= std::uint64_t{d[k]} * g;
}

/// The running dividend of one division: column k stands for block k, and
/// the value is the sum of column k * 10^(-8k). Column -1 is the block above
/// position 0 and three zero columns follow the last block. All columns from
/// the current position + 3 down lie within [lo, hi]. Rows are added and
/// subtracted modulo 2^64; the bounds keep the true values far from overflow.
class RunningDividend {
public:
    RunningDividend(const std::uint32_t* r, int N, const std::uint32_t* d, int n) : N_(N), d_(d), n_(n) {
        std::vector<std::uint64_t>& store = long_state.product_columns;  // free while dividing
        const std::size_t needed = static_cast<std::size_t>(N) + 4;
        if (store.size() < needed) store.resize(needed);
        c_ = store.data() + 1;
        c_[-1] = 0;
        std::copy(r, r + N, c_);
        c_[N] = c_[N + 1] = c_[N + 2] = 0;
        divisor_head_ = (static_cast<i128>(d[0]) * base + (n > 1 ? d[1] : 0)) * base + (n > 2 ? d[2] : 0);
        divisor_inexact_ = n > 3 ? 1 : 0;
    }

    /// floor(X * 10^8), where X is the value from position i on with block
    /// i - 1 as its integer part: the block above the span times 10^8 plus the
    /// span's first block.
    std::uint64_t leading(int i) {
        std::int64_t first = 0;
        if (!leading_blocks(i, first)) {
            normalise(i);
            leading_blocks(i, first);
        }
        return static_cast<std::uint64_t>(first);
    }

    /// True when the n-block span at position i is below the divisor (the
    /// block above it being zero).
    bool span_below_divisor(int i) {
        Window w = window(i);
        if (w.high <= divisor_head_) return true;
        if (w.low >= divisor_head_ + divisor_inexact_) return false;
        normalise(i);
        w = window(i);
        if (w.low != divisor_head_) return w.low < divisor_head_;
        for (int k = 3; k < n_; ++k) {
            const std::int64_t block = at(i + k);
            if (block != d_[k]) return block < d_[k];
        }
        return false;
    }

    /// True when the rest from block i - 1 on is negative.
    bool negative(int i) {
        Window w = window(i);
        if (w.low >= 0) return false;
        if (w.high <= 0) return true;
        normalise(i);
        return window(i).low < 0;
    }

    /// span -= d * guess (guess below 2^32).
    void subtract(int i, std::uint32_t guess) {
        const std::int64_t most = static_cast<std::int64_t>(guess) * (base - 1);
        if (lo_ - most < -column_limit) normalise(i);
        lo_ -= most;
        subtract_row(c_ + i, d_, n_, guess);
    }

    /// span += d.
    void add_divisor(int i) {
        if (hi_ + (base - 1) > column_limit) normalise(i);
        hi_ += base - 1;
        std::uint64_t* span = c_ + i;
        const std::uint32_t* d = d_;
        for (int k = 0; k < n_; ++k) span[k] += d[k];
    }

    /// Position i is done (its rest is below the divisor): block i - 1 is
    /// folded into block i, which becomes the block above position i + 1.
    void advance(int i) {
        c_[i] += c_[i - 1] * static_cast<std::uint64_t>(base);  // the true value is small
        c_[i - 1] = 0;
    }

    /// Normalises everything from position i on and writes the blocks back.
    void finish(std::uint32_t* r, int i) {
        normalise(i);
        std::copy(c_, c_ + N_, r);  // normalised: every column is a block
    }

private:
    /// X * 10^24 lies in [low, high).
    struct Window {
        i128 low;
        i128 high;
    };

    /// What the columns below i + 2 add to X * 10^24: at least tail_low and
    /// less than tail_high.
    std::int64_t tail_low() const { return floor_div(lo_, base - 1); }
    std::int64_t tail_high() const { return (hi_ + base - 2) / (base - 1); }

    Window window(int i) const {
        const i128 head = ((static_cast<i128>(at(i - 1)) * base + at(i)) * base + at(i + 1)) * base + at(i + 2);
        return {head + tail_low(), head + tail_high()};
    }

    /// first = floor(X * 10^8) when the columns decide it; false when not.
    bool leading_blocks(int i, std::int64_t& first) const {
        // The carry out of column i + 2 and what it leaves for column i + 1.
        const std::int64_t low = floor_div(floor_div(at(i + 2) + tail_low(), base) + at(i + 1), base);
        const std::int64_t high = floor_div(floor_div(at(i + 2) + tail_high() - 1, base) + at(i + 1), base);
        if (low != high) return false;
        const std::uint64_t sum = c_[i - 1] * static_cast<std::uint64_t>(base) + c_[i] + static_cast<std::uint64_t>(low);
        first = static_cast<std::int64_t>(sum);  // the true value is below 10^16
        return true;
    }

    /// Column k read as the signed number it stands for.
    std::int64_t at(int k) const { return static_cast<std::int64_t>(c_[k]); }

    /// Carries from the last column touched so far up into block i - 1, which
    /// then holds floor(X).
    void normalise(int i) {
        std::int64_t carry = 0;
        for (int k = std::min(N_ - 1, i + n_ - 1); k >= i; --k) {
            const std::int64_t v = at(k) + carry;
            carry = floor_div(v, base);
            c_[k] = static_cast<std::uint64_t>(v - carry * base);
        }
        c_[i - 1] += static_cast<std::uint64_t>(carry);
        lo_ = 0;
        hi_ = base - 1;
    }

    /// The columns, kept modulo 2^64 (each stands for a signed value).
    std::uint64_t* c_ = nullptr;
    int N_;
    const std::uint32_t* d_;
    int n_;
    std::int64_t lo_ = 0;
    std::int64_t hi_ = base - 1;
    i128 divisor_head_;     ///< the divisor's first three blocks as one integer
    i128 divisor_inexact_;  ///< 1 when the divisor has blocks beyond them
};

/// True when x[0..n-1] < y[0..n-1].
bool less_than(const std::uint32_t* x, const std::uint32_t* y, int n) {
    for (int k = 0; k < n; ++k) {
        if (x[k] != y[k]) return x[k] < y[k];
    }
    return false;
}

/// The division with the rest kept in normalised blocks throughout: each
/// trial product is subtracted in one pass, its low part from its own block
/// and its high part from the block above, so only a borrow of 0..2 runs
/// along the blocks. Quicker than the columns for short divisors.
int divide_normalised(std::uint32_t* r, const std::uint32_t* d, int n, std::uint32_t* q, int Q, std::uint64_t m) {
    const std::uint64_t d0 = d[0];
    for (int i = 0; i < Q; ++i) {
        std::uint32_t* span = r + i;
        int subtractions = 0;
        std::uint64_t t = i == 0 ? 0 : r[i - 1];
        for (;;) {
            if (t == 0 && less_than(span, d, n)) break;
            std::uint64_t guess = (t * m + static_cast<std::uint64_t>(span[0]) * m / long_base) / d0;
            if (guess == 0) guess = 1;
            std::int64_t borrow = 0;
            std::int64_t high_above = 0;
            for (int k = n - 1; k >= 0; --k) {
                const std::uint64_t p = d[k] * guess;
                const std::uint64_t hi = p / long_base;
                const std::int64_t lo = static_cast<std::int64_t>(p - hi * long_base);
                std::int64_t v = static_cast<std::int64_t>(span[k]) - lo - high_above - borrow;
                borrow = (v < 0 ? 1 : 0) + (v < -base ? 1 : 0);
                v += borrow * base;
                span[k] = static_cast<std::uint32_t>(v);
                high_above = static_cast<std::int64_t>(hi);
            }
            // The block above the span (none at position 0).
            std::int64_t top = static_cast<std::int64_t>(t) - high_above - borrow;
            std::uint64_t taken = guess;
            while (top < 0) {
                // Too high: lower the guess by one.
                ++long_state.high_guesses;
                --taken;
                std::uint32_t carry = 0;
                for (int k = n - 1; k >= 0; --k) {
                    const std::uint32_t v = span[k] + d[k] + carry;
                    carry = v >= long_base ? 1u : 0u;
                    span[k] = v - carry * long_base;
                }
                top += carry;
            }
            q[i] += static_cast<std::uint32_t>(taken);
            if (i > 0) r[i - 1] = static_cast<std::uint32_t>(top);
            if (++subtractions >= 2) ++long_state.low_guesses;
            t = static_cast<std::uint64_t>(top);
        }
        const int rc = long_poll_interrupt(long_state.divide_work, static_cast<std::uint32_t>(n), divide_poll_work);
        if (rc < 0) return rc;
    }
    return 0;
}

}  // namespace

int long_divide_blocks(std::uint32_t* r, const std::uint32_t* d, int n, std::uint32_t* q, int Q) {
    // Trial quotients divide by d[0] + d[1] / 10^8 through this multiplier.
    const std::uint64_t m = n >= 2 ? long_base - d[1] / d[0] : long_base;
    if (n < column_divisor_blocks) return divide_normalised(r, d, n, q, Q, m);
    const std::uint64_t d0 = d[0];
    const int N = n + Q - 1;
    RunningDividend rest(r, N, d, n);
    for (int i = 0; i < Q; ++i) {
        int subtractions = 0;
        for (;;) {
            const std::uint64_t head = rest.leading(i);
            const std::uint64_t t = head / long_base;
            if (t == 0 && rest.span_below_divisor(i)) break;
            std::uint64_t guess = (t * m + head % long_base * m / long_base) / d0;
            if (guess == 0) guess = 1;
            rest.subtract(i, static_cast<std::uint32_t>(guess));
            std::uint64_t taken = guess;
            while (rest.negative(i)) {
                // Too high: lower the guess by one.
                ++long_state.high_guesses;
                --taken;
                rest.add_divisor(i);
            }
            q[i] += static_cast<std::uint32_t>(taken);
            if (++subtractions >= 2) ++long_state.low_guesses;
        }
        const int rc = long_poll_interrupt(long_state.divide_work, static_cast<std::uint32_t>(n), divide_poll_work);
        if (rc < 0) return rc;
        if (i + 1 < Q) rest.advance(i);
    }
    if (Q > 0) rest.finish(r, Q - 1);
    return 0;
}

}  // namespace tl
