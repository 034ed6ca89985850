// Tests of the builtin functions and statements that a program transcript
// cannot reach: the generator's raw draws, skip mode, front-end answers,
// the window-mode branches, long-number forms and SORT of long arrays.
#include <unistd.h>

#include <cmath>
#include <cstdlib>
#include <random>

#include <string>

#include "exec/arrays.h"
#include "exec/exec_state.h"
#include "exec/sort_statement.h"
#include "exec/statements.h"
#include "exec/string_space.h"
#include "lang/error_table.h"
#include "lang/random_numbers.h"
#include "longmath/long_convert.h"
#include "longmath/long_space.h"
#include "longmath/long_state.h"
#include "lang/keyword_tables.h"
#include "longmath/long_timing.h"
#include "scan_test_support.h"

namespace tl::test {
namespace {

/// Answers keys from a queue and can pretend to be the window.
class KeyFrontEnd : public RecordingFrontEnd {
public:
    std::string keys;
    bool window = false;
    bool interrupt_on_read = false;
    int read_key() override {
        if (keys.empty()) return -1;
        const int c = static_cast<unsigned char>(keys[0]);
        keys.erase(0, 1);
        return c;
    }
    bool console_mode() const override { return !window; }
    bool read_line(std::string_view prompt, std::string& line) override {
        if (interrupt_on_read) host.flags.interrupt_requested = true;
        return RecordingFrontEnd::read_line(prompt, line);
    }
};

class BuiltinFunctions : public ScanTest {
protected:
    KeyFrontEnd keys;
    void SetUp() override {
        ScanTest::SetUp();
        host.front_end = &keys;
        exec.skip = false;  // the execution state is not part of the core reset
    }
    void TearDown() override {
        exec.skip = false;
        ScanTest::TearDown();
    }
    double long_value() {
        double x = 0;
        EXPECT_EQ(long_to_double(long_state.work, x, false), 0);
        return x;
    }
    std::string error_of(const std::string& text) {
        keys.take();
        EXPECT_LT(eval(text), 0) << text;
        const std::string out = keys.take();
        const auto at = out.find("ERROR - ");
        return at == std::string::npos ? out : out.substr(at + 8, out.find('\n', at) - at - 8);
    }
};

TEST_F(BuiltinFunctions, GeneratorFollowsTheSampleOfTheCStandard) {
    seed_random(1);
    EXPECT_EQ(random_draw(), 16838);
    EXPECT_EQ(random_draw(), 5758);
    EXPECT_EQ(random_draw(), 10113);
    seed_random(1);
    const double x = next_random();
    EXPECT_DOUBLE_EQ(x, (10113 + (5758 + 16838 / 32768.0) / 32768.0) / 32768.0);
    EXPECT_EQ(lang.random.previous, x);
    std::uint32_t seed = 0;
    EXPECT_TRUE(random_seed_of(-4294967295.9, seed));
    EXPECT_EQ(seed, 4294967295u);
    EXPECT_FALSE(random_seed_of(0.99, seed));
    EXPECT_FALSE(random_seed_of(NAN, seed));
}

TEST_F(BuiltinFunctions, PassingOverHasNoEffects) {
    lang.scan.skipping = true;
    const std::uint32_t state = lang.random.next;
    keys.input.push_back("n");
    keys.keys = "q";
    EXPECT_EQ(eval("rnd(1) + rnd(-0.5) + log(0) + factorial(0) + mod(1, 0)"), kind_double);
    EXPECT_EQ(eval(R"(messagebox("a", "b", "yesno") + len(inkey$))"), kind_double);
    EXPECT_EQ(lang.random.next, state);
    EXPECT_EQ(keys.input.size(), 1u);
    EXPECT_EQ(keys.keys, "q");
    EXPECT_EQ(keys.take(), "");
    EXPECT_LT(eval(R"(rnd(1, 2))"), 0);  // the parameter count is still checked

    lang.scan.skipping = false;
    exec.skip = true;
    on("7");
    EXPECT_EQ(do_randomize(), 0);
    EXPECT_EQ(lang.random.next, state);
    on("0");
    EXPECT_EQ(do_randomize(), 0);  // no value errors either
    on("");
    EXPECT_EQ(do_degrees(), 0);
    EXPECT_FALSE(lang.degrees);
    on("nosuch, keycol1 = 5");
    EXPECT_EQ(do_sort(), 0);
    on("nosuch, keycol3 = 5");  // a syntax error is still one
    EXPECT_EQ(do_sort(), -err_invalid_sort_parameter);
}

TEST_F(BuiltinFunctions, KeysAndMessageBoxes) {
    keys.keys = "q";
    EXPECT_EQ(text_of("inkey$"), "q");
    EXPECT_EQ(text_of("inkey$"), "");  // no key waiting

    keys.input = {"", "y"};
    EXPECT_EQ(value_of(R"(messagebox("Hello"))"), 1);
    EXPECT_EQ(value_of(R"(messagebox("Sure?", "Ask", "YesNo"))"), 6);
    EXPECT_NE(keys.output.find("Message: Hello\n"), std::string::npos);
    EXPECT_NE(keys.output.find("Ask: Sure?\nYes or No? "), std::string::npos);

    keys.interrupt_on_read = true;
    keys.input = {""};
    EXPECT_EQ(error_of(R"(messagebox("x"))"), "User interrupted program");
    EXPECT_FALSE(host.flags.interrupt_requested.load());
}

TEST_F(BuiltinFunctions, WindowModeBranches) {
    keys.window = true;
    EXPECT_EQ(value_of("checkmouseclick"), 0);
    EXPECT_EQ(error_of("choosefont$"), "Invalid function call.");
    EXPECT_EQ(error_of(R"(browseinputfile$("x"))"), "Invalid function call.");
    keys.window = false;
    EXPECT_EQ(error_of("choosefont$"), "Function not valid in Console mode.");
}

TEST_F(BuiltinFunctions, SpecialFunctions) {
    EXPECT_EQ(value_of("checkdegrees"), 0);
    lang.degrees = true;
    EXPECT_EQ(value_of("checkdegrees"), 1);
    EXPECT_EQ(value_of("sin(30) * 0 + cossame"), value_of("cos(30)"));

    EXPECT_GE(value_of("starttimer"), 0);
    const double elapsed = value_of("endtimer");
    EXPECT_GE(elapsed, 0);
    EXPECT_LT(elapsed, 5);

    copy_text(host.program_folder, sizeof host.program_folder, "/opt/tessaline/");
    EXPECT_EQ(text_of("programdir$"), "/opt/tessaline/");
    char cwd[1024];
    ASSERT_NE(::getcwd(cwd, sizeof cwd), nullptr);
    EXPECT_EQ(text_of("workingdir$"), cwd);

    ASSERT_EQ(long_from_double(7, long_state.remainder, false), 0);
    ASSERT_EQ(eval("remainder"), kind_long);
    EXPECT_EQ(long_value(), 7);
    EXPECT_EQ(value_of("matherror"), 0);
}

TEST_F(BuiltinFunctions, LongForms) {
    ASSERT_EQ(eval("cint(long(-2.5))"), kind_long);
    EXPECT_EQ(long_value(), -3);
    ASSERT_EQ(eval("cint(long(2.49))"), kind_long);
    EXPECT_EQ(long_value(), 2);
    ASSERT_EQ(eval("mod(long(-7), 3)"), kind_long);
    EXPECT_EQ(long_value(), -1);
    EXPECT_EQ(value_of("exponent(long(12345))"), 4);
    EXPECT_EQ(value_of("exponent(long(0.00123))"), -3);
    ASSERT_EQ(eval("half(long(7))"), kind_long);
    EXPECT_EQ(long_value(), 3.5);
    EXPECT_EQ(text_of("str$(long(2.5))"), "2.5");
    EXPECT_EQ(error_of("mod(long(1), 0)"), "Attempt to divide by zero.");
    EXPECT_EQ(error_of("log(long(0))"), "Can't take logarithm of zero.");
    EXPECT_EQ(error_of("sqr(long(-1))"), "Can't take square root of negative number.");

    long_state.mode.integer_mode = true;
    EXPECT_EQ(error_of("sin(long(1))"), "LONGMATH - Operation only valid in Floating Point mode.");
    EXPECT_EQ(error_of("longpi"), "LONGMATH - Operation only valid in Floating Point mode.");
    long_state.mode.integer_mode = false;

    set_long_timer(lop_half, true);
    keys.take();
    ASSERT_EQ(eval("half(long(3))"), kind_long);
    EXPECT_NE(keys.take().find("Half Calc. Time:  "), std::string::npos);
    set_long_timer(lop_half, false);

    areas.long_default = true;  // factorial is long in the long-default mode
    ASSERT_EQ(eval("factorial(5)"), kind_long);
    EXPECT_EQ(long_value(), 120);
}

TEST_F(BuiltinFunctions, SortOfALongArrayComparesLongNumbers) {
    const double five = 5;
    ASSERT_EQ(dimension_array("L", 1, &five, true), kind_long);
    ArrayEntry* a = find_array("L");
    const double values[] = {3, -1, 0, 2};  // element 4 stays empty (compares as zero)
    for (int i = 0; i < 4; ++i) {
        const std::int64_t ref = new_long_variable();
        ASSERT_GT(ref, 0);
        a->words()[i] = static_cast<std::uint32_t>(ref);
        ASSERT_EQ(long_from_double(values[i], long_at(a->words()[i]), false), 0);
    }
    const std::uint32_t empty_ref = a->words()[4];
    ASSERT_EQ(empty_ref, 0u);
    const std::uint32_t zero_ref = a->words()[2];
    on("L");
    ASSERT_EQ(do_sort(), 0) << keys.output;
    // Ascending (only double keys are reversed); the empty element and the
    // zero compare equal and keep their order.
    double sorted[5];
    for (int i = 0; i < 5; ++i) {
        sorted[i] = 0;
        if (a->words()[i] != 0) {
            ASSERT_EQ(long_to_double(long_at(a->words()[i]), sorted[i], false), 0);
        }
    }
    EXPECT_EQ(sorted[0], -1);
    EXPECT_EQ(a->words()[1], zero_ref);
    EXPECT_EQ(a->words()[2], empty_ref);
    EXPECT_EQ(sorted[3], 2);
    EXPECT_EQ(sorted[4], 3);
}

}  // namespace
}  // namespace tl::test

namespace tl::test {
namespace {

/// The value of a hexconvert text, read by the C library's hexadecimal
/// floating-point parser (correctly rounded) as the reference.
double hex_text_value(const std::string& text) {
    std::string c = text;
    const bool negative = !c.empty() && c[0] == '-';
    if (negative) c.erase(0, 1);
    return (negative ? -1 : 1) * std::strtod(("0x" + c + "p0").c_str(), nullptr);
}

TEST_F(BuiltinFunctions, HexconvertOfADoubleIsExactWhereItsTextFitsAndRoundedBelow) {
    std::mt19937_64 draw(19);
    for (int i = 0; i < 400; ++i) {
        // Every binary exponent a double has, including the subnormal ones.
        const std::uint64_t mantissa = draw() >> 11;  // below 2^53
        const int exponent = -1074 + static_cast<int>(draw() % 1100);
        const double x = (i % 2 == 0 ? 1.0 : -1.0) * std::ldexp(static_cast<double>(mantissa), exponent);
        if (!(std::fabs(x) < 18446744073709551616.0)) continue;
        const std::string expression =
            "hexconvert(" + std::string(i % 2 == 0 ? "" : "-") + std::to_string(mantissa) + " * 2 ^ " +
            std::to_string(exponent) + ")";
        const std::uint32_t mark = temp_string_mark();
        const std::string text = text_of(expression);
        release_temp_strings(mark);
        ASSERT_LE(text.size(), 255u) << expression;
        const double back = hex_text_value(text);
        if (std::fabs(x) >= std::ldexp(1.0, -960)) {
            EXPECT_EQ(back, x) << expression << " gave " << text;
        } else {
            // 253 hex digits behind the point (252 after a sign): off by at
            // most half the last one.
            EXPECT_LE(std::fabs(back - x), std::ldexp(1.0, x < 0 ? -1009 : -1013)) << expression << " gave " << text;
            if (text != "0") {
                EXPECT_NE(text.back(), '0') << expression;
            }
        }
    }
    EXPECT_EQ(text_of("hexconvert(5e-324)"), "0");
    EXPECT_EQ(text_of("hexconvert(-5e-324)"), "0");
    EXPECT_EQ(text_of("hexconvert(2 ^ -1012)"), "0." + std::string(252, '0') + "1");
    EXPECT_EQ(text_of("hexconvert(2 ^ -1012 + 2 ^ -1013)"), "0." + std::string(252, '0') + "2");  // half to even
    EXPECT_EQ(text_of("hexconvert(3 * 2 ^ -1013)"), "0." + std::string(252, '0') + "2");
}

TEST_F(BuiltinFunctions, HexconvertOfALongCountsDigitsFromTheFirstSignificantOne) {
    // A small long number keeps as many significant hex digits as a large one.
    const std::string small = text_of("hexconvert(long(\"1e-30\"))");
    const std::string unit = text_of("hexconvert(long(\"0.1\"))");
    const std::size_t first = small.find_first_not_of("0.");
    ASSERT_NE(first, std::string::npos) << small;
    EXPECT_GE(small.size() - first + 1, unit.size() - 2) << small;
    EXPECT_EQ(text_of("hexconvert(long(\"0.5\"))"), "0.8");
    EXPECT_EQ(text_of("hexconvert(long(\"16\"))"), "10");
}

}  // namespace
}  // namespace tl::test
