// long_divide_core_test.cpp — the block long-division core against a plain
// version that keeps every block normalised, and against GMP.
#include <gmp.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <vector>

#include "longmath/long_divide_core.h"
#include "longmath/long_number.h"
#include "longmath/long_state.h"
#include "test_support.h"

namespace tl::test {
namespace {

using Blocks = std::vector<std::uint32_t>;

constexpr std::uint32_t edge_blocks[] = {0u, 1u, 99999999u, 99999998u, 50000000u, 10000000u, 9999999u};

struct Outcome {
    Blocks quotient;
    Blocks rest;
    int high_guesses = 0;
    int low_guesses = 0;
};

/// The division written out directly: the rest is kept in normalised blocks,
/// each trial product is subtracted with borrows and added back while the
/// rest is negative.
Outcome plain_division(Blocks r, const Blocks& d, int Q) {
    const int n = static_cast<int>(d.size());
    Outcome out;
    out.quotient.assign(static_cast<std::size_t>(Q), 0);
    const std::uint64_t m = n >= 2 ? long_base - d[1] / d[0] : long_base;
    const std::int64_t base = long_base;
    for (int i = 0; i < Q; ++i) {
        std::uint32_t* span = r.data() + i;
        int subtractions = 0;
        std::int64_t t = i == 0 ? 0 : r[static_cast<std::size_t>(i - 1)];
        for (;;) {
            if (t == 0 && std::lexicographical_compare(span, span + n, d.begin(), d.end())) break;
            std::uint64_t guess =
                (static_cast<std::uint64_t>(t) * m + std::uint64_t{span[0]} * m / long_base) / d[0];
            if (guess == 0) guess = 1;
            std::int64_t borrow = 0;
            for (int k = n - 1; k >= 0; --k) {
                const std::int64_t p = static_cast<std::int64_t>(d[static_cast<std::size_t>(k)] * guess);
                std::int64_t v = span[k] - p + borrow;
                borrow = v / base;
                v -= borrow * base;
                if (v < 0) {
                    v += base;
                    --borrow;
                }
                span[k] = static_cast<std::uint32_t>(v);
            }
            std::int64_t top = t + borrow;
            std::uint64_t taken = guess;
            while (top < 0) {
                ++out.high_guesses;
                --taken;
                std::uint32_t carry = 0;
                for (int k = n - 1; k >= 0; --k) {
                    const std::uint32_t v = span[k] + d[static_cast<std::size_t>(k)] + carry;
                    carry = v >= long_base ? 1u : 0u;
                    span[k] = v - carry * long_base;
                }
                top += carry;
            }
            out.quotient[static_cast<std::size_t>(i)] += static_cast<std::uint32_t>(taken);
            if (i > 0) r[static_cast<std::size_t>(i - 1)] = static_cast<std::uint32_t>(top);
            if (++subtractions >= 2) ++out.low_guesses;
            t = top;
        }
    }
    out.rest = r;
    return out;
}

Outcome core_division(Blocks r, const Blocks& d, int Q) {
    Outcome out;
    out.quotient.assign(static_cast<std::size_t>(Q), 0);
    long_state.high_guesses = 0;
    long_state.low_guesses = 0;
    EXPECT_EQ(long_divide_blocks(r.data(), d.data(), static_cast<int>(d.size()), out.quotient.data(), Q), 0);
    out.high_guesses = long_state.high_guesses;
    out.low_guesses = long_state.low_guesses;
    out.rest = r;
    return out;
}

/// Sets z to the blocks read as digits in base 10^8 (blocks may exceed it).
void set_blocks(mpz_t z, const Blocks& b) {
    mpz_set_ui(z, 0);
    for (const std::uint32_t v : b) {
        mpz_mul_ui(z, z, long_base);
        mpz_add_ui(z, z, v);
    }
}

/// dividend = quotient * divisor + rest with 0 <= rest < divisor, the rest's
/// blocks normalised and the blocks above it zero.
void expect_exact(const Blocks& dividend, const Blocks& d, const Outcome& got) {
    const std::size_t Q = got.quotient.size();
    for (std::size_t k = 0; k < got.rest.size(); ++k) {
        ASSERT_LT(got.rest[k], long_base) << "block " << k;
        if (k + 1 < Q) {
            ASSERT_EQ(got.rest[k], 0u) << "block " << k;
        }
    }
    mpz_t a, dv, q, rest, check;
    mpz_inits(a, dv, q, rest, check, nullptr);
    set_blocks(a, dividend);
    set_blocks(dv, d);
    set_blocks(q, got.quotient);
    set_blocks(rest, got.rest);
    mpz_mul(check, q, dv);
    mpz_add(check, check, rest);
    EXPECT_EQ(mpz_cmp(check, a), 0);
    EXPECT_LT(mpz_cmp(rest, dv), 0);
    EXPECT_GE(mpz_sgn(rest), 0);
    mpz_clears(a, dv, q, rest, check, nullptr);
}

class LongDivideCoreTest : public CoreTest {
protected:
    std::mt19937_64 rng{20240611};

    std::uint32_t random_block() { return static_cast<std::uint32_t>(rng() % long_base); }
    /// Blocks near the edges of their range, where carries and borrows run far.
    std::uint32_t edge_block() { return edge_blocks[rng() % std::size(edge_blocks)]; }
    Blocks divisor(int n, bool edges) {
        Blocks d(static_cast<std::size_t>(n));
        for (auto& b : d) b = edges ? edge_block() : random_block();
        if (d[0] < 10000000u) d[0] = edges && rng() % 2 ? 10000000u : 10000000u + random_block() % 90000000u;
        return d;
    }

    void compare(const Blocks& r, const Blocks& d, int Q) {
        const Outcome want = plain_division(r, d, Q);
        const Outcome got = core_division(r, d, Q);
        ASSERT_EQ(got.quotient, want.quotient) << "n = " << d.size() << ", Q = " << Q;
        ASSERT_EQ(got.rest, want.rest) << "n = " << d.size() << ", Q = " << Q;
        EXPECT_EQ(got.high_guesses, want.high_guesses);
        EXPECT_EQ(got.low_guesses, want.low_guesses);
        expect_exact(r, d, got);
    }
};

TEST_F(LongDivideCoreTest, RandomBlocksGiveThePlainDivisionsResults) {
    for (int round = 0; round < 400; ++round) {
        const int n = 1 + static_cast<int>(rng() % 40);
        const int Q = 1 + static_cast<int>(rng() % 24);
        const Blocks d = divisor(n, false);
        Blocks r(static_cast<std::size_t>(n + Q - 1));
        for (auto& b : r) b = random_block();
        if (round % 2 == 0) r[0] = static_cast<std::uint32_t>(rng() % (d[0] + 1));
        compare(r, d, Q);
    }
}

TEST_F(LongDivideCoreTest, BlocksAtTheEdgesOfTheirRange) {
    for (int round = 0; round < 600; ++round) {
        const int n = 1 + static_cast<int>(rng() % 40);
        const int Q = 1 + static_cast<int>(rng() % 16);
        const Blocks d = divisor(n, true);
        Blocks r(static_cast<std::size_t>(n + Q - 1));
        for (auto& b : r) b = edge_block();
        compare(r, d, Q);
    }
}

TEST_F(LongDivideCoreTest, ExactMultiplesAndTheirNeighbours) {
    // dividend = divisor * k (+ 0, 1 or -1 in the last block): the rest is
    // zero or lies right next to a block boundary at every position.
    for (int round = 0; round < 300; ++round) {
        const int n = 1 + static_cast<int>(rng() % 40);
        const int Q = 2 + static_cast<int>(rng() % 10);
        const Blocks d = divisor(n, round % 2 == 0);
        Blocks k(static_cast<std::size_t>(Q - 1));
        for (auto& b : k) b = round % 3 == 0 ? edge_block() : random_block();
        mpz_t a, dv, kv;
        mpz_inits(a, dv, kv, nullptr);
        set_blocks(dv, d);
        set_blocks(kv, k);
        mpz_mul(a, dv, kv);
        const int nudge = round % 3;
        if (nudge == 1) mpz_add_ui(a, a, 1);
        if (nudge == 2 && mpz_sgn(a) > 0) mpz_sub_ui(a, a, 1);
        Blocks r(static_cast<std::size_t>(n + Q - 1), 0);
        for (std::size_t k2 = r.size(); k2-- > 0;) r[k2] = static_cast<std::uint32_t>(mpz_fdiv_q_ui(a, a, long_base));
        ASSERT_EQ(mpz_sgn(a), 0);
        mpz_clears(a, dv, kv, nullptr);
        compare(r, d, Q);
    }
}

TEST_F(LongDivideCoreTest, LongDivisionsThatRenormaliseOnTheWay) {
    // Hundreds of rows: the columns are normalised before they could overflow.
    for (const int n : {1, 2, 3, 4, 16, 17, 40, 300}) {
        const int Q = 1200;
        const Blocks d = divisor(n, false);
        Blocks r(static_cast<std::size_t>(n + Q - 1));
        for (auto& b : r) b = random_block();
        compare(r, d, Q);
        for (auto& b : r) b = 99999999u;
        compare(r, d, Q);
    }
    // A divisor just above 10^7 ... makes the largest guesses.
    Blocks d(200, 99999999u);
    d[0] = 10000000u;
    Blocks r(d.size() + 999, 99999999u);
    compare(r, d, 1000);
}

TEST_F(LongDivideCoreTest, OneThirdAndTwoThirdsRepeatForever) {
    const Blocks three{30000000u};
    const Outcome third = core_division(Blocks{10000000u, 0, 0, 0, 0}, three, 5);
    EXPECT_EQ(third.quotient, (Blocks{0u, 33333333u, 33333333u, 33333333u, 33333333u}));
    EXPECT_EQ(third.rest.back(), 10000000u);
    const Outcome two = core_division(Blocks{20000000u, 0, 0}, three, 3);
    EXPECT_EQ(two.quotient, (Blocks{0u, 66666666u, 66666666u}));
}

}  // namespace
}  // namespace tl::test
