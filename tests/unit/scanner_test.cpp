// Tests of the Item scanner: names, constants, shorthands, look-up order,
// variables and arrays, parameter lists, declaration context, DEF hooks.
#include <string>

#include "exec/arrays.h"
#include "exec/memory_areas.h"
#include "exec/string_space.h"
#include "exec/variables.h"
#include "lang/error_table.h"
#include "lang/keyword_tables.h"
#include "lang/user_functions.h"
#include "scan_test_support.h"

namespace tl::test {
namespace {

using Scanner = ScanTest;

TEST_F(Scanner, NamesUpToSixtyCharactersAndCaseBlind) {
    Item item;
    const std::string sixty(60, 'a');
    EXPECT_EQ(scan(sixty, item), kind_double);
    EXPECT_EQ(find_variable(std::string(60, 'A')), 0);
    EXPECT_EQ(scan(sixty + "b = 1", item), -err_name_too_long);
    EXPECT_EQ(fe.take(), report(sixty + "b = 1", 0, "Name may not be longer than 60 characters."));

    EXPECT_EQ(scan("Count", item), kind_double);
    variable_at(find_variable("count")).value.number = 7;
    EXPECT_EQ(scan("COUNT", item), kind_double);
    EXPECT_EQ(item.number, 7);
    for (const char* word : {"PRINT", "Print", "print"}) {
        EXPECT_EQ(scan(word, item, scan_statement_position), kind_statement);
        EXPECT_EQ(item.word, static_cast<std::uint32_t>(stmt_print));
    }
}

TEST_F(Scanner, NumberConstantsStayTextAsWritten) {
    Item item;
    EXPECT_EQ(scan("  1E-5 ", item), kind_numeric_text);
    EXPECT_STREQ(lang.scan.buffer, "1E-5");
    EXPECT_EQ(item.column, 2);
    EXPECT_EQ(get_item(item, 0), 0);
    EXPECT_EQ(scan("007.50e+3", item, scan_statement_position), scan_number_constant);
    EXPECT_EQ(item.kind, static_cast<std::uint32_t>(kind_numeric_text));
    EXPECT_STREQ(lang.scan.buffer, "007.50e+3");
    EXPECT_EQ(scan(".5", item), kind_numeric_text);
}

TEST_F(Scanner, MalformedNumbersPointAtTheOffendingCharacter) {
    Item item;
    EXPECT_EQ(scan("x = 1.2.3", item), kind_double);  // x
    EXPECT_EQ(get_item(item, 0), kind_comparison);
    fe.take();
    EXPECT_EQ(get_item(item, 0), -err_more_than_one_decimal_point);
    EXPECT_EQ(fe.take(), report("x = 1.2.3", 7, "More than one decimal point in number."));
    EXPECT_EQ(scan(". + 1", item), -err_number_only_decimal_point);
    fe.take();
    EXPECT_EQ(scan("1e", item), -err_invalid_number_format);
    EXPECT_EQ(fe.take(), report("1e", 2, "Invalid format for number initializer."));
    EXPECT_EQ(scan("1e+", item), -err_invalid_number_format);
    EXPECT_EQ(scan("2E+x", item), -err_invalid_number_format);
    EXPECT_EQ(scan(std::string(254, '1'), item), kind_numeric_text);
    EXPECT_EQ(scan(std::string(255, '1'), item), -err_number_too_many_characters);
}

TEST_F(Scanner, StringConstantsAndBackslashes) {
    Item item;
    EXPECT_EQ(scan(R"("a\"b\\c\qd")", item), kind_string);
    EXPECT_STREQ(lang.scan.buffer, "a\"b\\cqd");
    EXPECT_EQ(scan(R"("\r\n\+\-")", item), kind_string);
    EXPECT_STREQ(lang.scan.buffer, "\r\n\x0f\x0e");
    EXPECT_EQ(scan(R"("a:b" : 1)", item, scan_statement_position), scan_string_constant);
    EXPECT_STREQ(lang.scan.buffer, "a:b");
    EXPECT_EQ(get_item(item, 0), 0);
    EXPECT_EQ(lang.scan.terminator, ':');

    EXPECT_EQ(scan(R"("abc)", item), -err_string_not_terminated_quote);
    EXPECT_EQ(scan(R"("abc\)", item), -err_string_not_terminated_quote);
    EXPECT_EQ(scan("\"" + std::string(254, 'x') + "\"", item), kind_string);
    EXPECT_EQ(scan("\"" + std::string(255, 'x') + "\"", item), -err_string_too_long);
}

TEST_F(Scanner, ShorthandsOperatorsAndComparisons) {
    Item item;
    EXPECT_EQ(scan("?", item), kind_statement);
    EXPECT_EQ(item.word, static_cast<std::uint32_t>(stmt_print));
    EXPECT_EQ(scan("?? x", item), kind_statement);
    EXPECT_EQ(item.word, static_cast<std::uint32_t>(stmt_debugprint));
    EXPECT_EQ(scan("// note", item), kind_statement);
    EXPECT_EQ(item.word, static_cast<std::uint32_t>(stmt_rem));
    EXPECT_EQ(scan("//", item, scan_no_shorthands), kind_operator);
    EXPECT_EQ(static_cast<char>(item.word), '/');
    EXPECT_EQ(scan("?", item, scan_no_shorthands), -err_invalid_expression);

    on("<=>=<>= < >%^");
    const int expected[] = {cmp_le, cmp_ge, cmp_ne, cmp_eq, cmp_lt, cmp_gt};
    for (int slot : expected) {
        ASSERT_EQ(get_item(item, 0), kind_comparison);
        EXPECT_EQ(item.word, static_cast<std::uint32_t>(slot));
    }
    EXPECT_EQ(get_item(item, 0), kind_operator);
    EXPECT_EQ(static_cast<char>(item.word), '%');
    EXPECT_EQ(get_item(item, 0), kind_operator);
    EXPECT_EQ(get_item(item, 0), 0);
}

TEST_F(Scanner, SharedNamesAreStatementsOnlyInStatementPosition) {
    const struct {
        const char* name;
        int statement;
        int function;
    } shared[] = {{"input", stmt_input, fn_input},       {"mid$", stmt_mid_s, fn_mid_s},
                  {"read", stmt_read, fn_read},          {"open", stmt_open, fn_open},
                  {"long", stmt_long, fn_long},          {"inputdialog", stmt_inputdialog, fn_inputdialog},
                  {"updatedialog", stmt_updatedialog, fn_updatedialog}};
    Item item;
    for (const auto& s : shared) {
        EXPECT_EQ(scan(s.name, item, scan_statement_position), kind_statement) << s.name;
        EXPECT_EQ(item.word, static_cast<std::uint32_t>(s.statement));
        EXPECT_EQ(scan(s.name, item, scan_no_calls), kind_function) << s.name;
        EXPECT_EQ(item.word, static_cast<std::uint32_t>(s.function));
    }
    EXPECT_EQ(scan("then", item), kind_statement);  // other statements stay statements
}

TEST_F(Scanner, LookupOrderOfTheTables) {
    Item item;
    EXPECT_EQ(scan("AND", item), kind_logical);
    EXPECT_EQ(scan("houseclean", item), kind_command);
    EXPECT_EQ(scan("Pi", item), kind_double);
    EXPECT_DOUBLE_EQ(item.number, 3.141592653589793);
    EXPECT_EQ(scan("pi", item, scan_statement_position), kind_predefined);
    EXPECT_EQ(scan("date$", item), kind_string);
    EXPECT_STREQ(lang.scan.buffer, "mm-dd-yyyy");
    EXPECT_EQ(scan("len", item, scan_reference_only), kind_function);
    EXPECT_EQ(scan("matherror", item), kind_double);  // a special function, called
    EXPECT_EQ(scan("inkey$", item, scan_no_calls), kind_special_function);
    EXPECT_EQ(scan("pi", item, scan_variables_only), kind_double);  // a new variable named pi
    EXPECT_EQ(find_variable("pi"), 0);
    EXPECT_EQ(areas.variable_count, 1u);
}

TEST_F(Scanner, UnknownNamesCreateVariablesUnlessOnlyReferenced) {
    Item item;
    EXPECT_EQ(scan("total", item, scan_reference_only), scan_name);
    EXPECT_EQ(scan("total", item, scan_name_only), scan_name);
    EXPECT_STREQ(scan_name_text(), "total");
    EXPECT_EQ(areas.variable_count, 0u);
    EXPECT_EQ(scan("total", item), kind_double);
    EXPECT_EQ(item.number, 0.0);
    EXPECT_EQ(scan("name$", item), kind_string);
    EXPECT_STREQ(lang.scan.buffer, "");
    EXPECT_EQ(areas.variable_count, 2u);
    EXPECT_EQ(item_reference(item).word, 2u);  // variable index + 1: writable through the reference

    areas.long_default = true;
    EXPECT_EQ(scan("big", item), kind_long);
    EXPECT_EQ(variable_at(find_variable("big")).type, static_cast<std::uint32_t>(kind_long));
    EXPECT_EQ(scan("big$", item, scan_declare_new), -err_long_name_ends_with_dollar);
}

TEST_F(Scanner, FullVariableTablesAreReported) {
    restart_with(size_num_variables, 30);
    Item item;
    for (int i = 0; i < 30; ++i) ASSERT_EQ(scan("v" + std::to_string(i), item), kind_double);
    EXPECT_EQ(scan("one_more", item), -err_variable_table_full);

    restart_with(size_variable_name_space, 100);
    for (int i = 0; i < 10; ++i) ASSERT_EQ(scan("name" + std::to_string(i) + "xxxx", item), kind_double);
    EXPECT_EQ(scan("z", item), -err_variable_name_table_full);  // 100 bytes used of 100
}

TEST_F(Scanner, ArrayElementsAndSubscripts) {
    const double ten = 10;
    ASSERT_EQ(dimension_array("A", 1, &ten, false), kind_double);
    ArrayEntry* a = find_array("a");
    a->doubles()[9] = 42;
    Item item;
    EXPECT_EQ(scan("a(9.99)", item), kind_double);
    EXPECT_EQ(item.number, 42);
    EXPECT_EQ(item.array, a);
    EXPECT_EQ(lang.scan.value_ref, &a->doubles()[9]);
    EXPECT_STREQ(scan_name_text(), "A(9)");
    EXPECT_EQ(scan("A(3 * 3)", item), kind_double);
    EXPECT_EQ(item.number, 42);

    fe.take();
    EXPECT_EQ(scan("A(-0.5)", item), -err_subscript_out_range_invalid);
    EXPECT_EQ(fe.take(), "\nA(0)\n" + report("A(-0.5)", 2, "Subscript out of range or invalid."));
    EXPECT_EQ(scan("A(10)", item), -err_subscript_out_range_invalid);
    EXPECT_EQ(scan("A(1, 2)", item), -err_incorrect_number_subscripts);
    fe.take();
    EXPECT_EQ(scan(R"(A("x"))", item), -err_subscript_out_range_invalid);
    EXPECT_EQ(fe.take(), report(R"(A("x"))", 2, "Subscript out of range or invalid."));
    EXPECT_EQ(scan("B(1)", item), -err_not_function_or_array);
    EXPECT_EQ(fe.take(), "\nB\n" + report("B(1)", 0, "Name is not a function or dimsioned array."));
    EXPECT_EQ(scan("B(1)", item, scan_reference_only), -1);
    EXPECT_EQ(scan("A(1)", item, scan_no_calls), -1);

    EXPECT_EQ(scan("A", item), kind_double_array);
    EXPECT_EQ(item.array, a);
    ASSERT_EQ(dimension_array("S$", 1, &ten, false), kind_string);
    ASSERT_EQ(store_string(&find_array("s$")->words()[2], "two", store_assign), kind_string);
    EXPECT_EQ(scan("s$(2)", item), kind_string);
    EXPECT_STREQ(lang.scan.buffer, "two");
    EXPECT_EQ(scan("s$", item), kind_string_array);
}

TEST_F(Scanner, ParameterListsAndTheirLimits) {
    Item params[max_parameters];
    on(R"((1, "a", x$, 2.5e3))");
    ASSERT_EQ(parse_parameter_list(params), 4);
    EXPECT_EQ(params[0].kind, static_cast<std::uint32_t>(kind_numeric_text));
    EXPECT_STREQ(item_text(params[1]), "a");
    EXPECT_TRUE(item_reference(params[1]).empty());
    EXPECT_FALSE(item_reference(params[2]).empty());  // a sole string variable can be written back
    EXPECT_EQ(params[3].column, 13);
    on("()");
    EXPECT_EQ(parse_parameter_list(params), 0);

    Item item;
    fe.take();
    EXPECT_EQ(scan("len(1,2,3,4,5,6,7,8)", item), -err_too_many_parameters);
    EXPECT_EQ(fe.take(), report("len(1,2,3,4,5,6,7,8)", 18, "Too many parameters."));
    EXPECT_EQ(scan(R"(left$("a",))", item), -err_missing_parameter);
    EXPECT_EQ(fe.take(), report(R"(left$("a",))", 10, "Missing Parameter."));
    EXPECT_EQ(scan("len 5", item), -err_parameter_list_start_left_paren);
    EXPECT_EQ(fe.take(), report("len 5", 4, "Parameter list must start with left paren."));
    EXPECT_EQ(scan("len(1", item), -err_pass_evaluate_expression);
    EXPECT_EQ(fe.take(), report("len(1", 5, "Missing right parenthesis."));
}

TEST_F(Scanner, ParenthesesAndIndirectNames) {
    Item item;
    EXPECT_EQ(scan("(1 + 2) * 3", item), kind_double);
    EXPECT_EQ(item.number, 3);
    EXPECT_EQ(get_item(item, 0), kind_operator);
    EXPECT_EQ(scan("()", item), -err_invalid_type);
    EXPECT_EQ(scan("(1", item, scan_statement_position), -err_string_numeric_variable);
    EXPECT_EQ(scan("(1", item, scan_declaration), -err_invalid_name);

    ASSERT_EQ(scan("speed", item), kind_double);
    variable_at(0).value.number = 5;
    EXPECT_EQ(scan(R"(@("sp" + "eed") + 1)", item), kind_double);
    EXPECT_EQ(item.number, 5);
    fe.take();
    EXPECT_EQ(scan("@(3)", item), -err_invalid_type_expecting_string);
    EXPECT_EQ(fe.take(), report("@(3)", 0, "Invalid type - expecting a string."));
    EXPECT_EQ(scan("@speed", item), -err_expect_left_parenthesis);
    EXPECT_EQ(scan(R"(@("1x"))", item), -err_invalid_name);
}

TEST_F(Scanner, DeclarationContextRefusesEverythingButNames) {
    Item item;
    const struct {
        const char* text;
        int error;
    } refused[] = {{"+", err_operator_invalid_long_dimension},
                   {"<", err_comparison_operator_invalid_long_dimension},
                   {"?", err_statement_invalid_long_dimension},
                   {"print", err_statement_invalid_long_dimension},
                   {"or", err_logical_operator_invalid_long_dimension},
                   {"run", err_command_invalid_long_dimension},
                   {"euler", err_constant_invalid_long_dimension},
                   {"sqr", err_function_invalid_long_dimension},
                   {"endtimer", err_function_invalid_long_dimension}};
    for (const auto& r : refused) EXPECT_EQ(scan(r.text, item, scan_declaration), -r.error) << r.text;

    EXPECT_EQ(scan("n(4)", item, scan_declaration), scan_name);  // a new array: DIM reads the sizes
    EXPECT_STREQ(scan_name_text(), "n");
    const double four = 4;
    ASSERT_EQ(dimension_array("n", 1, &four, false), kind_double);
    EXPECT_EQ(scan("N(4)", item, scan_declaration), -err_array_already_dimensioned);

    EXPECT_EQ(scan("k", item, scan_declare_new), kind_long);  // LONG k
    EXPECT_EQ(scan("k", item, scan_declare_new), -err_variable_already_defined);
}

TEST_F(Scanner, UserFunctionHooks) {
    Item item;
    const std::string_view args[] = {"a", "b$"};
    ASSERT_EQ(add_user_function("area", args, 2), 0);
    EXPECT_EQ(find_user_function("AREA"), 0);
    EXPECT_EQ(scan("area(1, \"x\")", item, scan_no_calls), kind_function);
    EXPECT_EQ(item.word, static_cast<std::uint32_t>(fn_placeholder_41));
    EXPECT_EQ(scan("area", item, scan_name_only), scan_name);
    fe.take();
    EXPECT_EQ(scan("area(1)", item), -err_pass_do_function);  // the call checks its arguments
    EXPECT_NE(fe.take().find("ERROR - Incorrect number of parameters."), std::string::npos);

    lang.scan.defining_function = true;  // checking a definition: names are dummies
    EXPECT_EQ(scan("a", item), kind_double);
    EXPECT_EQ(scan("zz$", item), kind_string);
    EXPECT_EQ(scan("undimensioned(3)", item), kind_double);
    EXPECT_EQ(scan(R"(@(17))", item), kind_string);  // the name is taken as "a$": a dummy string
    EXPECT_EQ(areas.variable_count, 0u);
    lang.scan.defining_function = false;

    Item values[2];
    values[0].kind = kind_double;
    values[0].number = 2.5;
    values[1].kind = kind_string;
    values[1].word = static_cast<std::uint32_t>(new_temp_string("text"));
    lang.scan.evaluating_function = true;
    lang.scan.call = FunctionCallFrame{0, values, 2};
    EXPECT_EQ(scan("A", item), kind_argument);
    EXPECT_EQ(item.number, 2.5);
    EXPECT_EQ(scan("b$", item), kind_argument);
    EXPECT_STREQ(lang.scan.buffer, "text");
    EXPECT_EQ(scan("c", item), kind_double);  // not an argument: an ordinary variable
    EXPECT_EQ(text_of("b$ + \"!\""), "text!");
    EXPECT_EQ(value_of("a * 2"), 5);
}

}  // namespace
}  // namespace tl::test
