// Tests of the error reporter: echo, caret placement, pass-through messages.
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "lang/lang_state.h"
#include "test_support.h"

namespace tl::test {
namespace {

class ReporterTest : public CoreTest {
protected:
    void on_statement(const char* text, int column, const char* start = nullptr) {
        lang.reporter.text = text;
        lang.reporter.statement_start = start != nullptr ? start : text;
        lang.reporter.error_column = column;
    }
};

TEST_F(ReporterTest, EchoCaretAndMessage) {
    on_statement("x = 1 / 0", 6);
    EXPECT_EQ(report_error(err_attempt_divide_by_zero), -78);
    EXPECT_EQ(fe.take(), "\nx = 1 / 0\n      *\nERROR - Attempt to divide by zero.\n");
}

TEST_F(ReporterTest, CaretMovesPastBlanksAndTabsAndKeepsTabs) {
    on_statement("\tif  \tx", 3);
    EXPECT_EQ(report_error(err_type_mismatch), -40);
    EXPECT_EQ(fe.take(), "\n\tif  \tx\n\t    \t*\nERROR - Type mismatch.\n");
}

TEST_F(ReporterTest, ColumnOutsideTheTextGoesToItsEnd) {
    on_statement("abc", 99);
    (void)report_error(err_invalid_expression);
    EXPECT_EQ(fe.take(), "\nabc\n   *\nERROR - Invalid Expression.\n");
    on_statement("abc", -4);
    (void)report_error(err_invalid_expression);
    EXPECT_EQ(fe.take(), "\nabc\n   *\nERROR - Invalid Expression.\n");
}

TEST_F(ReporterTest, ColumnCountsFromTheStatementStart) {
    const char* line = "a = 1: b = 2 *";
    on_statement(line, 6, line + 7);
    (void)report_error(err_operator_last_item);
    EXPECT_EQ(fe.take(), std::string("\n") + line + "\n" + std::string(13, ' ') + "*\nERROR - Operator cannot be last item in expression.\n");
}

TEST_F(ReporterTest, PassThroughOnlyInDebugState) {
    on_statement("x", 0);
    EXPECT_EQ(report_error(err_pass_get_item), -10);
    EXPECT_EQ(report_error(0), -1);
    EXPECT_EQ(fe.take(), "");
    lang.reporter.debug = true;
    EXPECT_EQ(report_error(err_pass_get_item), -10);
    EXPECT_EQ(fe.take(), "\nx\n*\nERROR - Error return from get_item.\n");
    EXPECT_EQ(report_error(0), -1);
    EXPECT_EQ(fe.take(), "\nx\n*\nERROR -  \n");
}

TEST_F(ReporterTest, AlreadyReportedPrintsOnlyTheEcho) {
    on_statement("go", 1);
    EXPECT_EQ(report_error(err_already_reported), -10000);
    EXPECT_EQ(fe.take(), "\ngo\n *\n");
}

TEST_F(ReporterTest, NoEchoAndNoStatement) {
    on_statement("x = y", 2);
    EXPECT_EQ(report_error_no_echo(err_type_mismatch), -40);
    EXPECT_EQ(fe.take(), "ERROR - Type mismatch.\n");
    lang.reporter.text = nullptr;
    (void)report_error(err_type_mismatch);
    EXPECT_EQ(fe.take(), "ERROR - Type mismatch.\n");
}

TEST_F(ReporterTest, DisplayFlagSuppressesTheLeadingNewline) {
    on_statement("y", 0);
    lang.reporter.display_after_trace = true;
    (void)report_error(err_type_mismatch);
    EXPECT_EQ(fe.take(), "y\n*\nERROR - Type mismatch.\n");
}

TEST(ErrorTable, NumbersAndTexts) {
    EXPECT_STREQ(error_messages[0], " ");
    EXPECT_STREQ(error_messages[9], error_messages[21]);
    EXPECT_STREQ(error_messages[78], error_messages[166]);
    EXPECT_STREQ(error_messages[239], "Expecting \"AS\"");
    EXPECT_STREQ(error_messages[337], "Invalid value for CHANGESHAPE parameter.");
    EXPECT_STREQ(error_messages[err_unused_218], "(not used).");
}

}  // namespace
}  // namespace tl::test
