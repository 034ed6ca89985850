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
constexpr i128 base_squared = static_cast<i128>(base) * base;
/// The columns are normalised before a row could take one beyond this size.
constexpr std::int64_t column_limit = std::int64_t{1} << 62;

std::int64_t floor_div(std::int64_t a, std::int64_t b) {
    std::int64_t q = a / b;
    if (a - q * b < 0) --q;
    return q;
}

i128 floor_div(i128 a, i128 b) {
    i128 q = a / b;
    if (a - q * b < 0) --q;
    return q;
}

/// The running dividend of one division: column k stands for block k, and
/// the value is the sum of column k * 10^(-8k). Column -1 is the block above
/// position 0 and three zero columns follow the last block. All columns from
/// the current position + 3 down lie within [lo, hi].
class RunningDividend {
public:
    RunningDividend(const std::uint32_t* r, int N, const std::uint32_t* d, int n) : N_(N), d_(d), n_(n) {
        std::vector<std::uint64_t>& store = long_state.product_columns;  // free while dividing
        const std::size_t needed = static_cast<std::size_t>(N) + 4;
        if (store.size() < needed) store.resize(needed);
        // Signed and unsigned variants of one type may alias.
        c_ = reinterpret_cast<std::int64_t*>(store.data()) + 1;
        c_[-1] = 0;
        for (int k = 0; k < N; ++k) c_[k] = r[k];
        c_[N] = c_[N + 1] = c_[N + 2] = 0;
        divisor_head_ = (static_cast<i128>(d[0]) * base + (n > 1 ? d[1] : 0)) * base + (n > 2 ? d[2] : 0);
        divisor_inexact_ = n > 3 ? 1 : 0;
    }

    /// floor(X * 10^8), where X is the value from position i on with block
    /// i - 1 as its integer part: the block above the span times 10^8 plus the
    /// span's first block.
    std::uint64_t leading(int i) {
        Window w = window(i);
        i128 first = floor_div(w.low, base_squared);
        if (first != floor_div(w.high - 1, base_squared)) {
            normalise(i);
            w = window(i);
            first = floor_div(w.low, base_squared);
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
            const std::int64_t block = c_[i + k];
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
        std::int64_t* span = c_ + i;
        const std::uint32_t* d = d_;
        for (int k = 0; k < n_; ++k) span[k] -= static_cast<std::int64_t>(std::uint64_t{d[k]} * guess);
    }

    /// span += d.
    void add_divisor(int i) {
        if (hi_ + (base - 1) > column_limit) normalise(i);
        hi_ += base - 1;
        std::int64_t* span = c_ + i;
        const std::uint32_t* d = d_;
        for (int k = 0; k < n_; ++k) span[k] += d[k];
    }

    /// Position i is done (its rest is below the divisor): block i - 1 is
    /// folded into block i, which becomes the block above position i + 1.
    void advance(int i) {
        const std::uint64_t folded =
            static_cast<std::uint64_t>(c_[i]) + static_cast<std::uint64_t>(c_[i - 1]) * static_cast<std::uint64_t>(base);
        c_[i] = static_cast<std::int64_t>(folded);  // the true value is small
        c_[i - 1] = 0;
    }

    /// Normalises everything from position i on and writes the blocks back.
    void finish(std::uint32_t* r, int i) {
        normalise(i);
        for (int k = 0; k < N_; ++k) r[k] = static_cast<std::uint32_t>(c_[k]);
    }

private:
    /// X * 10^24 lies in [low, high).
    struct Window {
        i128 low;
        i128 high;
    };

    Window window(int i) const {
        const i128 head = ((static_cast<i128>(c_[i - 1]) * base + c_[i]) * base + c_[i + 1]) * base + c_[i + 2];
        // The columns below add at least lo / (10^8 - 1) and less than hi / (10^8 - 1).
        return {head + floor_div(lo_, base - 1), head + (hi_ + base - 2) / (base - 1)};
    }

    /// Carries from the last column touched so far up into block i - 1, which
    /// then holds floor(X).
    void normalise(int i) {
        std::int64_t carry = 0;
        for (int k = std::min(N_ - 1, i + n_ - 1); k >= i; --k) {
            const std::int64_t v = c_[k] + carry;
            carry = floor_div(v, base);
            c_[k] = v - carry * base;
        }
        c_[i - 1] += carry;
        lo_ = 0;
        hi_ = base - 1;
    }

    std::int64_t* c_ = nullptr;
    int N_;
    const std::uint32_t* d_;
    int n_;
    std::int64_t lo_ = 0;
    std::int64_t hi_ = base - 1;
    i128 divisor_head_;     ///< the divisor's first three blocks as one integer
    i128 divisor_inexact_;  ///< 1 when the divisor has blocks beyond them
};

}  // namespace

int long_divide_blocks(std::uint32_t* r, const std::uint32_t* d, int n, std::uint32_t* q, int Q) {
    // Trial quotients divide by d[0] + d[1] / 10^8 through this multiplier.
    const std::uint64_t m = n >= 2 ? long_base - d[1] / d[0] : long_base;
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
