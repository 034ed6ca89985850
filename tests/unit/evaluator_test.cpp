// Tests of the expression evaluator: the Item limit, unary signs, the seven
// passes and their errors, types, results, write-back references, listings.
#include <cmath>
#include <string>

#include "exec/arrays.h"
#include "exec/memory_areas.h"
#include "exec/variables.h"
#include "lang/error_table.h"
#include "longmath/long_arith.h"
#include "longmath/long_convert.h"
#include "longmath/long_functions.h"
#include "longmath/long_state.h"
#include "scan_test_support.h"

namespace tl::test {
namespace {

using Evaluator = ScanTest;

std::string repeated(const std::string& part, int n) {
    std::string s;
    for (int i = 0; i < n; ++i) s += part;
    return s;
}

TEST_F(Evaluator, FortyNineItemsAndNoMore) {
    EXPECT_EQ(value_of("1" + repeated("+1", 24)), 25);  // 49 Items
    const std::string fifty = "-1" + repeated("+1", 24);
    EXPECT_EQ(eval(fifty), -err_too_many_items_expression);
    EXPECT_EQ(fe.take(), report(fifty, 49, "Too Many Items in expression."));
    EXPECT_EQ(value_of("(" + repeated("1+", 24) + "1)+" + repeated("1+", 23) + "1"), 49);  // per level
    EXPECT_EQ(eval(""), 0);
    EXPECT_EQ(eval("  : x = 1"), 0);
}

TEST_F(Evaluator, UnarySigns) {
    EXPECT_EQ(eval("--5"), kind_numeric_text);  // a sign on number text keeps it text
    EXPECT_STREQ(lang.scan.buffer, "5");
    EXPECT_EQ(value_of("3--2"), 5);
    EXPECT_EQ(value_of("3*-2"), -6);
    EXPECT_EQ(value_of("-+-+4 * 1"), 4);
    EXPECT_EQ(value_of("2^-1"), 0.5);
    EXPECT_EQ(value_of("1 = -1 + 2"), 1);
    EXPECT_EQ(value_of("not -1"), 0);

    fe.take();
    EXPECT_EQ(eval("3*/2"), -err_operator_follows_operator);
    EXPECT_EQ(fe.take(), report("3*/2", 2, "Operator (other than + or -) cannot follow another operator."));
    EXPECT_EQ(eval("3-*2"), -err_sign_before_operator);
    EXPECT_EQ(fe.take(), report("3-*2", 1, "+ or - sign can't precede an operator (except + or -)."));
    EXPECT_EQ(eval("4 * -"), -err_unary_minus_last);
    EXPECT_EQ(eval("+"), -err_unary_plus_last);
    EXPECT_EQ(eval("3 +"), -err_operator_last_item);
    EXPECT_EQ(eval("3 *"), -err_operator_last_item);
    EXPECT_EQ(eval(R"(+"a")"), -err_unary_plus_before_non_number);
    EXPECT_EQ(eval(R"(-"a")"), -err_invalid_expression);
    EXPECT_EQ(eval("* 3"), -err_first_item_mul_div);
    EXPECT_EQ(eval("^ 3"), -err_raise_power_both_operands_numeric);
}

TEST_F(Evaluator, UnaryMinusOnNumberTextKeepsItText) {
    EXPECT_EQ(eval("-12345678901234567890"), kind_numeric_text);
    EXPECT_STREQ(lang.scan.buffer, "-12345678901234567890");
    EXPECT_EQ(eval("--7.5"), kind_numeric_text);
    EXPECT_STREQ(lang.scan.buffer, "7.5");
}

TEST_F(Evaluator, PowerMultiplyDivideAndRemainder) {
    EXPECT_EQ(value_of("2^3^2"), 64);
    EXPECT_EQ(value_of("2 + 3 * 4 ^ 2"), 50);
    EXPECT_EQ(value_of("12 / 4 * 3"), 9);
    EXPECT_EQ(value_of("7 % -2"), 1);
    EXPECT_EQ(value_of("-7 % 2"), -1);
    EXPECT_EQ(value_of("7.5 % 2"), 1.5);
    EXPECT_EQ(eval("10 ^ 400"), -err_power_root_error_result);
    EXPECT_EQ(eval("1e200 * 1e200"), -err_invalid_result_multiply_divide);
}

TEST_F(Evaluator, DivisionByZero) {
    fe.take();
    EXPECT_EQ(eval("1 / 0"), -err_attempt_divide_by_zero);
    EXPECT_EQ(fe.take(), report("1 / 0", 2, "Attempt to divide by zero."));
    EXPECT_FALSE(lang.scan.math_error);

    long_state.mode.matherrok = true;
    EXPECT_EQ(value_of("1 / 0"), HUGE_VAL);
    EXPECT_TRUE(lang.scan.math_error);
    EXPECT_EQ(value_of("matherror"), 1);
    EXPECT_EQ(eval("5 % 0"), -err_attempt_divide_by_zero);  // never tolerated
}

TEST_F(Evaluator, StringsInArithmetic) {
    EXPECT_EQ(value_of(R"("12" * 2)"), 24);
    EXPECT_EQ(value_of(R"(" 12" - 2)"), 10);
    fe.take();
    EXPECT_EQ(eval(R"("12" + 2)"), -err_type_mismatch);
    EXPECT_EQ(fe.take(), report(R"("12" + 2)", 5, "Type mismatch."));
    EXPECT_EQ(eval(R"("abc" * 2)"), -err_operands_must_be_numbers);
    EXPECT_EQ(fe.take(), report(R"("abc" * 2)", 0, "Could not convert number.") +
                             report(R"("abc" * 2)", 6, "Both items must be numbers for ^, *, /, %, + or -."));
    EXPECT_EQ(text_of(R"("ab" + "" + "cd")"), "abcd");
    const std::string s200 = "\"" + std::string(200, 'x') + "\"";
    EXPECT_EQ(text_of(s200 + " + " + s200).size(), 255u);
}

TEST_F(Evaluator, Comparisons) {
    EXPECT_EQ(value_of("1 < 2 < 3"), 1);
    EXPECT_EQ(value_of("3 > 2 > 1"), 0);
    EXPECT_EQ(value_of("2 <= 2"), 1);
    EXPECT_EQ(value_of("2 <> 2"), 0);
    EXPECT_EQ(value_of("1 + 1 = 2"), 1);
    EXPECT_EQ(value_of(R"("abc" < "abd")"), 1);
    EXPECT_EQ(value_of(R"("a" = "A")"), 0);
    EXPECT_EQ(value_of(R"("a" >= "")"), 1);
    EXPECT_EQ(value_of("10 > 9"), 1);  // number texts compare as numbers

    EXPECT_EQ(eval(R"("a" = 1)"), -err_invalid_type_expecting_string);
    EXPECT_EQ(eval(R"(1 = "a")"), -err_type_mismatch);
    EXPECT_EQ(eval("= 1"), -err_first_item_logical_expression_cannot);
    fe.take();
    EXPECT_EQ(eval("1 <"), -err_invalid_expression);
    EXPECT_EQ(fe.take(), report("1 <", 2, "Invalid Expression."));
}

TEST_F(Evaluator, LogicalOperatorsAndTheirOrder) {
    EXPECT_EQ(value_of("not 0"), 1);
    EXPECT_EQ(value_of(R"(not "")"), 1);
    EXPECT_EQ(value_of(R"(NOT "x")"), 0);
    EXPECT_EQ(value_of("not 2 > 3"), 1);
    EXPECT_EQ(value_of("1 or 1 and 0"), 1);  // AND before OR
    EXPECT_EQ(value_of("1 eor 1 or 1"), 0);  // OR before the exclusive ors
    EXPECT_EQ(value_of("1 xor 1 eor 1"), 1);
    EXPECT_EQ(value_of("0 xor 1"), 1);

    EXPECT_EQ(eval("and 1"), -err_logical_operator_cannot_first_item);
    EXPECT_EQ(eval("1 or"), -err_logical_operator_cannot_last_item);
    EXPECT_EQ(eval("not"), -err_logical_operator_cannot_last_item);
    EXPECT_EQ(eval("not not 1"), -err_invalid_logical_expression);
    EXPECT_EQ(eval("1 and a"), kind_double);  // a new variable is 0
    EXPECT_EQ(lang.scan.result, 0);
}

TEST_F(Evaluator, StatementKeywordsEndTheExpression) {
    EXPECT_EQ(value_of("1 + 2 then print"), 3);
    EXPECT_EQ(std::string(lang.scan.position), "then print");
    Item item;
    EXPECT_EQ(get_item(item, 0), kind_statement);
    fe.take();
    EXPECT_EQ(eval("(1 to 2)"), -err_pass_get_item);
    EXPECT_EQ(fe.take(), report("(1 to 2)", 3, "Statement inside expression."));
    EXPECT_EQ(eval("3 : print"), kind_numeric_text);
    EXPECT_EQ(lang.scan.terminator, ':');
}

TEST_F(Evaluator, ManyDigitsMakeALongNumber) {
    ASSERT_EQ(eval("12345678901234567890 + 1"), kind_long);
    LongNumber expected;
    ASSERT_EQ(long_from_text("12345678901234567891", expected, false), 0);
    EXPECT_EQ(long_compare(long_state.work, expected), 0);
    EXPECT_EQ(eval("1234567890123456 + 1"), kind_double);  // 16 digits are still a double
    EXPECT_EQ(eval("12345678901234567890"), kind_numeric_text);  // alone it stays text
    EXPECT_EQ(value_of("12345678901234567890 > 1"), 1);
    EXPECT_EQ(eval("long(2) * 3"), kind_long);
    ASSERT_EQ(eval("long(2) ^ 0.5"), kind_long);
    LongNumber two, root2;
    ASSERT_EQ(long_from_text("2", two, false), 0);
    ASSERT_EQ(long_sqrt(two, root2), 0);
    EXPECT_EQ(long_compare(long_state.work, root2), 0);
    EXPECT_EQ(eval("long(-2) ^ 0.5"), -err_power_root_error_result);

    areas.long_default = true;
    ASSERT_EQ(eval("pi"), kind_long);
    double x = 0;
    ASSERT_EQ(long_to_double(long_state.work, x, false), 0);
    EXPECT_DOUBLE_EQ(x, 3.141592653589793);
    EXPECT_EQ(eval("1 + 2"), kind_long);
}

TEST_F(Evaluator, ResultPlacesAndWriteBackReferences) {
    ASSERT_EQ(eval("s$"), kind_string);
    const int s_index = find_variable("s$");
    EXPECT_EQ(lang.scan.sole_reference.word, static_cast<std::uint32_t>(s_index + 1));
    EXPECT_EQ(eval(R"(s$ + "")"), kind_string);
    EXPECT_TRUE(lang.scan.sole_reference.empty());
    EXPECT_EQ(eval("(s$)"), kind_string);
    EXPECT_TRUE(lang.scan.sole_reference.empty());

    const double three = 3;
    ASSERT_EQ(dimension_array("V", 1, &three, false), kind_double);
    EXPECT_EQ(eval("v"), kind_double_array);
    EXPECT_EQ(lang.scan.sole_reference.array, find_array("V"));
    EXPECT_EQ(eval("v + 1"), -err_operands_must_be_numbers);
}

TEST_F(Evaluator, CheckingADefinitionComputesNothing) {
    lang.scan.defining_function = true;
    EXPECT_EQ(value_of("x / 0 + len(q$)"), 0);
    EXPECT_EQ(text_of(R"(name$ + "!")"), "");
    EXPECT_EQ(areas.variable_count, 0u);
}

TEST_F(Evaluator, DebugListingsBeforeAndAfterEachPass) {
    lang.reporter.debug = true;
    EXPECT_EQ(value_of("1 + 2 "), 3);
    const std::string out = fe.take();
    EXPECT_NE(out.find("\nExpression: 1 + 2\n"
                       "\n3 Item(s) in Table:\n"
                       "Num String. 1 \n"
                       "Operator    + \n"
                       "Num String. 2 \n"
                       "\n3 Item(s) in Table after functions and unary - and +:\n"),
              std::string::npos)
        << out;
    EXPECT_NE(out.find("\n1 Item(s) in Table after add and subtract:\nFloat var.  " + std::string(22, ' ') + "3 \n"),
              std::string::npos)
        << out;
    EXPECT_NE(out.find("after Logical AND, OR, XOR, EOR:"), std::string::npos);

    EXPECT_EQ(value_of("len(\"ab\") * 1"), 2);
    const std::string call = fe.take();
    EXPECT_NE(call.find("\n  Expression: \"ab\"\n"), std::string::npos) << call;  // nested: indented
    EXPECT_NE(call.find("\n1 Item(s) in Parameter List for function len:\nString var. ab \n"), std::string::npos)
        << call;
}

}  // namespace
}  // namespace tl::test
