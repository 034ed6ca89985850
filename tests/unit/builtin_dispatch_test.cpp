// Tests of builtin-function dispatch (missing lists, dummies, counts, types)
// and of the functions written so far.
#include <string>

#include "exec/arrays.h"
#include "exec/string_space.h"
#include "lang/builtin_functions.h"
#include "lang/error_table.h"
#include "lang/keyword_tables.h"
#include "longmath/long_convert.h"
#include "longmath/long_state.h"
#include "scan_test_support.h"

namespace tl::test {
namespace {

using Builtins = ScanTest;

TEST_F(Builtins, MissingParameterListAndSlotRange) {
    on("x");
    EXPECT_EQ(do_function(fn_len, nullptr, 0, false), -err_missing_parameter_list_function_subscripts);
    EXPECT_NE(fe.take().find("ERROR - Missing parameter list for function or subscripts for array."), std::string::npos);
    for (int slot : {fn_placeholder_41, fn_formatdatetime_s, fn_makedatetime}) {
        EXPECT_NE(do_function(slot, nullptr, 0, false), -err_missing_parameter_list_function_subscripts) << slot;
    }
    fe.take();
    EXPECT_EQ(do_function(fn_count, nullptr, 0, true), -1);
    EXPECT_EQ(do_special_function(sfn_count), -1);
    EXPECT_EQ(fe.take(), "");
}

TEST_F(Builtins, DummyResultsWhileADefinitionIsChecked) {
    lang.scan.defining_function = true;
    on("x");
    EXPECT_EQ(do_function(fn_left_s, nullptr, 0, true), kind_string);
    EXPECT_STREQ(lang.scan.buffer, "");
    EXPECT_EQ(do_function(fn_long, nullptr, 0, true), kind_long);
    EXPECT_EQ(do_function(fn_atn, nullptr, 0, true), kind_double);  // even when not written yet
    EXPECT_EQ(do_special_function(sfn_inkey_s), kind_string);
    EXPECT_EQ(fe.take(), "");
}

TEST_F(Builtins, StatementFormsAnswerClearly) {
    fe.take();
    EXPECT_EQ(eval("1 + expanddatetime(1)"), -err_pass_get_item);
    EXPECT_EQ(fe.take(), report("1 + expanddatetime(1)", 4, "Invalid function call."));
}

TEST_F(Builtins, CountAndTypeChecks) {
    fe.take();
    EXPECT_EQ(eval(R"(len("a", "b"))"), -err_pass_get_item);
    EXPECT_EQ(fe.take(), report(R"(len("a", "b"))", 0, "Incorrect number of parameters."));
    EXPECT_EQ(eval(R"(mid$("abc"))"), -err_pass_get_item);
    EXPECT_EQ(eval("2 * len(5)"), -err_pass_get_item);
    EXPECT_EQ(fe.take(), report(R"(mid$("abc"))", 0, "Incorrect number of parameters.") +
                             report("2 * len(5)", 8, "Invalid type - expecting a string."));
    EXPECT_EQ(eval(R"(sqr( "16"))"), -err_pass_get_item);
    EXPECT_EQ(fe.take(), report(R"(sqr( "16"))", 5, "Invalid type - expecting a number"));
    EXPECT_EQ(eval(R"(left$("abc", "x"))"), -err_pass_get_item);
}

TEST_F(Builtins, NumericFunctions) {
    EXPECT_EQ(value_of("sqr(16)"), 4);  // number text converted to a double
    EXPECT_EQ(value_of("abs(-3) * 1"), 3);
    EXPECT_EQ(value_of("abs(2 - 5)"), 3);
    EXPECT_EQ(value_of("sgn(-2) + sgn(0) * 10 + sgn(long(7)) * 100"), 99);
    EXPECT_EQ(value_of("fix(-2.7)"), -2);
    EXPECT_EQ(value_of("int(-2.7)"), -3);
    EXPECT_EQ(value_of("int(2.7)"), 2);
    EXPECT_EQ(eval("sqr(-1)"), -err_pass_get_item);
    EXPECT_NE(fe.take().find("Can't take square root of negative number."), std::string::npos);

    EXPECT_EQ(eval("abs(-12345678901234567890)"), kind_numeric_text);  // text stays text
    EXPECT_STREQ(lang.scan.buffer, "12345678901234567890");
    EXPECT_DOUBLE_EQ(value_of("short(12345678901234567890)"), 12345678901234567890.0);
    ASSERT_EQ(eval("long(\"2.5\")"), kind_long);
    double x = 0;
    ASSERT_EQ(long_to_double(long_state.work, x, false), 0);
    EXPECT_EQ(x, 2.5);
    for (const char* text : {"fix(long(-2.7))", "int(long(-2.7))", "int(long(5))"}) {
        ASSERT_EQ(eval(text), kind_long) << text;
        ASSERT_EQ(long_to_double(long_state.work, x, false), 0);
        EXPECT_EQ(x, text[1] == 'i' ? -2 : (text[9] == '5' ? 5 : -3)) << text;
    }

    EXPECT_EQ(eval("tab(5)"), -err_pass_get_item);
    EXPECT_NE(fe.take().find("TAB function only valid in PRINT statement."), std::string::npos);
    lang.scan.in_print = true;
    EXPECT_EQ(value_of("tab(5)"), 5);
}

TEST_F(Builtins, StringFunctions) {
    EXPECT_EQ(text_of("chr$(65) + chr$(66.9)"), "AB");
    EXPECT_EQ(text_of(R"(left$("hello", 2))"), "he");
    EXPECT_EQ(text_of(R"(left$("hi", 99))"), "hi");
    EXPECT_EQ(text_of(R"(right$("hello", 3))"), "llo");
    EXPECT_EQ(text_of(R"(mid$("hello", 2, 3))"), "ell");
    EXPECT_EQ(text_of(R"(mid$("hello", 2))"), "ello");
    EXPECT_EQ(text_of(R"(mid$("hello", 9))"), "");
    EXPECT_EQ(value_of(R"(len("abc") + asc("A"))"), 68);
    EXPECT_EQ(value_of(R"(val("  -12.5e1xyz"))"), -125);
    EXPECT_EQ(value_of(R"(val("abc"))"), 0);
    EXPECT_EQ(eval(R"(val("123456789012345678901"))"), kind_numeric_text);
    EXPECT_STREQ(lang.scan.buffer, "123456789012345678901");

    const struct {
        const char* text;
        const char* message;
    } refused[] = {{"chr$(256)", "Parameter out of Range"},
                   {R"(left$("abc", -1))", "LEFT$/RIGHT$ - length can't be negative."},
                   {R"(right$("abc", -1))", "LEFT$/RIGHT$ - length can't be negative."},
                   {R"(mid$("abc", 0))", "MID$ - invalid start position."},
                   {R"(mid$("abc", 1, -1))", "MID$ - Invalid length."},
                   {R"(asc(""))", "Parameter out of Range"},
                   {R"(val("1.2.3"))", "More than one decimal point in number."}};
    for (const auto& r : refused) {
        fe.take();
        EXPECT_EQ(eval(r.text), -err_pass_get_item) << r.text;
        EXPECT_NE(fe.take().find(std::string("ERROR - ") + r.message), std::string::npos) << r.text;
    }
}

TEST_F(Builtins, LenOfAStringArrayCountsEveryElement) {
    const double three = 3;
    ASSERT_EQ(dimension_array("T$", 1, &three, false), kind_string);
    ArrayEntry* t = find_array("T$");
    ASSERT_EQ(store_string(&t->words()[0], std::string(255, '9'), store_assign), kind_string);
    ASSERT_EQ(store_string(&t->words()[1], "12", store_assign), kind_string);
    EXPECT_EQ(value_of("len(t$)"), 257);
}

}  // namespace
}  // namespace tl::test
