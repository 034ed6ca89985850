// Tests of keyword look-up: slot numbers, letter case, placeholder slots, first match.
#include "lang/keyword_tables.h"
#include "lang/predefined_variables.h"

#include <gtest/gtest.h>

namespace tl {
namespace {

TEST(KeywordTables, SlotsOfEachTable) {
    EXPECT_EQ(find_keyword(Table::commands, "load"), cmd_load);
    EXPECT_EQ(find_keyword(Table::functions, "select"), 56);
    EXPECT_EQ(find_keyword(Table::functions, "hexconvert"), 42);
    EXPECT_EQ(find_keyword(Table::special_functions, "choosefont$"), 12);
    EXPECT_EQ(find_keyword(Table::statements, "changeshape"), 70);
    EXPECT_EQ(find_keyword(Table::statements, "print"), stmt_print);
    EXPECT_EQ(find_keyword(Table::debug_options, "mousecheckforward"), 18);
    EXPECT_EQ(find_keyword(Table::longmath_operations, "convert"), 14);
    EXPECT_EQ(find_keyword(Table::graph_parameters, "lockscreen"), 34);
    EXPECT_EQ(find_keyword(Table::plot_parameters, "smooth"), 10);
    EXPECT_EQ(find_keyword(Table::text_parameters, "justify"), 18);
    EXPECT_EQ(find_keyword(Table::shape_parameters, "reset"), 52);
    EXPECT_EQ(find_keyword(Table::changeshape_parameters, "polycount"), 31);
    EXPECT_EQ(find_keyword(Table::comparison_operators, "<>"), cmp_ne);
    EXPECT_EQ(find_keyword(Table::logical_operators, "not"), logic_not);
}

TEST(KeywordTables, LetterCaseIsIgnoredAndNoAbbreviations) {
    EXPECT_EQ(find_keyword(Table::statements, "PRINT"), stmt_print);
    EXPECT_EQ(find_keyword(Table::statements, "PrInT"), stmt_print);
    EXPECT_EQ(find_keyword(Table::statements, "prin"), -1);
    EXPECT_EQ(find_keyword(Table::statements, "prints"), -1);
    EXPECT_EQ(find_keyword(Table::functions, "MID$"), fn_mid_s);
}

TEST(KeywordTables, PlaceholdersNeverMatch) {
    EXPECT_EQ(find_keyword(Table::functions, "****"), -1);
    EXPECT_STREQ(keyword_name(Table::functions, 41), "****");
    EXPECT_EQ(find_keyword(Table::shape_parameters, ""), -1);
    EXPECT_STREQ(keyword_name(Table::shape_parameters, 51), "");
}

TEST(KeywordTables, IndexAgreesWithFirstMatchSearch) {
    for (int t = 0; t < table_count; ++t) {
        const KeywordTable& kt = keyword_table(static_cast<Table>(t));
        for (int slot = 0; slot < kt.count; ++slot) {
            std::string name = kt.names[slot];
            if (name.empty() || name == "****") continue;
            int first = 0;
            while (std::string(kt.names[first]) != name) ++first;
            EXPECT_EQ(find_keyword(static_cast<Table>(t), name), first) << kt.title << " " << name;
        }
    }
    // The SHAPE table holds "smooth", "average", "text" ... once each; names
    // repeated across tables resolve within their own table.
    EXPECT_EQ(find_keyword(Table::statements, "input"), stmt_input);
    EXPECT_EQ(find_keyword(Table::functions, "input"), fn_input);
    EXPECT_EQ(find_keyword(Table::debug_options, "long"), dbg_long);
}

TEST(PredefinedVariables, NamesTypesAndStartValues) {
    PredefinedTable t;
    fill_predefined_variables(t);
    EXPECT_EQ(find_predefined("DefaultPrintFormat$$"), pre_defaultprintformat);
    EXPECT_EQ(find_predefined("keystate"), 13);
    EXPECT_EQ(find_predefined("key"), -1);
    EXPECT_STREQ(t[pre_defaultprintformat].text.data(), "%13.6g");
    EXPECT_STREQ(t[pre_printformatmax].text.data(), "%23.18g");
    EXPECT_STREQ(t[pre_date].text.data(), "mm-dd-yyyy");
    EXPECT_EQ(t[pre_floatingptlength].number, 50);
    EXPECT_EQ(t[pre_lastshapeid].number, -1);
    EXPECT_EQ(t[pre_dayofweek].type, 3u);
    EXPECT_DOUBLE_EQ(t[pre_pi].number, 3.141592653589793);
}

}  // namespace
}  // namespace tl
