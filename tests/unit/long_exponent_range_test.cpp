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
    // Functions whose results would leave the range have their own messages.
    EXPECT_FALSE(run("print u ^ 2").find("ERROR - ") == std::string::npos);
    EXPECT_EQ(ok("print sqr(u)"), "3.1622776601683793319988935444327185337195551393252e+499999999\n");
    EXPECT_EQ(ok("print half(u)"), "5.e+999999998\n");
    EXPECT_TRUE(has_error(run("print half(y)"), range));
    // Passing over a statement computes nothing, so it raises nothing.
    EXPECT_EQ(ok("if 0 then print u * u"), "");
}

}  // namespace
}  // namespace tl::test
