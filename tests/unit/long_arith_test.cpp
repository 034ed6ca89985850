// long_arith_test.cpp — long arithmetic: rounding cases, integer division, errors, interruption.
#include <string>

#include "long_reference.h"
#include "longmath/long_arith.h"
#include "longmath/long_space.h"
#include "longmath/long_state.h"
#include "longmath/long_timing.h"
#include "test_support.h"

namespace tl::test {
namespace {

/// The test hook's state: how many polls it has seen and when to refuse.
struct HookState {
    int polls = 0;
    int abort_at = 0;
};
HookState hook;

int counting_check() { return ++hook.polls >= hook.abort_at ? -10000 : 0; }

class LongArithTest : public CoreTest {
protected:
    LongMode& mode = long_state.mode;

    void TearDown() override {
        set_long_interrupt_check(nullptr);
        CoreTest::TearDown();
    }
    LongNumber divide(const std::string& a, const std::string& b) {
        LongNumber x = make_long(a);
        LongNumber y = make_long(b);
        LongNumber q;
        EXPECT_EQ(long_divide(x, y, q), 0) << a << " / " << b;
        return q;
    }
    static std::string digits(std::size_t count, char first) {
        std::string s(count, '7');
        s[0] = first;
        s[count - 1] = '3';
        return s;
    }
};

TEST_F(LongArithTest, ThirdsRoundOrTruncateInTheLastDigit) {
    LongNumber q = divide("1", "3");
    EXPECT_EQ(text_of(q), "." + std::string(50, '3'));
    EXPECT_EQ(q.exp, 0);
    EXPECT_EQ(q.len, 50);
    EXPECT_EQ(text_of(divide("2", "3")), "." + std::string(49, '6') + "7");
    mode.rounding = false;
    EXPECT_EQ(text_of(divide("2", "3")), "." + std::string(50, '6'));
    EXPECT_EQ(text_of(divide("-2", "3")), "-." + std::string(50, '6'));
}

TEST_F(LongArithTest, AdditionEdgeCases) {
    LongNumber r;
    const LongNumber x = make_long("-123.456e7");
    ASSERT_EQ(long_subtract(x, x, r), 0);
    long_normalise(r, normalise_round);
    EXPECT_EQ(r.sgn, 0);
    EXPECT_EQ(r.exp, 1);
    EXPECT_EQ(r.len, 1);
    EXPECT_EQ(r.blocks[0], 0u);

    // An addend more than precision + 2 digits below is not added.
    ASSERT_EQ(long_add(make_long("1e60"), make_long("1"), r), 0);
    long_normalise(r, normalise_round);
    EXPECT_EQ(text_of(r), "1.e+60");
    mode.rounding = false;
    ASSERT_EQ(long_subtract(make_long("1e52"), make_long("6"), r), 0);
    long_normalise(r, normalise_round);
    EXPECT_EQ(value_of(r), decimal_value("." + std::string(50, '9') + "e52"));
    ASSERT_EQ(long_subtract(make_long("1e53"), make_long("6"), r), 0);
    long_normalise(r, normalise_round);
    EXPECT_EQ(text_of(r), "1.e+53");
    mode.rounding = true;

    // Zero operands and a result that is one of the operands.
    ASSERT_EQ(long_add(make_long("0"), make_long("-2.5"), r), 0);
    long_normalise(r, normalise_round);
    EXPECT_EQ(text_of(r), "-2.5");
    LongNumber y = make_long("99999999.5");
    ASSERT_EQ(long_add(y, make_long(".5"), y), 0);
    long_normalise(y, normalise_round);
    EXPECT_EQ(text_of(y), "100000000.");
    ASSERT_EQ(long_subtract(y, y, y), 0);
    long_normalise(y, normalise_round);
    EXPECT_EQ(text_of(y), "0");
}

TEST_F(LongArithTest, MultiplyKeepsOrDiscardsLowBlocks) {
    mode.debug_display = true;
    const LongNumber a = make_long(std::string(51, '9'));
    LongNumber r;
    ASSERT_EQ(long_multiply(a, a, r), 0);
    EXPECT_NE(fe.take().find("product blocks = 14, discard blocks = 5\n"), std::string::npos);
    EXPECT_EQ(value_of(r), round_sig(value_of(a) * value_of(a), 50, true));
    mode.optmul = true;
    ASSERT_EQ(long_multiply(a, a, r), 0);
    EXPECT_NE(fe.take().find("product blocks = 14, discard blocks = 0\n"), std::string::npos);
    mode.debug_display = false;

    // The product may be one of the operands.
    LongNumber x = make_long("-1.5");
    ASSERT_EQ(long_multiply(x, x, x), 0);
    EXPECT_EQ(text_of(x), "2.25");
    ASSERT_EQ(long_multiply(x, make_long("0"), x), 0);
    EXPECT_EQ(text_of(x), "0");
}

TEST_F(LongArithTest, IntegerDivisionLeavesTheRemainder) {
    mode.integer_mode = true;
    EXPECT_EQ(text_of(divide("7", "2")), "3");
    EXPECT_EQ(text_of(long_state.remainder), "1");
    EXPECT_EQ(text_of(divide("2", "7")), "0");
    EXPECT_EQ(text_of(long_state.remainder), "2");
    EXPECT_EQ(text_of(divide("-7", "2")), "-3");
    EXPECT_EQ(text_of(long_state.remainder), "-1");
    EXPECT_EQ(text_of(divide("7", "-2")), "-3");
    EXPECT_EQ(text_of(long_state.remainder), "1");
    // Fractions are dropped first; divisors with zero blocks below their digits.
    EXPECT_EQ(text_of(divide("123.9", "10")), "12");
    EXPECT_EQ(text_of(long_state.remainder), "3");
    EXPECT_EQ(text_of(divide("1" + std::string(40, '0') + "5", "1" + std::string(20, '0'))), "1" + std::string(21, '0'));
    EXPECT_EQ(text_of(long_state.remainder), "5");
}

TEST_F(LongArithTest, ModInBothModes) {
    LongNumber r;
    ASSERT_EQ(long_mod(make_long("7.5"), make_long("2"), r), 0);
    EXPECT_EQ(text_of(r), "1.5");
    ASSERT_EQ(long_mod(make_long("-7.5"), make_long("2"), r), 0);
    EXPECT_EQ(text_of(r), "-1.5");
    EXPECT_TRUE(mode.rounding);
    mode.integer_mode = true;
    ASSERT_EQ(long_mod(make_long("17"), make_long("5"), r), 0);
    EXPECT_EQ(text_of(r), "2");
    // The result may be the conversion scratch number itself.
    ASSERT_EQ(long_mod(make_long("100"), make_long("7"), long_state.scratch), 0);
    EXPECT_EQ(text_of(long_state.scratch), "2");
}

TEST_F(LongArithTest, DivisionByZeroInBothModes) {
    for (const bool integer : {false, true}) {
        mode.integer_mode = integer;
        LongNumber a = make_long("5");
        LongNumber zero = make_long(integer ? "0.4" : "0");
        LongNumber q;
        EXPECT_EQ(long_divide(a, zero, q), -166);
        EXPECT_NE(fe.take().find("ERROR - Attempt to divide by zero."), std::string::npos);
        LongNumber r;
        EXPECT_EQ(long_mod(make_long("5"), make_long("0"), r), -166);
        EXPECT_NE(fe.take().find("Attempt to divide by zero."), std::string::npos);
    }
}

TEST_F(LongArithTest, DivisionDebugDisplayAndAliasing) {
    mode.debug_display = true;
    divide("10", "7");
    const std::string out = fe.take();
    EXPECT_NE(out.find("quotient length = 8\n"), std::string::npos);
    EXPECT_NE(out.find("\nop1 : blks=   1"), std::string::npos);
    EXPECT_NE(out.find("High guesses = "), std::string::npos);
    mode.debug_display = false;

    LongNumber x = make_long("-4.5");
    ASSERT_EQ(long_divide(x, x, x), 0);
    EXPECT_EQ(text_of(x), "1.");
    LongNumber y = make_long("3");
    LongNumber z = make_long("12");
    ASSERT_EQ(long_divide(z, y, y), 0);
    EXPECT_EQ(text_of(y), "4.");
}

TEST_F(LongArithTest, LongDivisionAtHighPrecision) {
    mode.precision = 5000;
    LongNumber q = divide("1", "7");
    std::string expected = ".";
    while (expected.size() < 5001) expected += "142857";
    expected.resize(5001);  // the 5001st digit is 2: rounded down
    EXPECT_EQ(text_of(q), expected);
    q = divide("-22", "7");
    EXPECT_EQ(value_of(q), round_sig(Rational(-22) / Rational(7), 5000, true));
    EXPECT_EQ(q.len, 5000);
}

TEST_F(LongArithTest, Compare) {
    const char* ordered[] = {"-1e10", "-123.5", "-123.4", "-0.001", "0", "1e-9", "0.5", "123.4", "123.45", "1e10"};
    for (int i = 0; i < 10; ++i) {
        for (int j = 0; j < 10; ++j) {
            EXPECT_EQ(long_compare(make_long(ordered[i]), make_long(ordered[j])), i < j ? -1 : (i > j ? 1 : 0))
                << ordered[i] << " vs " << ordered[j];
        }
    }
}

TEST_F(LongArithTest, TimingLines) {
    for (int op = 0; op < long_operation_count; ++op) set_long_timer(op, true);
    LongNumber r;
    ASSERT_EQ(long_multiply(make_long("3"), make_long("4"), r), 0);
    EXPECT_EQ(fe.take().rfind("Mult Calc. Time: ", 0), 0u);
    divide("1", "4");
    EXPECT_EQ(fe.take().rfind("Div Calc. Time: ", 0), 0u);
    ASSERT_EQ(long_mod(make_long("9"), make_long("4"), r), 0);
    EXPECT_NE(fe.take().find("Mod Calc. Time: "), std::string::npos);
}

TEST_F(LongArithTest, InterruptionAbortsMultiplyAndDivide) {
    mode.integer_mode = true;
    const LongNumber a = make_long(digits(40000, '9'));
    const LongNumber b = make_long(digits(40000, '8'));
    hook = HookState{0, 2};
    set_long_interrupt_check(counting_check);
    LongNumber r = make_long("5");
    EXPECT_EQ(long_multiply(a, b, r), -10000);
    EXPECT_EQ(hook.polls, 2);
    EXPECT_EQ(text_of(r), "0");

    hook = HookState{0, 2};
    LongNumber dividend = make_long(digits(80000, '9'));
    LongNumber divisor = make_long(digits(40000, '1'));
    LongNumber q;
    EXPECT_EQ(long_divide(dividend, divisor, q), -10000);
    EXPECT_EQ(hook.polls, 2);
    EXPECT_EQ(text_of(q), "0");

    // Everything still works afterwards.
    hook = HookState{0, 1000000};
    const std::uint32_t mark = temp_long_mark();
    const std::int64_t ref = new_temp_long();
    ASSERT_GE(ref, 0);
    LongNumber& t = long_at(static_cast<std::uint32_t>(ref));
    const LongNumber c = make_long(digits(3000, '4'));
    ASSERT_EQ(long_multiply(c, c, t), 0);
    EXPECT_EQ(value_of(t), value_of(c) * value_of(c));
    LongNumber c2 = make_long(digits(3000, '4'));
    ASSERT_EQ(long_divide(t, c2, q), 0);
    EXPECT_EQ(value_of(q), value_of(c));
    release_temp_longs(mark);
}

}  // namespace
}  // namespace tl::test
