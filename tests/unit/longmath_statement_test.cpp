// Tests of the long-number statements that transcripts cannot pin down: the
// per-operation timers (their lines carry times) and the text store into a
// function argument and with the single-string flag.
#include <string>

#include "exec/exec_state.h"
#include "exec/longmath_statement.h"
#include "exec/run_loop.h"
#include "lang/error_table.h"
#include "lang/keyword_tables.h"
#include "lang/lang_state.h"
#include "lang/predefined_variables.h"
#include "exec/memory_areas.h"
#include "longmath/long_state.h"
#include "longmath/long_timing.h"
#include "test_support.h"

namespace tl::test {
namespace {

using LongStatements = CoreTest;

int count_of(const std::string& text, const std::string& part) {
    int n = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++n;
    return n;
}

TEST_F(LongStatements, TimerOfOneOperationPrintsOnlyItsLabel) {
    ASSERT_EQ(run_command_line("debug timer mult"), 0);
    EXPECT_TRUE(long_timer_on(lop_mult));
    fe.take();
    ASSERT_EQ(run_command_line("x = long(3) * long(4) / long(5)"), 0);
    std::string out = fe.take();
    EXPECT_EQ(count_of(out, "Mult Calc. Time: "), 1) << out;
    EXPECT_EQ(count_of(out, "Div Calc. Time: "), 0) << out;
    EXPECT_NE(out.find(" ms.\n"), std::string::npos);

    ASSERT_EQ(run_command_line("debug timer div"), 0);
    ASSERT_EQ(run_command_line("debug timer mult, off"), 0);
    fe.take();
    ASSERT_EQ(run_command_line("x = long(3) * long(4) / long(5)"), 0);
    out = fe.take();
    EXPECT_EQ(count_of(out, "Mult Calc. Time: "), 0) << out;
    EXPECT_EQ(count_of(out, "Div Calc. Time: "), 1) << out;

    ASSERT_EQ(run_command_line("debug off"), 0);
    EXPECT_FALSE(long_state.mode.timing);
    fe.take();
    ASSERT_EQ(run_command_line("x = long(3) * long(4) / long(5)"), 0);
    EXPECT_EQ(fe.take().find("Calc. Time"), std::string::npos);
}

TEST_F(LongStatements, LabelsBelongToTheirOperations) {
    EXPECT_EQ(long_timer_operation("PI Calc. Time:"), lop_longpi);
    EXPECT_EQ(long_timer_operation("E  Calc. Time:"), lop_longe);
    EXPECT_EQ(long_timer_operation("LN stage  Calc. Time:"), lop_log);
    EXPECT_EQ(long_timer_operation("long_convert_in Time:      "), lop_convert);
    EXPECT_EQ(long_timer_operation("old long-to-double Calc. Time: "), lop_convert);
    EXPECT_EQ(long_timer_operation("\"^\"   Calc. Time: "), lop_power);
    EXPECT_EQ(long_timer_operation("Factorial Calc. Time: "), lop_factorial);
    EXPECT_EQ(long_timer_operation("Something else"), -1);
}

TEST_F(LongStatements, TimerSyntaxOnlyWhenPassedOver) {
    ASSERT_EQ(run_command_line("if 0 then debug timer sqr"), 0);
    EXPECT_FALSE(long_timer_on(lop_sqr));
    fe.take();
    EXPECT_LT(run_command_line("if 0 then debug timer nosuch"), 0);
    EXPECT_NE(fe.take().find("ERROR - Invalid DEBUG function."), std::string::npos);
}

TEST_F(LongStatements, StoreIntoArgumentAndSingleStringFlag) {
    Item arg;
    arg.kind = kind_argument;
    const std::string fits(255, '7');
    EXPECT_EQ(store_long_text(arg, fits, false), kind_string);
    EXPECT_EQ(std::string(lang.scan.buffer), fits);
    EXPECT_EQ(store_long_text(arg, fits + "7", false), -err_long_output_too_long_string);

    ASSERT_EQ(run_command_line("dim a$(3)"), 0);
    ASSERT_EQ(run_command_line("a$(2) = \"old\""), 0);
    Item array;
    array.kind = kind_string_array;
    array.array = &areas.arrays[0];
    fe.take();
    EXPECT_EQ(store_long_text(array, fits + "8", true), -err_long_output_too_long_string);
    EXPECT_EQ(store_long_text(array, fits + "8", false), kind_string);
    ASSERT_EQ(run_command_line("print a$(1); len(a$(2))"), 0);
    EXPECT_NE(fe.take().find("8            0"), std::string::npos);

    Item number;
    number.kind = kind_double;
    EXPECT_EQ(store_long_text(number, "1", false), -err_long_first_item_dest_string);
}

TEST_F(LongStatements, FloatKeepsFloatingptlengthCurrent) {
    ASSERT_EQ(run_command_line("float 64"), 0);
    EXPECT_EQ(lang.predefined[pre_floatingptlength].number, 64);
    ASSERT_EQ(run_command_line("integer"), 0);
    ASSERT_EQ(run_command_line("float 40"), 0);
    ASSERT_EQ(run_command_line("float"), 0);
    EXPECT_EQ(long_state.mode.precision, 40);
    EXPECT_FALSE(long_state.mode.integer_mode);
    fe.take();
    EXPECT_LT(run_command_line("float 1e7"), 0);
    EXPECT_NE(fe.take().find("ERROR - Invalid floating point length"), std::string::npos);
    EXPECT_EQ(long_state.mode.precision, 40);
}

}  // namespace
}  // namespace tl::test
