// long_convert_test.cpp — long numbers from and to text and doubles, layouts and dumps.
#include <cfloat>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "exec/string_space.h"
#include "exec/variables.h"
#include "lang/item.h"
#include "long_reference.h"
#include "longmath/long_space.h"
#include "longmath/long_state.h"
#include "longmath/long_timing.h"
#include "longmath/long_text.h"
#include "test_support.h"

namespace tl::test {
namespace {

constexpr std::uint32_t long_pow10_for_test[8] = {1, 10, 100, 1000, 10000, 100000, 1000000, 10000000};

class LongConvertTest : public CoreTest {
protected:
    LongMode& mode = long_state.mode;

    int parse(const std::string& text, LongNumber& n) { return long_from_text(text, n, false); }
    std::string format(const LongNumber& n, const char* spec) {
        char buffer[300];
        const int length = long_format(n, spec, buffer, sizeof buffer, false);
        return length < 0 ? "error " + std::to_string(-length) : std::string(buffer);
    }
    void expect_fields(const LongNumber& n, int len, int exp, int sgn, std::uint32_t block0) {
        EXPECT_EQ(n.len, len);
        EXPECT_EQ(n.exp, exp);
        EXPECT_EQ(n.sgn, sgn);
        EXPECT_EQ(n.blocks[0], block0);
        EXPECT_EQ(n.nrm, 1u);
        EXPECT_EQ(n.blks, (n.len + 7) / 8);
    }
};

TEST_F(LongConvertTest, ZeroTextsGiveCanonicalZero) {
    for (const char* text : {"0", "000.000", "-0", "  +0.0e5", "-.0"}) {
        LongNumber n = make_long("123");
        ASSERT_EQ(parse(text, n), 0) << text;
        expect_fields(n, 1, 1, 0, 0);
    }
}

TEST_F(LongConvertTest, ParseErrorsLeaveTheDestinationAndReportOnlyWhenAsked) {
    struct Case {
        const char* text;
        int error;
    } cases[] = {{"1.2.3", 148}, {".", 150}, {"e5", 150}, {"", 150}, {"-", 150},
                 {"12a", 149},   {"1e5x", 149}, {"1 ", 149}, {"1e1000001", 151}, {"1e-1000001", 151},
                 // An exponent needs a digit, as in a number constant and val().
                 {"1e", 149},    {"1e+", 149},  {"2.5E-", 149}};
    for (const Case& c : cases) {
        LongNumber n = make_long("42");
        EXPECT_EQ(parse(c.text, n), -c.error) << c.text;
        EXPECT_EQ(value_of(n), Rational(42)) << c.text;
    }
    EXPECT_TRUE(fe.output.empty());
    LongNumber n;
    EXPECT_EQ(long_from_text("1.2.3", n, true), -148);
    EXPECT_NE(fe.take().find("More than one decimal point in number."), std::string::npos);
}

TEST_F(LongConvertTest, ExponentLimitAndPlacement) {
    LongNumber n;
    ASSERT_EQ(parse("1e1000000", n), 0);
    expect_fields(n, 1, 1000001, 0, 10000000u);
    ASSERT_EQ(parse("-00123.4500e-2", n), 0);
    expect_fields(n, 5, 1, -1, 12345000u);
    ASSERT_EQ(parse(".0005", n), 0);
    expect_fields(n, 1, -3, 0, 50000000u);
}

TEST_F(LongConvertTest, LongTextsRoundOrCutAtThePrecision) {
    const std::string nines(60, '9');
    LongNumber n;
    ASSERT_EQ(parse(nines, n), 0);
    expect_fields(n, 1, 61, 0, 10000000u);
    mode.rounding = false;
    ASSERT_EQ(parse(nines, n), 0);
    expect_fields(n, 50, 60, 0, 99999999u);
    EXPECT_EQ(value_of(n), decimal_value(std::string(50, '9') + "e10"));
    // precision + 1 digits are kept whole; one more is cut, and trailing
    // zeros left by the cut are not counted.
    mode.rounding = true;
    ASSERT_EQ(parse(std::string(51, '7'), n), 0);
    EXPECT_EQ(n.len, 51);
    ASSERT_EQ(parse("1" + std::string(50, '0') + "4", n), 0);
    expect_fields(n, 1, 52, 0, 10000000u);
}

TEST_F(LongConvertTest, IntegerModeKeepsTheRoundingDigit) {
    mode.integer_mode = true;
    mode.rounding = false;
    LongNumber n;
    ASSERT_EQ(parse("123.99", n), 0);
    expect_fields(n, 3, 3, 0, 12300000u);
    mode.rounding = true;
    ASSERT_EQ(parse("123.99", n), 0);
    expect_fields(n, 4, 3, 0, 12390000u);
    ASSERT_EQ(parse("123.49", n), 0);
    expect_fields(n, 3, 3, 0, 12300000u);
    ASSERT_EQ(parse("-0.04", n), 0);
    expect_fields(n, 1, 1, 0, 0);
    ASSERT_EQ(parse("12e3", n), 0);
    expect_fields(n, 2, 5, 0, 12000000u);
    ParsedLongText p;
    ASSERT_EQ(long_parse_text("12e3", p, false), 0);
    EXPECT_EQ(p.implied_zeros, 3);
}

TEST_F(LongConvertTest, RandomTextsMatchTheExactValueRounded) {
    std::mt19937_64 rng(20240611);
    for (const int precision : {11, 50, 51, 200, 1000, 0}) {
        const bool integer = precision == 0;
        mode.integer_mode = integer;
        if (!integer) mode.precision = precision;
        for (int i = 0; i < 300; ++i) {
            mode.rounding = i % 3 != 0;
            const std::string text = integer ? random_number_text(rng, 300, 40) : random_number_text(rng, 2000, 60);
            LongNumber n;
            ASSERT_EQ(parse(text, n), 0) << text;
            const Rational exact = decimal_value(text);
            Rational expected;
            if (integer) {
                const Rational tenths = trunc_int(exact * Rational(10));
                const Rational whole = trunc_int(exact);
                const bool keep_tenth = mode.rounding && !((tenths - whole * Rational(10)).abs() < Rational(5));
                expected = keep_tenth ? tenths / Rational(10) : whole;
            } else {
                expected = round_sig(exact, precision + 1, false) == exact
                               ? exact
                               : round_sig(exact, precision, mode.rounding);
            }
            ASSERT_EQ(value_of(n), expected) << text << " at " << precision;
            ASSERT_EQ(n.nrm, 1u);
            ASSERT_EQ(n.blks, (n.len + 7) / 8);
            const std::uint32_t last = n.blocks[static_cast<std::size_t>((n.len - 1) / 8)];
            ASSERT_TRUE(value_of(n).sign() == 0 || last / long_pow10_for_test[7 - (n.len - 1) % 8] % 10 != 0)
                << "trailing zero counted in len: " << text;

            // The text of the number reads back as the same number.
            const std::string out = text_of(n);
            const Rational shown = integer ? trunc_int(value_of(n)) : value_of(n);
            ASSERT_EQ(decimal_value(out), shown) << text << " -> " << out;
            LongNumber back;
            ASSERT_EQ(parse(out, back), 0) << out;
            ASSERT_EQ(value_of(back), shown) << out;
        }
    }
}

TEST_F(LongConvertTest, StringLayouts) {
    struct Case {
        const char* in;
        const char* out;
    } floating[] = {{"100", "100."},     {"0.5", ".5"},      {"1e60", "1.e+60"},   {"-123.45", "-123.45"},
                    {"0.00123", ".00123"}, {"1.5e-60", "1.5e-60"}, {"0", "0"},     {"-12.5e3", "-12500."}};
    for (const Case& c : floating) EXPECT_EQ(text_of(make_long(c.in)), c.out) << c.in;
    // Fraction zeros fit up to the precision, then the exponent form is used.
    EXPECT_EQ(text_of(make_long("1e-49")), "." + std::string(48, '0') + "1");
    EXPECT_EQ(text_of(make_long("1e-50")), "." + std::string(49, '0') + "1");
    EXPECT_EQ(text_of(make_long("1e-51")), "1.e-51");
    EXPECT_EQ(text_of(make_long("12345e40")), "12345" + std::string(40, '0') + ".");
    EXPECT_EQ(text_of(make_long("12345e45")), "12345" + std::string(45, '0') + ".");
    EXPECT_EQ(text_of(make_long("12345e46")), "1.2345e+50");
    EXPECT_EQ(text_of(make_long("-2.5e-50")), "-2.5e-50");

    mode.integer_mode = true;
    EXPECT_EQ(text_of(make_long("100")), "100");
    EXPECT_EQ(text_of(make_long("-123.9")), "-123");
    EXPECT_EQ(text_of(make_long("1e60")), "1" + std::string(60, '0'));
}

TEST_F(LongConvertTest, StringBufferTooSmall) {
    const LongNumber n = make_long("123.456");  // len 6: needs 18 bytes in floating-point mode
    char buffer[32];
    EXPECT_EQ(long_to_string(n, buffer, 17, false), -147);
    EXPECT_EQ(long_to_string(n, buffer, 18, false), 7);
    EXPECT_EQ(long_to_string(make_long("1e-40"), buffer, 32, false), -147);
    EXPECT_TRUE(fe.output.empty());
    EXPECT_EQ(long_to_string(n, buffer, 10, true), -147);
    EXPECT_NE(fe.take().find("Output buffer too small"), std::string::npos);
    mode.integer_mode = true;
    EXPECT_EQ(long_to_string(make_long("12345"), buffer, 6, false), -147);
    EXPECT_EQ(long_to_string(make_long("12345"), buffer, 7, false), 5);
}

TEST_F(LongConvertTest, FormattedOutput) {
    EXPECT_EQ(format(make_long("1234.5678"), "12.2"), "     1234.57");
    EXPECT_EQ(format(make_long("-1234.5678"), "12.2"), "    -1234.57");
    EXPECT_EQ(format(make_long("1234567.891"), "14.2C"), "  1,234,567.89");
    EXPECT_EQ(format(make_long("123456"), "12c"), "     123,456");
    EXPECT_EQ(format(make_long("9.996"), "12.2"), "       10.00");
    EXPECT_EQ(format(make_long("0.05"), "12.3"), "        .050");
    EXPECT_EQ(format(make_long("0.004"), "12.2"), "        0.00");
    EXPECT_EQ(format(make_long("42"), "12."), "         42.");
    // Too wide for the integer field: exponent form with w - d - 2 + d - 9 digits.
    EXPECT_EQ(format(make_long("123456789012345"), "12.0"), "      1.e+14");
    EXPECT_EQ(format(make_long("-98765432109876543"), "20.2"), "     -9.87654321e+16");
    for (const char* bad : {"11", "256", "12.10", "12.2x", "", ".2", "12.2CC"}) {
        EXPECT_EQ(format(make_long("1"), bad), "error 73") << bad;
    }
    EXPECT_EQ(format(make_long("1"), "12.9"), " 1.000000000");
}

TEST_F(LongConvertTest, DoubleToLongUsesTwentyFourCorrectlyRoundedDigits) {
    LongNumber n;
    ASSERT_EQ(long_from_double(0.1, n, false), 0);
    EXPECT_EQ(value_of(n), decimal_value("0.100000000000000005551115"));
    ASSERT_EQ(long_from_double(-0.0, n, false), 0);
    expect_fields(n, 1, 1, 0, 0);
    EXPECT_EQ(long_from_double(INFINITY, n, false), -99);
    EXPECT_EQ(long_from_double(NAN, n, false), -99);
    EXPECT_EQ(long_double_to_scratch(2.5, false), static_cast<int>(kind_long));
    EXPECT_EQ(value_of(long_state.scratch), decimal_value("2.5"));

    std::mt19937_64 rng(7);
    for (const int precision : {11, 50}) {
        mode.precision = precision;
        for (int i = 0; i < 400; ++i) {
            std::uint64_t bits = rng();
            double x;
            std::memcpy(&x, &bits, sizeof x);
            if (!std::isfinite(x)) continue;
            ASSERT_EQ(long_from_double(x, n, false), 0);
            Rational exact;
            mpq_set_d(exact.get(), x);
            const Rational digits24 = round_sig(exact, 24, true, true);
            ASSERT_EQ(value_of(n), round_sig(digits24, precision, true)) << x;
        }
    }
}

TEST_F(LongConvertTest, LongToDoubleIsNearestToTheFirst32Digits) {
    double x = 1;
    LongNumber n;
    ASSERT_EQ(long_to_double(make_long("0"), x, false), 0);
    EXPECT_EQ(x, 0.0);
    std::mt19937_64 rng(99);
    mode.precision = 40;
    for (int i = 0; i < 2000; ++i) {
        const std::string text = random_number_text(rng, 40, 330);
        n = make_long(text);
        const int rc = long_to_double(n, x, false);
        if (rc < 0) {
            ASSERT_EQ(rc, -164);
            ASSERT_GE(n.exp, 309);
            continue;
        }
        char digits[80];
        std::snprintf(digits, sizeof digits, "%s0.%08u%08u%08u%08ue%d", n.sgn == -1 ? "-" : "", n.blocks[0],
                      n.blks > 1 ? n.blocks[1] : 0, n.blks > 2 ? n.blocks[2] : 0, n.blks > 3 ? n.blocks[3] : 0, n.exp);
        ASSERT_EQ(x, std::strtod(digits, nullptr)) << text;
    }
    // Subnormals and the underflow boundary.
    for (const char* text : {"4.9406564584124654e-324", "2.4703282292062328e-324", "2.4703282292062327e-324",
                             "2.2250738585072011e-308", "1e-400"}) {
        ASSERT_EQ(long_to_double(make_long(text), x, false), 0);
        EXPECT_EQ(x, std::strtod(text, nullptr)) << text;
    }
}

TEST_F(LongConvertTest, LargestDoubleIsTheConversionLimit) {
    double x = 0;
    ASSERT_EQ(long_to_double(make_long("1.7976931348623157e308"), x, false), 0);
    EXPECT_EQ(x, DBL_MAX);
    ASSERT_EQ(long_to_double(make_long("-1.79769313486231570000000999e308"), x, false), 0);
    EXPECT_EQ(x, -DBL_MAX);
    EXPECT_EQ(long_to_double(make_long("1.79769313486231570000001e308"), x, false), -164);
    EXPECT_EQ(long_to_double(make_long("1e309"), x, false), -164);
    EXPECT_TRUE(fe.output.empty());
    EXPECT_EQ(long_to_double(make_long("1e309"), x, true), -164);
    EXPECT_NE(fe.take().find("too large to convert to DOUBLE"), std::string::npos);

    mode.oldconvert = true;
    ASSERT_EQ(long_to_double(make_long("-1.7976931348623157e308"), x, false), 0);
    EXPECT_EQ(x, -DBL_MAX);
    ASSERT_EQ(long_to_double(make_long("0.125"), x, false), 0);
    EXPECT_EQ(x, 0.125);
}

TEST_F(LongConvertTest, TimingLinesOnlyWhileTimingIsOn) {
    double x;
    ASSERT_EQ(long_to_double(make_long("2"), x, false), 0);
    EXPECT_TRUE(fe.output.empty());
    for (int op = 0; op < long_operation_count; ++op) set_long_timer(op, true);
    ASSERT_EQ(long_to_double(make_long("2"), x, false), 0);
    EXPECT_EQ(fe.take().rfind("long-to-double Calc. Time:  ", 0), 0u);
    mode.oldconvert = true;
    ASSERT_EQ(long_to_double(make_long("2"), x, false), 0);
    EXPECT_NE(fe.take().find(" ms.\n"), std::string::npos);
}

TEST_F(LongConvertTest, ConvertInFromItems) {
    LongNumber n;
    Item item;
    item.kind = kind_double;
    item.number = -2.5;
    ASSERT_EQ(long_convert_in(item, n, false), 0);
    EXPECT_EQ(value_of(n), decimal_value("-2.5"));

    const std::int64_t offset = new_temp_string("31.25e1");
    ASSERT_GT(offset, 0);
    item.kind = kind_string;
    item.word = static_cast<std::uint32_t>(offset);
    ASSERT_EQ(long_convert_in(item, n, false), 0);
    EXPECT_EQ(value_of(n), decimal_value("312.5"));
    item.kind = kind_numeric_text;
    ASSERT_EQ(long_convert_in(item, n, false), 0);
    EXPECT_EQ(value_of(n), decimal_value("312.5"));

    const std::int64_t ref = new_temp_long();
    ASSERT_GT(ref, 0);
    ASSERT_EQ(long_from_text("-7e-3", long_at(static_cast<std::uint32_t>(ref)), false), 0);
    item.kind = kind_long;
    item.word = static_cast<std::uint32_t>(ref);
    ASSERT_EQ(long_convert_in(item, n, false), 0);
    EXPECT_EQ(value_of(n), decimal_value("-0.007"));

    const std::int64_t bad = new_temp_string("1x");
    item.kind = kind_string;
    item.word = static_cast<std::uint32_t>(bad);
    EXPECT_EQ(long_convert_in(item, n, true), -149);
    EXPECT_NE(fe.take().find("Invalid character in number string."), std::string::npos);
}

TEST_F(LongConvertTest, DebugDumpOnlyWithTheDisplayOn) {
    const LongNumber n = make_long("-1234567890.5");
    long_debug_dump("op1", n, 0);
    EXPECT_TRUE(fe.output.empty());
    mode.debug_display = true;
    long_debug_dump("op1", n, 0);
    EXPECT_EQ(fe.take(), "\nop1 : blks=   2 sign= -1 len=  11 exp=  10, norm=1 12345678 90500000 \n");

    mode.precision = 400;
    const LongNumber big = make_long(std::string(400, '3'));
    long_debug_dump("x", big, 0);
    std::string out = fe.take();
    EXPECT_NE(out.find("33333333 33333333 - - - - \n"), std::string::npos);
    long_debug_dump("x", big, 1);
    out = fe.take();
    EXPECT_NE(out.find("\n- - - - - - - -\n"), std::string::npos);

    char shortform[80];
    long_short_form(n, shortform, sizeof shortform);
    EXPECT_STREQ(shortform, "blks=   2 sgn= - len=  11 exp=  10, nrm=1");
}

TEST_F(LongConvertTest, PeekValues) {
    auto peek = [](const char* name) {
        const int index = find_variable(name);
        return index < 0 ? -1.0 : variable_at(index).value.number;
    };
    long_peek_values(make_long("1"));
    EXPECT_LT(find_variable("peekbcdlength"), 0);
    mode.peek_values = true;

    long_peek_values(make_long("-12345"));
    EXPECT_EQ(peek("peekbcdlength"), 5);
    EXPECT_EQ(peek("peekbcdsign"), -1);
    EXPECT_EQ(peek("peekbcdexponent"), 5);
    EXPECT_EQ(peek("peekbcdfirst8"), 12345000);
    EXPECT_EQ(peek("peekbcdlast8"), 0);

    long_peek_values(make_long("1234567890123"));
    EXPECT_EQ(peek("peekbcdlast8"), 90123000);
    EXPECT_EQ(peek("peekbcdnextlast8"), 0);
    EXPECT_EQ(peek("peeknextlast8"), 0);

    // 30 digits: the last 8 digits are gathered across blocks.
    long_peek_values(make_long("123456789012345678901234567891"));
    EXPECT_EQ(peek("peekbcdlength"), 30);
    EXPECT_EQ(peek("peekbcdlast8"), 34567891);
    EXPECT_EQ(peek("peekbcdnextlast8"), 56789012);
    long_peek_values(make_long("1234567890123456789012345678901234567891"));
    EXPECT_EQ(peek("peekbcdlast8"), 34567891);
    EXPECT_EQ(peek("peekbcdnextlast8"), 56789012);
}

}  // namespace
}  // namespace tl::test
