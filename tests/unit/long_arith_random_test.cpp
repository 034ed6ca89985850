// long_arith_random_test.cpp — long arithmetic on random operands against exact GMP results.
#include <algorithm>
#include <string>

#include "long_reference.h"
#include "longmath/long_arith.h"
#include "longmath/long_state.h"
#include "test_support.h"

namespace tl::test {
namespace {

constexpr int iterations = 250;

struct ModeCase {
    int precision;  ///< 0: integer mode
};

class LongArithRandomTest : public CoreTest, public ::testing::WithParamInterface<ModeCase> {
protected:
    LongMode& mode = long_state.mode;
    std::mt19937_64 rng{static_cast<std::uint64_t>(GetParam().precision) * 7919u + 17u};

    void SetUp() override {
        CoreTest::SetUp();
        if (GetParam().precision == 0) {
            mode.integer_mode = true;
        } else {
            mode.precision = GetParam().precision;
        }
    }
    bool integer() const { return mode.integer_mode; }
    int precision() const { return mode.precision; }

    LongNumber operand() {
        return make_long(integer() ? random_integer_text(rng, 2000) : random_number_text(rng, 2000, precision() + 12));
    }

    /// The sum as the block-aligned addition forms it: both operands on a
    /// digit grid that ends with the last block in use, the sum cut to the
    /// digit capacity, then rounded; far smaller addends are not added.
    Rational expected_sum(const LongNumber& a, const LongNumber& b, bool subtract) {
        const Rational av = value_of(a);
        const Rational bv = subtract ? Rational(0) - value_of(b) : value_of(b);
        if (integer()) return av + bv;
        const bool a_large = a.exp >= b.exp;
        const LongNumber& L = a_large ? a : b;
        const LongNumber& S = a_large ? b : a;
        const Rational& lv = a_large ? av : bv;
        const Rational& sv = a_large ? bv : av;
        const int p = precision();
        const long gap = static_cast<long>(L.exp) - S.exp;
        if (gap > p + 2) return round_sig(lv, p, mode.rounding);
        const bool same = (lv.sign() < 0) == (sv.sign() < 0);
        const long s = gap % 8;
        const long result_exp = L.exp + 8 - s;
        const long capacity = std::min<long>(std::max<long>(L.len + 8, result_exp - S.exp + S.len), p + 8 + (same ? 1 : 2));
        const long blocks = (capacity + 7) / 8;
        const Rational sum = trunc_to(lv, result_exp - 8 * blocks) + trunc_to(sv, result_exp - 8 * blocks);
        return round_sig(trunc_to(sum, result_exp - capacity), p, mode.rounding);
    }
};

TEST_P(LongArithRandomTest, AddAndSubtract) {
    for (int i = 0; i < iterations; ++i) {
        mode.rounding = i % 4 != 0;
        const LongNumber a = operand();
        const LongNumber b = i % 10 == 0 ? a : operand();
        for (const bool subtract : {false, true}) {
            LongNumber r;
            ASSERT_EQ(subtract ? long_subtract(a, b, r) : long_add(a, b, r), 0);
            long_normalise(r, normalise_round);
            ASSERT_EQ(value_of(r), expected_sum(a, b, subtract))
                << text_of(a) << (subtract ? " - " : " + ") << text_of(b);
            ASSERT_TRUE(value_of(r).sign() != 0 || (r.sgn == 0 && r.exp == 1 && r.len == 1));
        }
    }
}

TEST_P(LongArithRandomTest, Multiply) {
    for (int i = 0; i < iterations; ++i) {
        mode.rounding = i % 4 != 0;
        mode.optmul = i % 2 == 0;
        const LongNumber a = operand();
        const LongNumber b = operand();
        LongNumber r;
        ASSERT_EQ(long_multiply(a, b, r), 0);
        const Rational exact = value_of(a) * value_of(b);
        const Rational got = value_of(r);
        if (integer()) {
            ASSERT_EQ(got, exact);
            continue;
        }
        const int p = precision();
        const bool all_blocks = mode.optmul || a.blks + b.blks < (p + 7) / 8 + 2;
        if (all_blocks) {
            ASSERT_EQ(got, round_sig(exact, p, mode.rounding)) << text_of(a) << " * " << text_of(b);
        } else {
            // Low partial products are left out: within one unit of the last digit.
            const long e = std::max(decimal_magnitude(exact), decimal_magnitude(got));
            ASSERT_TRUE((got - exact).abs() <= pow10q(e - p)) << text_of(a) << " * " << text_of(b);
        }
        ASSERT_LE(r.len, p);
    }
}

TEST_P(LongArithRandomTest, Divide) {
    int high_guesses = 0;
    for (int i = 0; i < iterations; ++i) {
        mode.rounding = i % 4 != 0;
        LongNumber a = operand();
        LongNumber b = operand();
        if (i % 7 == 0) {  // one-block divisors
            b = make_long(integer() ? random_integer_text(rng, 8) : random_number_text(rng, 8, 20));
        }
        const Rational av = value_of(a);
        const Rational bv = value_of(b);
        LongNumber q;
        ASSERT_EQ(long_divide(a, b, q), 0) << av.str() << " / " << bv.str();
        if (integer()) {
            const Rational quotient = trunc_int(av / bv);
            ASSERT_EQ(value_of(q), quotient) << av.str() << " / " << bv.str();
            ASSERT_EQ(value_of(long_state.remainder), av - quotient * bv);
        } else {
            ASSERT_EQ(value_of(q), round_sig(av / bv, precision(), mode.rounding)) << av.str() << " / " << bv.str();
        }
        high_guesses += long_state.high_guesses;
    }
    // The correction of guesses that were too high has been exercised.
    EXPECT_GT(high_guesses, 0);
}

// The remainder is a - int(a / b) * b exactly, cut to the precision: also
// when a / b has more integer digits than the precision holds.
TEST_P(LongArithRandomTest, Mod) {
    const int digits = integer() ? 2000 : std::max(3, precision() / 3);
    // Exponents up to three times the precision: quotients far above it.
    const int max_exp = integer() ? 1 : 3 * precision();
    for (int i = 0; i < iterations; ++i) {
        mode.rounding = i % 4 != 0;
        const LongNumber a = make_long(integer() ? random_integer_text(rng, digits)
                                                 : random_number_text(rng, digits, i % 2 == 0 ? max_exp : 2));
        const LongNumber b = make_long(integer() ? random_integer_text(rng, digits)
                                                 : random_number_text(rng, digits, i % 3 == 0 ? max_exp : 2));
        const Rational av = value_of(a);
        const Rational bv = value_of(b);
        const Rational q = trunc_int(av / bv);
        const Rational exact = av - q * bv;
        const Rational expected = integer() ? exact : round_sig(exact, precision(), false);
        LongNumber r;
        ASSERT_EQ(long_mod(a, b, r), 0);
        ASSERT_EQ(value_of(r), expected) << av.str() << " mod " << bv.str();
        EXPECT_EQ(mode.precision, integer() ? mode.precision : precision());
    }
}

INSTANTIATE_TEST_SUITE_P(Precisions, LongArithRandomTest,
                         ::testing::Values(ModeCase{11}, ModeCase{50}, ModeCase{51}, ModeCase{200}, ModeCase{1000},
                                           ModeCase{0}),
                         [](const ::testing::TestParamInfo<ModeCase>& info) {
                             return info.param.precision == 0 ? std::string("IntegerMode")
                                                              : "Precision" + std::to_string(info.param.precision);
                         });

}  // namespace
}  // namespace tl::test
