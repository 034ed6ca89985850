// long_exponent_range_test.cpp — no long result leaves the exponent range:
// operations, functions, statements and loops refuse it, never wrap round.
#include <string>

#include "line_test_support.h"

namespace tl::test {
namespace {

using LongExponentRangeTest = LineTest;

// ---- the exponent range ----------------------------------------------------------

TEST_F(LongExponentRangeTest, ResultsBeyondTheExponentRangeAreRefusedNeverWrapped) {
    ok("long x, y, t, u");
    // 10^999999999, the largest power of ten in range, and 10^-1000000001,
    // the smallest, built by squaring and division.
    ok("x = exp10(long(10000000))");
    ok("t = x * x * x * x * x");  // 10^50000000
    ok("t = t * t");              // 10^100000000
    ok("u = t * t * t * t * t");
    ok("u = u * t * t * t * t");  // 10^900000000
    ok("u = u * x * x * x * x * x");
    ok("u = u * x * x * x * x * (x / 10)");
    EXPECT_EQ(ok("print u"), "1.e+999999999\n");
    ok("y = long(1) / u / long(100)");
    EXPECT_EQ(ok("print y"), "1.e-1000000001\n");

    const std::string range = "Exponent out of range.";
    EXPECT_TRUE(has_error(run("print u * 10"), range));
    EXPECT_TRUE(has_error(run("print u / long(\".1\")"), range));
    EXPECT_TRUE(has_error(run("print y / 10"), range));
    EXPECT_TRUE(has_error(run("print y * long(\".1\")"), range));
    EXPECT_TRUE(has_error(run("print long(1) / y"), range));
    EXPECT_TRUE(has_error(run("print u + u * long(9)"), range));  // the carry of an addition
    EXPECT_TRUE(has_error(run("print y * y"), range));
    EXPECT_TRUE(has_error(run("print u * u"), range));
    // Squaring twelve times once wrapped round to 1.e-198967296.
    ok("t = long(\"1e1000000\")");
    const std::string squares = run("for i = 1 to 12 : t = t * t : next");
    EXPECT_TRUE(has_error(squares, range)) << squares;
    EXPECT_EQ(ok("print t"), "1.e+512000000\n");
    // The same through the LONG statement, a FOR step and integer mode.
    ok("dim r$(2)");
    EXPECT_TRUE(has_error(run("long r$, mult, u, 10"), range));
    EXPECT_TRUE(has_error(run("long r$, div, y, 10"), range));
    EXPECT_TRUE(has_error(run("for t = u to u * 9 step u * 4 : next"), range));
    ok("integer");
    ok("t = long(\"1e1000000\")");
    EXPECT_TRUE(has_error(run("for i = 1 to 12 : t = t * t : next"), range));
    ok("float");
    // So do powers and roots.
    EXPECT_TRUE(has_error(run("print u ^ 2"), range));
    EXPECT_TRUE(has_error(run("print root(y, long(\".5\"))"), range));
    EXPECT_EQ(ok("print sqr(u)"), "3.1622776601683793319988935444327185337195551393252e+499999999\n");
    EXPECT_EQ(ok("print half(u)"), "5.e+999999998\n");
    EXPECT_TRUE(has_error(run("print half(y)"), range));
    // Passing over a statement computes nothing, so it raises nothing.
    EXPECT_EQ(ok("if 0 then print u * u"), "");
}

TEST_F(LongExponentRangeTest, PowersReachBothEndsOfTheRangeAndNoFurther) {
    ok("long t, u");
    const std::string range = "Exponent out of range.";
    // The mantissa of 10^(n + 1/2) is the square root of 10 at any n.
    const std::string root10 = ok("print sqr(long(10))");
    ASSERT_EQ(root10.substr(0, 2), "3.");
    const auto mantissa = [&](const std::string& line) {
        const std::string out = ok(line);
        return out.substr(0, out.find('e')) + "\n";
    };
    EXPECT_EQ(mantissa("print long(10) ^ long(\"999999999.5\")"), root10);
    EXPECT_EQ(mantissa("print long(10) ^ long(\"-1000000000.5\")"), root10);
    EXPECT_EQ(ok("print root(long(10), long(\"2e-9\"))"), "1.e+500000000\n");
    EXPECT_EQ(ok("print root(long(\"1e-10\"), long(\"1e-8\"))"), "1.e-1000000000\n");
    EXPECT_TRUE(has_error(run("print root(long(\"1e-11\"), long(\"1e-8\"))"), range));
    EXPECT_EQ(ok("print long(10) ^ long(\"999999999.5\")"), root10.substr(0, root10.size() - 1) + "e+999999999\n");
    EXPECT_TRUE(has_error(run("print long(10) ^ long(\"1000000000.5\")"), range));
    EXPECT_TRUE(has_error(run("print long(10) ^ long(\"-1000000001.5\")"), range));
    // Whole powers, by squaring: the largest and the smallest power of ten.
    EXPECT_EQ(ok("print long(10) ^ long(999999999)"), "1.e+999999999\n");
    EXPECT_EQ(ok("print long(10) ^ long(-1000000001)"), "1.e-1000000001\n");
    EXPECT_EQ(ok("print long(\".1\") ^ long(1000000001)"), "1.e-1000000001\n");
    EXPECT_TRUE(has_error(run("print long(10) ^ long(1000000000)"), range));
    EXPECT_TRUE(has_error(run("print long(10) ^ long(-1000000002)"), range));
    EXPECT_TRUE(has_error(run("print long(\".1\") ^ long(1000000002)"), range));
    // A power just below 10^1000000000 that rounds up to it at the length.
    ok("float 11");
    EXPECT_TRUE(has_error(run("print long(10) ^ long(\"999999999.9999999999999\")"), range));
    ok("float 30");
    // 10^-1e-13 = 0.99999999999976974149070062194...
    EXPECT_EQ(ok("print long(10) ^ long(\"999999999.9999999999999\")"), "9.99999999999769741490700621941e+999999999\n");
    // The same through the LONG statement; e^x keeps its own limit.
    ok("dim r$(2)");
    ok("u = long(\"-999999999.5\")");
    ok("long r$, power, long(10), u");
    EXPECT_TRUE(has_error(run("long r$, power, long(10), u * 2"), range));
    EXPECT_TRUE(has_error(run("print exp(long(2302586))"), "LONGMATH - e^x: |x| too large."));
    EXPECT_EQ(ok("if 0 then print long(10) ^ long(1000000000)"), "");
}

}  // namespace
}  // namespace tl::test
