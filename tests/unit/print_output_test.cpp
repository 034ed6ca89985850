// print_output_test.cpp — what PRINT and WRITE put on the line: long numbers
// in every field width, text buffers sized from the text, USING's separator,
// columns of characters that take more than one byte.
#include <initializer_list>
#include <random>
#include <utility>
#include <string>

#include "long_reference.h"
#include "longmath/long_arith.h"
#include "longmath/long_convert.h"
#include "longmath/long_state.h"
#include "line_test_support.h"

namespace tl::test {
namespace {

using PrintOutputTest = LineTest;

// ---- formatted output in every width ----------------------------------------

TEST_F(PrintOutputTest, EveryAllowedWidthPrintsWritesAndFormatsAlike) {
    ok("long a, b, c");
    ok("a = long(5)");
    ok("b = long(\"-123456789.987654321\")");
    ok("c = exp10(long(10000000))");  // the integer part never fits: exponent form
    const std::pair<const char*, LongNumber> values[] = {
        {"a", make_long("5")}, {"b", make_long("-123456789.987654321")}, {"c", make_long("1e1000000")}};
    for (int w = 12; w < 256; ++w) {
        for (const std::string& spec : {std::to_string(w), std::to_string(w) + ".0", std::to_string(w) + ".2",
                                        std::to_string(w) + "." + std::to_string(w - 3) + "c"}) {
            for (const auto& [name, value] : values) {
                LongNumber n = value;
                if (std::string(name) == "c") n.exp = 10000001;
                char buffer[long_format_size];
                const int length = long_format(n, spec, buffer, sizeof buffer, false);
                ASSERT_GE(length, w) << spec << " " << name;
                const std::string expected = std::string(buffer, static_cast<std::size_t>(length)) + "\n";
                EXPECT_EQ(ok(std::string("print using \"") + spec + "\"; " + name), expected) << spec;
                // str$ gives the same text while it fits a string.
                const std::string str_line = std::string("print str$(") + name + ", \"" + spec + "\")";
                if (length <= 255) {
                    EXPECT_EQ(ok(str_line), expected) << spec;
                } else {
                    EXPECT_TRUE(has_error(run(str_line), "LONGMATH - Output too long for a string variable."));
                }
                // WRITE keeps the field; one wider than the line goes in pieces.
                const std::string written = ok(std::string("write using \"") + spec + "\"; " + name);
                if (length <= 80) {
                    EXPECT_EQ(written, expected) << spec;
                } else {
                    EXPECT_EQ(written.rfind("Length=", 0), 0u) << written;
                }
            }
        }
    }
    EXPECT_EQ(ok("print using \"66.2\"; a"), std::string(62, ' ') + "5.00\n");
    EXPECT_TRUE(has_error(run("print using \"256\"; a"), "Invalid Format string for PRINT USING."));
    EXPECT_TRUE(has_error(run("print using \"11\"; a"), "Invalid Format string for PRINT USING."));
}

// ---- text buffers sized from the text -----------------------------------------

TEST_F(PrintOutputTest, TextSizeIsTheLengthOfTheTextInBothModes) {
    std::mt19937_64 rng(13);
    for (bool integer : {false, true}) {
        long_state.mode.integer_mode = integer;
        for (int precision : {11, 50, 300}) {
            long_state.mode.precision = precision;
            for (int i = 0; i < 400; ++i) {
                const LongNumber n = make_long(random_number_text(rng, 2 * precision, 3 * precision));
                const std::size_t size = long_text_size(n);
                std::string buffer(size, '\0');
                const int length = long_to_string(n, buffer.data(), size, false);
                ASSERT_GE(length, 0) << text_of(n);
                // Room for the text and its NUL, and no more than the digit check asks.
                EXPECT_LE(static_cast<std::size_t>(length) + 1, size);
                EXPECT_LE(size, std::max<std::size_t>(static_cast<std::size_t>(length) + 1,
                                                      integer ? static_cast<std::size_t>(std::max(n.exp, 1)) + 2
                                                              : static_cast<std::size_t>(n.len) + 12));
            }
        }
    }
    // A huge exponent costs its short text, not its exponent.
    long_state.mode.integer_mode = false;
    long_state.mode.precision = 50;
    LongNumber big = make_long("7");
    big.exp = long_exponent_limit;
    EXPECT_LT(long_text_size(big), 64u);
    big.exp = -long_exponent_limit;
    EXPECT_LT(long_text_size(big), 64u);
}

// ---- USING and its separator ---------------------------------------------------

TEST_F(PrintOutputTest, UsingWithoutSeparatorIsError74) {
    ok("f$ = \"%5.1f\"");
    ok("y = 2");
    const std::string separator = "Format string must be followed by semicolon or comma.";
    for (const char* line : {"print using \"%5.1f\" y", "print using \"%5.1f\"y", "print using f$ y",
                             "print using f$ \"a\"", "print using \"%5.1f\"", "write using f$ 3"}) {
        const std::string out = run(line);
        EXPECT_TRUE(has_error(out, separator)) << line << "\n" << out;
    }
    // The caret stands at the item that lacks its separator.
    EXPECT_EQ(run("print using \"%5.1f\" y"), "\nprint using \"%5.1f\" y\n                    *\nERROR - " +
                                                 separator + "\n");
    // Expressions as formats are still read whole.
    EXPECT_EQ(ok("print using f$ + \"\"; y"), "  2.0\n");
    EXPECT_EQ(ok("print using left$(f$, 5); y, y"), "  2.0           2.0\n");
    EXPECT_TRUE(has_error(run("print using 5; y"), "Invalid Format string for PRINT USING."));
}

// ---- columns are characters ------------------------------------------------------

TEST_F(PrintOutputTest, TheMicroSignTakesOneColumn) {
    const std::string micro = "\xC2\xB5";
    // Zones, TAB and the line width after an item in the micro range.
    EXPECT_EQ(ok("print using \"eng\"; 5e-6, 1"), "   5.00 " + micro + "-   " + " " + "   1.00      \n");
    EXPECT_EQ(ok("print using \"eng\"; 5e-6; tab(20); \"x\""), "   5.00 " + micro + "-   " + std::string(6, ' ') + "x\n");
    // Six items of 13 columns fit 80 columns; counted in bytes they would not.
    const std::string six = ok("print using \"eng\"; 5e-6; 5e-6; 5e-6; 5e-6; 5e-6; 5e-6");
    EXPECT_EQ(six.find('\n'), six.size() - 1) << six;
    EXPECT_EQ(ok("print string$(3, 65); chr$(181); tab(6); \"x\""), "AAA\xB5 x\n");  // a lone byte is one column
}

// ---- TAB at the end of a statement ------------------------------------------

TEST_F(PrintOutputTest, ATabFollowedBySemicolonAtTheEndWaitsForTheNextPrint) {
    // The lines run one after the other, their output joined in that order.
    const auto lines = [this](std::initializer_list<const char*> typed) {
        std::string out;
        for (const char* line : typed) out += ok(line);
        return out;
    };
    EXPECT_EQ(lines({"print tab(10);", "print \"x\""}), std::string(9, ' ') + "x\n");
    EXPECT_EQ(lines({"print \"ab\"; tab(10);", "print \"x\""}), "ab" + std::string(7, ' ') + "x\n");
    // Without the ";" the statement ends the line, as a bare PRINT does.
    EXPECT_EQ(lines({"print tab(10)", "print \"x\""}), "\nx\n");
    // A TAB before the current column moves to the next line first.
    EXPECT_EQ(lines({"print \"abcdef\";", "print tab(3);", "print \"x\""}), "abcdef\n  x\n");
}

}  // namespace
}  // namespace tl::test

namespace tl::test {
namespace {

using PrintStringArrayTest = LineTest;

// ---- a long number kept in a whole string array --------------------------------

std::string factorial_digits(int n) {
    std::string digits = "1";
    for (int k = 2; k <= n; ++k) {
        int carry = 0;
        for (auto it = digits.rbegin(); it != digits.rend(); ++it) {
            const int v = (*it - '0') * k + carry;
            *it = static_cast<char>('0' + v % 10);
            carry = v / 10;
        }
        while (carry > 0) {
            digits.insert(digits.begin(), static_cast<char>('0' + carry % 10));
            carry /= 10;
        }
    }
    return digits;
}

TEST_F(PrintStringArrayTest, AWholeStringArrayPrintsAndWritesAsOneLongNumber) {
    const std::string digits = factorial_digits(200);  // 375 digits
    ok("dim p$(10)");
    ok("integer");
    ok("long p$, factorial, 200");
    EXPECT_EQ(ok("print p$"), digits + "\n");
    // Too long for the line: it starts a line of its own.
    EXPECT_EQ(ok("print \"n = \"; p$"), "n = \n" + digits + "\n");

    // WRITE: the digit count, then quoted pieces of 78 characters.
    std::string expected = "Length=375\n";
    for (std::size_t at = 0; at < digits.size(); at += 78) expected += "\"" + digits.substr(at, 78) + "\"\n";
    EXPECT_EQ(ok("write p$"), expected);

    // In floating-point mode it is rounded to the length, as a long variable is.
    ok("float 20");
    EXPECT_EQ(ok("print p$"), "7.8865786736479050355e+374\n");
    ok("float 400");
    ok("long q");
    ok("q = factorial(long(200))");
    EXPECT_EQ(ok("print p$"), ok("print q"));
    EXPECT_EQ(ok("print using \"250.2\"; p$"), ok("print using \"250.2\"; q"));
    ok("long p$, convert, long(1) / 7");
    EXPECT_EQ(ok("print using \"20.5\"; p$"), "              .14286\n");
}

TEST_F(PrintStringArrayTest, LengthCountsDigitsNotSignOrPoint) {
    ok("float 100");
    ok("long x");
    ok("x = -long(2) / 3");  // "-.666...67": 102 characters, 100 digits
    const std::string out = ok("write x");
    EXPECT_EQ(out.substr(0, out.find('\n')), "Length=100") << out;
    ok("dim p$(2)");
    ok("long p$, convert, x");
    EXPECT_EQ(ok("write p$"), out);
}

TEST_F(PrintStringArrayTest, AnArrayThatHoldsNoNumberIsRefused) {
    ok("dim t$(3)");
    ok("t$(0) = \"12x\"");
    EXPECT_TRUE(has_error(run("print t$"), "Invalid Number String."));
    // An empty array is no number either; the interpreter stays usable.
    ok("dim e$(3)");
    EXPECT_TRUE(has_error(run("print e$"), "Invalid Number String."));
    EXPECT_EQ(ok("print 1"), "1\n");
    // A numeric array is still not printable.
    ok("dim a(3)");
    EXPECT_TRUE(has_error(run("print a"), "Invalid type."));
    // Passed over, nothing is read.
    EXPECT_EQ(ok("if 0 then print t$"), "");
}

}  // namespace
}  // namespace tl::test
