// long_functions_test.cpp — the long elementary functions against MPFR and
// GMP, their special cases, errors, tuning variables and interruption.
#include <gmp.h>
#include <mpfr.h>

#include <chrono>
#include <functional>
#include <random>
#include <string>

#include "exec/arrays.h"
#include "exec/front_end.h"
#include "exec/run_loop.h"
#include "exec/named_variables.h"
#include "lang/error_table.h"
#include "long_reference.h"
#include "longmath/long_arith.h"
#include "longmath/long_cores.h"
#include "longmath/long_functions.h"
#include "longmath/long_state.h"
#include "longmath/long_timing.h"
#include "lang/keyword_tables.h"
#include "test_support.h"

namespace tl::test {
namespace {

/// An MPFR number with a precision that covers `digits` decimal digits well.
struct Mp {
    mpfr_t v;
    explicit Mp(int digits) { mpfr_init2(v, static_cast<mpfr_prec_t>(digits * 3.33) + 128); }
    ~Mp() { mpfr_clear(v); }
    Mp(const Mp&) = delete;
    Mp& operator=(const Mp&) = delete;
    Rational exact() const {
        Rational r;
        mpfr_get_q(r.get(), v);
        return r;
    }
};

using MpFunction = std::function<void(mpfr_t out, const mpfr_t x)>;
using LongFunction = std::function<int(const LongNumber& x, LongNumber& out)>;

class LongFunctionsTest : public CoreTest {
protected:
    LongMode& mode = long_state.mode;

    void TearDown() override {
        set_long_interrupt_check(nullptr);
        CoreTest::TearDown();
    }

    /// Checks that `ours` is within one unit of its last digit of `expected`.
    static ::testing::AssertionResult within_last_digit(const LongNumber& ours, const Rational& expected, int digits) {
        const Rational error = (value_of(ours) - expected).abs();
        if (expected.sign() == 0) {
            if (error.sign() == 0) return ::testing::AssertionSuccess();
            return ::testing::AssertionFailure() << "expected 0, got " << text_of(ours);
        }
        const long e = decimal_magnitude(expected);
        if (error <= pow10q(e - digits) && ours.len <= digits) return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << "at " << digits << " digits: got " << text_of(ours).substr(0, 120)
                                             << " (len " << ours.len << ")";
    }

    /// f(x) at `digits` digits against MPFR's g(x), the argument given as text.
    void check(const char* name, const LongFunction& f, const MpFunction& g, const std::string& x, int digits) {
        mode.precision = digits;
        const LongNumber arg = make_long(x);
        LongNumber ours;
        ASSERT_EQ(f(arg, ours), 0) << name << "(" << x << ")" << fe.output;
        EXPECT_EQ(mode.precision, digits);
        Mp in(digits + 20);
        Mp out(digits + 20);
        // The argument as the long number holds it (rounded to the precision).
        mpfr_set_str(in.v, text_of(arg).c_str(), 10, MPFR_RNDN);
        g(out.v, in.v);
        EXPECT_TRUE(within_last_digit(ours, out.exact(), digits)) << name << "(" << x << ")";
        EXPECT_EQ(long_state.functions.function_top, 0u);
    }

    void check_all(const char* name, const LongFunction& f, const MpFunction& g,
                   std::initializer_list<const char*> args, std::initializer_list<int> precisions) {
        for (int digits : precisions) {
            for (const char* x : args) check(name, f, g, x, digits);
        }
    }

    static LongFunction radians(int (*f)(const LongNumber&, bool, LongNumber&)) {
        return [f](const LongNumber& x, LongNumber& out) { return f(x, false, out); };
    }
};

// ---- accuracy against MPFR ----------------------------------------------------

TEST_F(LongFunctionsTest, PiAndEAgreeWithMpfr) {
    for (int digits : {11, 50, 100, 1000, 10000, 10001}) {
        mode.precision = digits;
        clear_long_constants();
        LongNumber pi, e;
        ASSERT_EQ(long_pi(pi), 0);
        ASSERT_EQ(long_e(e), 0);
        Mp ref_pi(digits), ref_e(digits), one(digits);
        mpfr_const_pi(ref_pi.v, MPFR_RNDN);
        mpfr_set_ui(one.v, 1, MPFR_RNDN);
        mpfr_exp(ref_e.v, one.v, MPFR_RNDN);
        EXPECT_TRUE(within_last_digit(pi, ref_pi.exact(), digits));
        EXPECT_TRUE(within_last_digit(e, ref_e.exact(), digits));
    }
    // A cached value serves lower precisions, rounded to them.
    mode.precision = 30;
    LongNumber pi;
    ASSERT_EQ(long_pi(pi), 0);
    EXPECT_EQ(text_of(pi), "3.14159265358979323846264338328");
}

TEST_F(LongFunctionsTest, SquareRootAgreesWithMpfr) {
    check_all("sqrt", long_sqrt, [](mpfr_t o, const mpfr_t x) { mpfr_sqrt(o, x, MPFR_RNDN); },
              {"2", "0.5e-7", "123456.789", "99999999.99999", "1e-301", "7e300"}, {11, 50, 100, 1000});
    check("sqrt", long_sqrt, [](mpfr_t o, const mpfr_t x) { mpfr_sqrt(o, x, MPFR_RNDN); }, "3", 10000);
    // Perfect squares come out exact.
    mode.precision = 50;
    LongNumber r;
    ASSERT_EQ(long_sqrt(make_long("152415787532388367501905199875019052100"), r), 0);
    EXPECT_EQ(text_of(r), "12345678901234567890.");
}

// Square roots are correctly rounded: the last digit is the one the exact root
// rounds to (halves up), or is cut to, never one off near the boundary. The
// same for root(x, 2) and x ^ 0.5.
TEST_F(LongFunctionsTest, SquareRootsAreCorrectlyRounded) {
    std::mt19937_64 rng(2);
    // The result c is checked exactly (GMP rationals): rounded to nearest,
    // (c - u/2)^2 <= x < (c + u/2)^2; cut, c^2 <= x < (c + u)^2, with u a
    // unit in c's last digit.
    auto bracketed = [&](const LongNumber& c, const Rational& x, int digits) {
        const Rational v = value_of(c);
        const Rational u = pow10q(decimal_magnitude(v) - digits);
        const Rational half = u / Rational(2);
        const Rational low = mode.rounding ? v - half : v;
        const Rational high = mode.rounding ? v + half : v + u;
        return low * low <= x && x < high * high && c.len <= digits;
    };
    auto check_root = [&](const std::string& text, int digits) {
        mode.precision = digits;
        const LongNumber x = make_long(text);
        const Rational exact = value_of(x);
        LongNumber r, two, half;
        ASSERT_EQ(long_sqrt(x, r), 0);
        EXPECT_TRUE(bracketed(r, exact, digits)) << "sqrt(" << text << ") at " << digits << ": " << text_of(r);
        ASSERT_EQ(long_root(x, make_long("2"), two), 0);
        EXPECT_EQ(value_of(two), value_of(r)) << "root(" << text << ", 2)";
        ASSERT_EQ(long_power(x, make_long("0.5"), half), 0);
        EXPECT_EQ(value_of(half), value_of(r)) << text << " ^ 0.5";
        EXPECT_EQ(mode.precision, digits);
    };
    for (bool rounding : {true, false}) {
        mode.rounding = rounding;
        // Roots just beside a rounding boundary: 1 + 10^-k has the root
        // 1 + 10^-k/2 - ..., whose digits after the last kept one are 4999...
        for (int k : {10, 11, 20, 49, 99, 200}) {
            check_root("1" + std::string(static_cast<std::size_t>(k - 1), '0') + "1e-" + std::to_string(k - 1), k + 1);
            check_root("." + std::string(static_cast<std::size_t>(k), '9'), k);
            check_root("4" + std::string(static_cast<std::size_t>(k - 1), '0') + "1", k);
        }
        for (int digits : {11, 12, 17, 50, 101}) {
            for (int i = 0; i < 60; ++i) {
                std::string text = random_number_text(rng, digits, 40);
                if (text[0] == '-') text.erase(0, 1);
                check_root(text, digits);
            }
        }
    }
    mode.rounding = true;
    // The two cases that once rounded the wrong way.
    mode.precision = 11;
    LongNumber r;
    ASSERT_EQ(long_sqrt(make_long("1.0000000001"), r), 0);
    EXPECT_EQ(text_of(r), "1.");
    mode.precision = 10000;
    LongNumber one = make_long("1"), tiny = make_long("1e-10000"), below, root, gap;
    ASSERT_EQ(long_subtract(one, tiny, below), 0);
    long_normalise(below, normalise_round);
    ASSERT_EQ(long_sqrt(below, root), 0);
    ASSERT_EQ(long_subtract(one, root, gap), 0);
    long_normalise(gap, normalise_round);
    EXPECT_TRUE(value_of(gap) == pow10q(-10000)) << text_of(gap).substr(0, 40);
}

TEST_F(LongFunctionsTest, ExponentialsAgreeWithMpfr) {
    check_all("exp", long_exp, [](mpfr_t o, const mpfr_t x) { mpfr_exp(o, x, MPFR_RNDN); },
              {"1", "-3.2", "2.302585", "1000.5", "-0.000123", "-745.25", "1e-30", "23025.8"}, {11, 50, 100, 1000});
    check("exp", long_exp, [](mpfr_t o, const mpfr_t x) { mpfr_exp(o, x, MPFR_RNDN); }, "1", 10000);
    check_all("exp10", long_exp10, [](mpfr_t o, const mpfr_t x) { mpfr_exp10(o, x, MPFR_RNDN); },
              {"0.5", "-7.25", "123.456", "3"}, {11, 100, 1000});
}

TEST_F(LongFunctionsTest, LogarithmsAgreeWithMpfr) {
    check_all("log", long_log, [](mpfr_t o, const mpfr_t x) { mpfr_log(o, x, MPFR_RNDN); },
              {"2", "0.5e-20", "1.0000001", "3e100", "0.3", "10", "0.99999999999"}, {11, 50, 100, 1000});
    check("log", long_log, [](mpfr_t o, const mpfr_t x) { mpfr_log(o, x, MPFR_RNDN); }, "2", 10000);
    check_all("log10", long_log10, [](mpfr_t o, const mpfr_t x) { mpfr_log10(o, x, MPFR_RNDN); },
              {"2", "12345.678", "0.00071"}, {11, 100, 1000});
    mode.precision = 50;
    LongNumber r;
    ASSERT_EQ(long_log10(make_long("1e-30"), r), 0);
    EXPECT_EQ(text_of(r), "-30.");
    ASSERT_EQ(long_log(make_long("1"), r), 0);
    EXPECT_EQ(text_of(r), "0");
}

// The logarithms of numbers near the ends of the exponent range are ten-digit
// numbers; powers of such numbers go through them.
TEST_F(LongFunctionsTest, LogarithmsAndPowersOfTheLargestAndSmallestNumbers) {
    for (const char* text : {"434294482", "999999999", "-1000000000", "123456789"}) {
        for (int digits : {11, 50}) {
            mode.precision = digits;
            LongNumber x, ours;
            // 1.5 * 10^n, exactly: 10^n by squaring, then the 1.5.
            ASSERT_EQ(long_power(make_long("10"), make_long(text), x), 0) << text;
            LongNumber scaled;
            ASSERT_EQ(long_multiply(x, make_long("1.5"), scaled), 0);
            // What is printed is checked (read back), not only the value.
            ASSERT_EQ(long_log(x, ours), 0) << text << fe.output;
            Mp ln(digits + 20), n(digits + 20);
            mpfr_set_str(n.v, text, 10, MPFR_RNDN);
            mpfr_set_ui(ln.v, 10, MPFR_RNDN);
            mpfr_log(ln.v, ln.v, MPFR_RNDN);
            mpfr_mul(ln.v, ln.v, n.v, MPFR_RNDN);  // n ln 10
            EXPECT_TRUE(within_last_digit(make_long(text_of(ours)), ln.exact(), digits)) << "log(1e" << text << ")";
            ASSERT_EQ(long_log(scaled, ours), 0) << text << fe.output;
            mpfr_set_str(n.v, "1.5", 10, MPFR_RNDN);
            mpfr_log(n.v, n.v, MPFR_RNDN);
            mpfr_add(ln.v, ln.v, n.v, MPFR_RNDN);  // + ln 1.5
            EXPECT_TRUE(within_last_digit(make_long(text_of(ours)), ln.exact(), digits)) << "log(1.5e" << text << ")";
            if (text[0] == '-') continue;
            // (1.5 * 10^n)^0.4: 1.5^0.4 * 10^(0.4 n), the mantissa against MPFR's.
            LongNumber power;
            ASSERT_EQ(long_power(scaled, make_long("0.4"), power), 0) << text << fe.output;
            const long n_value = std::stol(text);
            const long whole = (4 * n_value) / 10;
            Mp m(digits + 20);
            mpfr_set_str(m.v, "1.5", 10, MPFR_RNDN);
            mpfr_set_str(n.v, "0.4", 10, MPFR_RNDN);
            mpfr_pow(m.v, m.v, n.v, MPFR_RNDN);
            mpfr_set_ui(n.v, 10, MPFR_RNDN);
            mpfr_set_str(ln.v, ((4 * n_value) % 10 == 0 ? "0" : "0." + std::to_string((4 * n_value) % 10)).c_str(), 10,
                         MPFR_RNDN);
            mpfr_pow(n.v, n.v, ln.v, MPFR_RNDN);
            mpfr_mul(m.v, m.v, n.v, MPFR_RNDN);  // the power divided by 10^whole
            LongNumber mantissa = make_long(text_of(power).substr(0, text_of(power).find('e')));
            mantissa.exp += power.exp - 1 - static_cast<std::int32_t>(whole);
            EXPECT_TRUE(within_last_digit(mantissa, m.exact(), digits)) << "(1.5e" << text << ")^0.4";
        }
    }
}

TEST_F(LongFunctionsTest, SineAndCosineAgreeWithMpfr) {
    const std::initializer_list<const char*> args = {"1", "-0.3", "100", "1e-5", "0.7853981", "2.5", "1234567.89",
                                                      "3.14159265358979"};
    check_all("sin", radians(long_sin), [](mpfr_t o, const mpfr_t x) { mpfr_sin(o, x, MPFR_RNDN); }, args,
              {11, 50, 100, 1000});
    check_all("cos", radians(long_cos), [](mpfr_t o, const mpfr_t x) { mpfr_cos(o, x, MPFR_RNDN); }, args,
              {11, 50, 100, 1000});
    check("sin", radians(long_sin), [](mpfr_t o, const mpfr_t x) { mpfr_sin(o, x, MPFR_RNDN); }, "1", 10000);
    check("cos", radians(long_cos), [](mpfr_t o, const mpfr_t x) { mpfr_cos(o, x, MPFR_RNDN); }, "0.1234", 10000);
}

TEST_F(LongFunctionsTest, TangentAndArctangentAgreeWithMpfr) {
    check_all("tan", radians(long_tan), [](mpfr_t o, const mpfr_t x) { mpfr_tan(o, x, MPFR_RNDN); },
              {"1", "-2.5", "1.5707", "0.001"}, {11, 50, 100, 1000});
    check_all("cot", radians(long_cot), [](mpfr_t o, const mpfr_t x) { mpfr_cot(o, x, MPFR_RNDN); }, {"1", "-0.2"},
              {11, 100});
    check_all("atn", radians(long_atn), [](mpfr_t o, const mpfr_t x) { mpfr_atan(o, x, MPFR_RNDN); },
              {"0.5", "3", "-0.05", "0.99", "1", "0.1", "0.84", "123456.7", "1e-12"}, {11, 50, 100, 1000});
    check("atn", radians(long_atn), [](mpfr_t o, const mpfr_t x) { mpfr_atan(o, x, MPFR_RNDN); }, "0.7", 10000);
    // The argument adjustment may be skipped; the result is the same.
    set_named_double("atnskipadjust", 1);
    check("atn", radians(long_atn), [](mpfr_t o, const mpfr_t x) { mpfr_atan(o, x, MPFR_RNDN); }, "0.7", 1000);
}

// ---- special cases --------------------------------------------------------------

TEST_F(LongFunctionsTest, SineAndCosineSpecialCases) {
    mode.precision = 50;
    LongNumber r;
    ASSERT_EQ(long_sin(make_long("0"), false, r), 0);
    EXPECT_EQ(text_of(r), "0");
    ASSERT_EQ(long_cos(make_long("0"), false, r), 0);
    EXPECT_EQ(text_of(r), "1.");
    // Below 10^-(precision/2) the sine is the argument itself.
    ASSERT_EQ(long_sin(make_long("1.234567e-26"), false, r), 0);
    EXPECT_EQ(value_of(r), decimal_value("1.234567e-26"));
    ASSERT_EQ(long_cos(make_long("1.234567e-26"), false, r), 0);
    EXPECT_EQ(text_of(r), "1.");
    // Degrees: exact at the multiples of the quarter turn, rounded elsewhere.
    ASSERT_EQ(long_sin(make_long("30"), true, r), 0);
    EXPECT_EQ(text_of(r), ".5");
    ASSERT_EQ(long_sin(make_long("-450"), true, r), 0);
    EXPECT_EQ(text_of(r), "-1.");
    ASSERT_EQ(long_cos(make_long("90"), true, r), 0);
    EXPECT_EQ(text_of(r), "0");
    ASSERT_EQ(long_cos(make_long("540"), true, r), 0);
    EXPECT_EQ(text_of(r), "-1.");
    ASSERT_EQ(long_tan(make_long("45"), true, r), 0);
    EXPECT_EQ(text_of(r), "1.");
    ASSERT_EQ(long_tan(make_long("-135"), true, r), 0);
    EXPECT_EQ(text_of(r), "1.");
    ASSERT_EQ(long_atn(make_long("1"), true, r), 0);
    EXPECT_EQ(text_of(r), "45.");
    ASSERT_EQ(long_acot(make_long("-1"), true, r), 0);
    EXPECT_EQ(text_of(r), "135.");
    fe.take();
    EXPECT_EQ(long_tan(make_long("90"), true, r), -err_invalid_argument);
    EXPECT_EQ(long_cot(make_long("0"), false, r), -err_invalid_argument);
    EXPECT_NE(fe.take().find("Invalid argument."), std::string::npos);
    // sin^2 + cos^2 = 1 in degrees away from the exact points.
    LongNumber s, c, s2, c2, sum;
    ASSERT_EQ(long_sin(make_long("123.456"), true, s), 0);
    ASSERT_EQ(long_cos(make_long("123.456"), true, c), 0);
    ASSERT_EQ(long_multiply(s, s, s2), 0);
    ASSERT_EQ(long_multiply(c, c, c2), 0);
    ASSERT_EQ(long_add(s2, c2, sum), 0);
    long_normalise(sum, normalise_round);
    EXPECT_TRUE(within_last_digit(sum, Rational(1), 49));
}

TEST_F(LongFunctionsTest, PowersOfTenAndTheExponentLimits) {
    mode.precision = 20;
    LongNumber r;
    ASSERT_EQ(long_exp10(make_long("7"), r), 0);
    EXPECT_EQ(text_of(r), "10000000.");
    ASSERT_EQ(long_exp10(make_long("-5"), r), 0);
    EXPECT_EQ(value_of(r), pow10q(-5));
    ASSERT_EQ(long_exp10(make_long("10000000"), r), 0);
    EXPECT_EQ(r.exp, 10000001);
    EXPECT_EQ(r.len, 1);
    ASSERT_EQ(long_exp10(make_long("0"), r), 0);
    EXPECT_EQ(text_of(r), "1.");
    fe.take();
    EXPECT_EQ(long_exp10(make_long("10000001"), r), -err_long_exp10_too_large);
    EXPECT_EQ(long_exp10(make_long("1000000.5"), r), -err_long_exp10_too_large);
    EXPECT_EQ(long_exp(make_long("2302586"), r), -err_long_exp_too_large);
    EXPECT_EQ(long_exp(make_long("-2302586"), r), -err_long_exp_too_large);
    EXPECT_NE(fe.take().find("LONGMATH - e^x: |x| too large."), std::string::npos);
    check("exp", long_exp, [](mpfr_t o, const mpfr_t x) { mpfr_exp(o, x, MPFR_RNDN); }, "2302585", 20);
    check("exp", long_exp, [](mpfr_t o, const mpfr_t x) { mpfr_exp(o, x, MPFR_RNDN); }, "-2302585", 20);
    check("exp10", long_exp10, [](mpfr_t o, const mpfr_t x) { mpfr_exp10(o, x, MPFR_RNDN); }, "-999999.5", 20);
    // The core refuses arguments above 3.5.
    EXPECT_EQ(long_exp_core(make_long("3.5000001"), r), -err_long_exp_over_3_5);
    ASSERT_EQ(long_exp_core(make_long("-3.5"), r), 0);
    EXPECT_EQ(mode.precision, 20);
}

TEST_F(LongFunctionsTest, FactorialIsExact) {
    mode.integer_mode = true;
    LongNumber r;
    for (unsigned long n : {1ul, 2ul, 12ul, 13ul, 100ul, 1234ul, 5000ul}) {
        ASSERT_EQ(long_factorial(make_long(std::to_string(n)), r), 0) << n;
        mpz_t f;
        mpz_init(f);
        mpz_fac_ui(f, n);
        Rational expected;
        mpq_set_z(expected.get(), f);
        mpz_clear(f);
        EXPECT_EQ(value_of(r), expected) << n;
    }
    ASSERT_EQ(long_factorial(make_long("5"), r), 0);
    EXPECT_EQ(text_of(r), "120");
    fe.take();
    EXPECT_EQ(long_factorial(make_long("0"), r), -err_factorial_number_out_range);
    EXPECT_EQ(long_factorial(make_long("-3"), r), -err_factorial_number_out_range);
    EXPECT_EQ(long_factorial(make_long("205022"), r), -err_factorial_number_out_range);
    EXPECT_NE(fe.take().find("FACTORIAL - number out of range."), std::string::npos);
    // Floating-point mode cuts n! to the precision (no rounding).
    mode.integer_mode = false;
    mode.precision = 11;
    ASSERT_EQ(long_factorial(make_long("20"), r), 0);
    EXPECT_EQ(text_of(r), "2.4329020081e+18");  // 2432902008176640000
}

// n-th roots and powers are correctly rounded too: the exact value (bracketed
// by MPFR's results rounded down and up at far more bits) lies in the
// interval the result stands for: [v - u/2, v + u/2) rounded to nearest,
// [v, v + u) cut (u: a unit in the last of `digits` digits, for |v|).
class CorrectRounding : public LongFunctionsTest {
protected:
    /// f(x, y) rounded down or up; monotonic in x and in y.
    using MpOperation = std::function<void(mpfr_t out, const mpfr_t x, const mpfr_t y, mpfr_rnd_t rnd)>;

    /// The decimal inputs are bracketed in binary too, so the four corners
    /// bracket the exact value. A bracket that touches a boundary (an exact
    /// value such as 1e-15 or 8) tells nothing there; such values are also
    /// checked by their text.
    ::testing::AssertionResult rounds_correctly(const LongNumber& ours, const MpOperation& f, const LongNumber& x,
                                                const LongNumber& y, int digits) {
        const int bits_digits = digits + 60;
        Mp x_lo(bits_digits), x_hi(bits_digits), y_lo(bits_digits), y_hi(bits_digits), out(bits_digits);
        mpfr_set_str(x_lo.v, text_of(x).c_str(), 10, MPFR_RNDD);
        mpfr_set_str(x_hi.v, text_of(x).c_str(), 10, MPFR_RNDU);
        mpfr_set_str(y_lo.v, text_of(y).c_str(), 10, MPFR_RNDD);
        mpfr_set_str(y_hi.v, text_of(y).c_str(), 10, MPFR_RNDU);
        Rational lo, hi;
        bool first = true;
        for (const Mp* xs : {&x_lo, &x_hi}) {
            for (const Mp* ys : {&y_lo, &y_hi}) {
                for (mpfr_rnd_t rnd : {MPFR_RNDD, MPFR_RNDU}) {
                    f(out.v, xs->v, ys->v, rnd);
                    const Rational r = out.exact();
                    if (first || r < lo) lo = r;
                    if (first || hi < r) hi = r;
                    first = false;
                }
            }
        }
        Rational v = value_of(ours);
        if (v.sign() < 0) {
            const Rational t = Rational(0) - hi;
            hi = Rational(0) - lo;
            lo = t;
            v = Rational(0) - v;
        }
        if (v.sign() == 0) return ::testing::AssertionFailure() << "got 0";
        const Rational u = pow10q(decimal_magnitude(v) - digits);
        const Rational half = u / Rational(2);
        const Rational from = mode.rounding ? v - half : v;
        const Rational to = mode.rounding ? v + half : v + u;
        if (from <= hi && lo < to && ours.len <= digits) return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << "got " << text_of(ours) << " (len " << ours.len << ")";
    }
};

TEST_F(CorrectRounding, RootsOfEveryDegree) {
    std::mt19937_64 rng(3);
    // The radicand keeps all its digits, however many the result gets.
    auto whole = [&](const std::string& text) {
        mode.precision = static_cast<int>(text.size()) + 12;
        return make_long(text);
    };
    auto root_text = [&](const std::string& text, long n, int digits) {
        const LongNumber x = whole(text);
        mode.precision = digits;
        LongNumber r;
        EXPECT_EQ(long_root(x, make_long(std::to_string(n)), r), 0);
        return text_of(r);
    };
    auto check = [&](const std::string& text, long n, int digits) {
        const LongNumber x = whole(text);
        mode.precision = digits;
        LongNumber r;
        ASSERT_EQ(long_root(x, make_long(std::to_string(n)), r), 0) << text << fe.output;
        EXPECT_EQ(mode.precision, digits);
        const auto g = [&](mpfr_t out, const mpfr_t v, const mpfr_t, mpfr_rnd_t rnd) {
            // 1/r with r rounded the other way keeps the exact value bracketed.
            const mpfr_rnd_t other = rnd == MPFR_RNDD ? MPFR_RNDU : MPFR_RNDD;
            mpfr_rootn_ui(out, v, static_cast<unsigned long>(n < 0 ? -n : n), n < 0 ? other : rnd);
            if (n < 0) mpfr_ui_div(out, 1, out, rnd);
        };
        EXPECT_TRUE(rounds_correctly(r, g, x, x, digits)) << "root(" << text << ", " << n << ") at " << digits;
    };
    for (bool rounding : {true, false}) {
        mode.rounding = rounding;
        for (int digits : {11, 12, 30, 50, 101}) {
            for (int i = 0; i < 25; ++i) {
                std::string text = random_number_text(rng, digits, 60);
                if (text[0] == '-') text.erase(0, 1);
                for (long n : {3L, 4L, 5L, 7L, 10L, -3L}) check(text, n, digits);
                check("-" + text, 3, digits);
            }
        }
        // Exact roots, exact ties and values just beside them, where the
        // guard digits cannot decide and exact powers must.
        for (int k : {10, 11, 20, 49}) {
            // (1 + 5 * 10^-k)^3: its cube root 1.0...05 is a tie at k digits.
            const std::string tie = "1" + std::string(static_cast<std::size_t>(k - 1), '0') + "5";
            mode.precision = 4 * k + 10;
            LongNumber t = make_long(tie + "e-" + std::to_string(k)), cube, square;
            ASSERT_EQ(long_multiply(t, t, square), 0);
            ASSERT_EQ(long_multiply(square, t, cube), 0);
            const std::string exact = text_of(cube);
            check(exact, 3, k);
            EXPECT_EQ(root_text(exact, 3, k), rounding ? "1." + std::string(static_cast<std::size_t>(k - 2), '0') + "1" : "1.");
            check(exact + "000000000000000000000000000000000000000000000001", 3, k);
            LongNumber below, tiny = make_long("1e-" + std::to_string(3 * k + 40));
            mode.precision = 4 * k + 50;
            ASSERT_EQ(long_subtract(make_long(exact), tiny, below), 0);
            long_normalise(below, normalise_round);
            check(text_of(below), 3, k);
            EXPECT_EQ(root_text(text_of(below), 3, k), "1.");
        }
        check("1.953125", 3, 11);  // 1.25 exactly
        check("8", 3, 11);
        check("1e-300", 3, 11);
        check("0.0009765625", 10, 11);  // 0.5 exactly
        check("1.953125", -3, 11);  // 0.8 exactly
        EXPECT_EQ(root_text("1.953125", 3, 11), "1.25");
        EXPECT_EQ(root_text("8", 3, 11), "2.");
        EXPECT_EQ(root_text("-8", 3, 11), "-2.");
        EXPECT_EQ(root_text("1e-45", 3, 50), ".000000000000001");
        EXPECT_EQ(root_text("0.0009765625", 10, 11), ".5");
        EXPECT_EQ(root_text("1.953125", -3, 11), ".8");
        EXPECT_EQ(root_text("1e-300", 3, 11), "1.e-100");
    }
    mode.rounding = true;
    mode.precision = 11;
    LongNumber r;
    ASSERT_EQ(long_root(make_long("1.953125"), make_long("3"), r), 0);
    EXPECT_EQ(text_of(r), "1.25");
}

TEST_F(CorrectRounding, Powers) {
    std::mt19937_64 rng(4);
    auto check = [&](const std::string& xt, const std::string& yt, int digits) {
        mode.precision = digits;
        const LongNumber x = make_long(xt), y = make_long(yt);
        LongNumber r;
        ASSERT_EQ(long_power(x, y, r), 0) << xt << " ^ " << yt << fe.output;
        const auto g = [](mpfr_t out, const mpfr_t a, const mpfr_t b, mpfr_rnd_t rnd) { mpfr_pow(out, a, b, rnd); };
        EXPECT_TRUE(rounds_correctly(r, g, x, y, digits)) << xt << " ^ " << yt << " at " << digits;
    };
    for (bool rounding : {true, false}) {
        mode.rounding = rounding;
        for (int digits : {11, 30, 50, 101}) {
            for (int i = 0; i < 25; ++i) {
                std::string x = random_number_text(rng, digits, 5);
                if (x[0] == '-') x.erase(0, 1);
                const std::string y = random_number_text(rng, 3, 0);
                check(x, y, digits);
                check(x, std::to_string(static_cast<int>(rng() % 41) - 20), digits);
            }
        }
        check("4", "1.5", 11);  // 8 exactly
        check("2", "-40", 27);  // 9.094947017729282379150390625e-13: a tie at 27 digits
        check("1e-5", "0.2", 11);  // 0.1 exactly
        mode.precision = 11;
        LongNumber r;
        ASSERT_EQ(long_power(make_long("4"), make_long("1.5"), r), 0);
        EXPECT_EQ(text_of(r), "8.");
        ASSERT_EQ(long_power(make_long("1e-5"), make_long("0.2"), r), 0);
        EXPECT_EQ(text_of(r), ".1");
        mode.precision = 27;
        ASSERT_EQ(long_power(make_long("2"), make_long("-40"), r), 0);
        EXPECT_EQ(text_of(r), rounding ? "9.09494701772928237915039063e-13" : "9.09494701772928237915039062e-13");
    }
}

// Powers and roots whose y ln x lies beyond what e^x takes (about 10^1000000)
// are formed through 10^c as well, whole or fractional y, of either sign.
TEST_F(CorrectRounding, PowersBeyondTheReachOfTheExponential) {
    std::mt19937_64 rng(5);
    const auto pow = [](mpfr_t out, const mpfr_t a, const mpfr_t b, mpfr_rnd_t rnd) { mpfr_pow(out, a, b, rnd); };
    for (bool rounding : {true, false}) {
        mode.rounding = rounding;
        for (int digits : {11, 40}) {
            {
                mode.precision = digits;
                std::string xt = random_number_text(rng, digits, 0);
                if (xt[0] == '-') xt.erase(0, 1);
                const LongNumber x = make_long("1" + xt);  // 1 to 10: |y| log10 x up to 1.5e6
                const std::string whole = std::to_string(1000000 + rng() % 500000);
                for (const std::string& yt : {whole, whole + ".37", "-" + whole + ".5", "-" + whole}) {
                    const LongNumber y = make_long(yt);
                    LongNumber r;
                    ASSERT_EQ(long_power(x, y, r), 0) << text_of(x) << " ^ " << yt << fe.output;
                    EXPECT_TRUE(rounds_correctly(r, pow, x, y, digits)) << text_of(x) << " ^ " << yt;
                }
            }
        }
    }
    // root(x, 1/k) is x^k.
    mode.rounding = true;
    mode.precision = 30;
    LongNumber r, p;
    ASSERT_EQ(long_root(make_long("3"), make_long(".0000005"), r), 0) << fe.output;
    ASSERT_EQ(long_power(make_long("3"), make_long("2000000"), p), 0);
    EXPECT_EQ(text_of(r), text_of(p));
    EXPECT_EQ(p.exp, 954243);  // 3^2000000 = 10^954242.54...
}

// "^" forms the power with 16 more digits and rounds back; where those digits
// read as a tie that the exact value is not, it rounds once, at the length.
TEST_F(CorrectRounding, ThePowerOperatorDoesNotRoundTwice) {
    mode.rounding = true;
    // x just below the square root of the tie 1.00000000005 (at 11 digits).
    Mp m(200), root(200);
    mpfr_set_str(m.v, "1.00000000005", 10, MPFR_RNDN);
    mpfr_sqrt(root.v, m.v, MPFR_RNDD);
    char text[80];
    mpfr_snprintf(text, sizeof text, "%.58RDf", root.v);
    mode.precision = 60;
    const LongNumber x = make_long(text);
    mode.precision = 11;
    LongNumber r;
    ASSERT_EQ(long_power_operator_value(x, make_long("2"), r), 0);
    EXPECT_EQ(text_of(r), "1.");
    ASSERT_EQ(long_power_operator_value(make_long("2"), make_long("10"), r), 0);
    EXPECT_EQ(text_of(r), "1024.");
    EXPECT_EQ(mode.precision, 11);
}

TEST_F(LongFunctionsTest, PowerRootAndHalf) {
    mode.precision = 30;
    LongNumber r;
    ASSERT_EQ(long_power(make_long("2"), make_long("100"), r), 0);
    EXPECT_EQ(text_of(r), "1.26765060022822940149670320538e+30");
    ASSERT_EQ(long_power(make_long("-2"), make_long("-3"), r), 0);
    EXPECT_EQ(text_of(r), "-.125");
    ASSERT_EQ(long_power(make_long("2"), make_long("0.5"), r), 0);
    EXPECT_EQ(text_of(r), "1.41421356237309504880168872421");
    ASSERT_EQ(long_power(make_long("0"), make_long("0"), r), 0);
    EXPECT_EQ(text_of(r), "1.");
    ASSERT_EQ(long_power(make_long("-1"), make_long("1e40"), r), 0);
    EXPECT_EQ(text_of(r), "1.");
    ASSERT_EQ(long_root(make_long("-27"), make_long("3"), r), 0);
    EXPECT_EQ(text_of(r), "-3.");
    ASSERT_EQ(long_root(make_long("2"), make_long("2"), r), 0);
    EXPECT_EQ(text_of(r), "1.41421356237309504880168872421");
    fe.take();
    EXPECT_EQ(long_power(make_long("-2"), make_long("0.5"), r), -err_power_root_error_result);
    EXPECT_EQ(long_power(make_long("0"), make_long("-1"), r), -err_power_root_error_result);
    EXPECT_EQ(long_root(make_long("-16"), make_long("4"), r), -err_power_root_error_result);
    EXPECT_EQ(long_root(make_long("16"), make_long("0"), r), -err_power_root_error_result);
    EXPECT_NE(fe.take().find("Power or root - error result."), std::string::npos);
    // Results out of the exponent range: a root of a degree too small (0 as
    // a double, or just small), a power too large.
    EXPECT_EQ(long_root(make_long("2"), make_long("1e-400"), r), -err_exponent_out_range);
    EXPECT_EQ(long_root(make_long("2"), make_long("1e-10"), r), -err_exponent_out_range);
    EXPECT_EQ(long_power(make_long("10"), make_long("1e9"), r), -err_exponent_out_range);
    EXPECT_EQ(long_power(make_long("2"), make_long("1e300"), r), -err_exponent_out_range);
    EXPECT_NE(fe.take().find("Exponent out of range."), std::string::npos);
    ASSERT_EQ(long_half(make_long("-12345678901234567.000000001"), r), 0);
    EXPECT_EQ(text_of(r), "-6172839450617283.5000000005");
    mode.integer_mode = true;
    ASSERT_EQ(long_half(make_long("7"), r), 0);
    EXPECT_EQ(text_of(r), "3");
}

// ---- errors, tuning, timing and interruption ------------------------------------

TEST_F(LongFunctionsTest, ErrorsLeaveThePrecisionAndRecordsAsTheyWere) {
    mode.precision = 40;
    LongNumber r;
    EXPECT_EQ(long_sqrt(make_long("-2"), r), -err_cannot_take_square_root_negative);
    EXPECT_EQ(long_log(make_long("0"), r), -err_cannot_take_logarithm_zero);
    EXPECT_EQ(long_log10(make_long("-1"), r), -err_cannot_take_logarithm_negative_number);
    EXPECT_EQ(long_exp(make_long("1e9"), r), -err_long_exp_too_large);
    EXPECT_EQ(long_power(make_long("10"), make_long("1e300"), r), -err_exponent_out_range);
    EXPECT_EQ(long_power(make_long("10"), make_long("1e9"), r), -err_exponent_out_range);
    EXPECT_EQ(mode.precision, 40);
    EXPECT_EQ(long_state.functions.function_top, 0u);
    mode.integer_mode = true;
    EXPECT_EQ(long_sin(make_long("1"), false, r), -err_long_operation_only_valid_floating);
    EXPECT_EQ(long_pi(r), -err_long_operation_only_valid_floating);
}

TEST_F(LongFunctionsTest, CrossoversAreRaisedToEightAboveThePrevious) {
    mode.precision = 200;
    mode.debug_display = true;
    auto pieces_for = [&](double crossover2) {
        set_named_double("sincrossover2", crossover2);
        LongNumber r;
        fe.take();
        EXPECT_EQ(long_sin(make_long("0.123456789012345678901234567890123456789"), false, r), 0);
        std::string out = fe.take();
        std::string shown;  // the piece lines of the series routine
        for (std::size_t at = out.find("x2_start_block"); at != std::string::npos;
             at = out.find("x2_start_block", at + 1)) {
            shown += out.substr(at, out.find('\n', at) - at) + "\n";
        }
        return shown;
    };
    const std::string at10 = pieces_for(10);
    EXPECT_EQ(at10, pieces_for(16));
    EXPECT_NE(at10, pieces_for(24));
    EXPECT_NE(at10, pieces_for(0));  // the default, 48
    EXPECT_NE(at10.find("x2_start_block - 3, x2_num_blocks = 2"), std::string::npos) << at10;
}

TEST_F(LongFunctionsTest, TimingsGoToTheirVariables) {
    mode.precision = 1000;
    const double five = 5;
    ASSERT_EQ(dimension_array("sincalctime", 1, &five, false), 2);
    ASSERT_EQ(dimension_array("lncalctime", 1, &five, false), 2);
    LongNumber r;
    ASSERT_EQ(long_sin(make_long("0.5123456789123"), false, r), 0);
    EXPECT_GT(named_double("sintotaltime"), 0.0);
    EXPECT_GT(named_double("sincalctime(0)"), 0.0);
    EXPECT_GT(named_double("sincalctime(1)"), 0.0);
    EXPECT_EQ(named_double("sincalctime(4)"), 0.0);  // the argument has no fifth piece
    ASSERT_EQ(long_atn(make_long("0.3"), false, r), 0);
    EXPECT_GT(named_double("atntotaltime"), 0.0);
    ASSERT_EQ(long_log(make_long("7"), r), 0);
    EXPECT_GT(named_double("lncalctime(1)"), 0.0);
    // With timing on, the labels are printed.
    set_long_timer(lop_sqr, true);
    fe.take();
    ASSERT_EQ(long_sqrt(make_long("2"), r), 0);
    EXPECT_NE(fe.take().find("SQR Calc. Time: "), std::string::npos);
}

struct Hook {
    int polls = 0;
    int abort_at = 1;
};
Hook hook;
int interrupting_check() { return ++hook.polls >= hook.abort_at ? -10000 : 0; }

TEST_F(LongFunctionsTest, InterruptionEndsLongComputationsPromptly) {
    const std::function<int(LongNumber&)> computations[] = {
        [](LongNumber& r) { return long_pi(r); },
        [](LongNumber& r) { return long_e(r); },
        [](LongNumber& r) { return long_sqrt(make_long("2"), r); },
        [](LongNumber& r) { return long_exp(make_long("1.5"), r); },
        [](LongNumber& r) { return long_log(make_long("2"), r); },
        [](LongNumber& r) { return long_sin(make_long("1"), false, r); },
        [](LongNumber& r) { return long_atn(make_long("0.3"), false, r); },
        [](LongNumber& r) { return long_factorial(make_long("20000"), r); },
    };
    set_long_interrupt_check(interrupting_check);
    for (const auto& f : computations) {
        mode.precision = 20000;
        hook = Hook{};
        LongNumber r;
        EXPECT_EQ(f(r), -10000);
        EXPECT_EQ(hook.polls, 1);
        EXPECT_EQ(mode.precision, 20000);
        EXPECT_EQ(long_state.functions.function_top, 0u);
    }
    // Nothing half-computed was kept: the constants are computed afresh.
    EXPECT_EQ(long_state.functions.cached_pi_digits, 0);
    EXPECT_EQ(long_state.functions.cached_ln10_digits, 0);
    set_long_interrupt_check(nullptr);
    mode.precision = 60;
    LongNumber pi;
    ASSERT_EQ(long_pi(pi), 0);
    EXPECT_EQ(text_of(pi), "3.14159265358979323846264338327950288419716939937510582097494");
}

/// A front end on which the user asks to stop while events are pumped the
/// second time: after the statement has started, during the computation.
struct StoppingFrontEnd : RecordingFrontEnd {
    int pumps = 0;
    void pump_events() override {
        if (++pumps == 2) host.flags.interrupt_requested = true;
    }
};

TEST_F(LongFunctionsTest, TheRunLoopStopsALongPower) {
    StoppingFrontEnd stopping;
    host.front_end = &stopping;
    mode.precision = 30000;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_LT(run_command_line("x = long(2) ^ 0.5"), 0);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
    host.front_end = &fe;
    EXPECT_NE(stopping.output.find("User interrupted program"), std::string::npos) << stopping.output;
    EXPECT_EQ(mode.precision, 30000);
    EXPECT_EQ(long_state.functions.function_top, 0u);
}

}  // namespace
}  // namespace tl::test
