// Tests of the memory areas: allocation order and failures, variables, arrays,
// string storage, houseclean, ERASE, CLEAR and the memory report.
#include <cstring>
#include <string>

#include "exec/arrays.h"
#include "exec/memory_areas.h"
#include "exec/string_space.h"
#include "exec/variables.h"
#include "lang/error_table.h"
#include "longmath/long_space.h"
#include "test_support.h"

namespace tl::test {
namespace {

class MemoryTest : public CoreTest {
protected:
    std::uint32_t& string_var(const char* name) {
        int i = find_variable(name);
        if (i < 0) {
            EXPECT_EQ(create_variable(name, false), 3);
            i = find_variable(name);
        }
        return variable_at(i).value.word;
    }
    void assign(const char* name, const std::string& value) {
        ASSERT_EQ(store_string(&string_var(name), value, store_assign), 3) << fe.output;
    }
};

TEST_F(MemoryTest, EachAllocationFailureReportsItsMessageAndStopsThere) {
    const char* expected[] = {
        "Unable to allocate storage for Variable Table.",
        "Unable to Allocate storage for Variable Names.",
        "Unable to allocate storage for Array Table.",
        "Unable to Allocate storage for Array Names.",
        "Unable to Allocate storage for String Variables.",
        "Unable to Allocate storage for Temporary Strings",
        "Unable to allocate storage for Long Variables.",
        "Unable to allocate storage for Temporary Long Variables.",
        "Unable to allocate storage for File Table.",
        "Unable to allocate storage for Data Statement Table.",
        "Unable to allocate storage for Statement Number Table.",
    };
    const int numbers[] = {188, 1, 189, 2, 3, 4, 171, 173, 192, 190, 191};
    for (int step = 0; step < 11; ++step) {
        reset_interpreter_state();
        areas.fail_allocation = step;
        EXPECT_EQ(init_language_tables(default_sizing()), -numbers[step]);
        EXPECT_EQ(fe.take(), std::string("ERROR - ") + expected[step] + "\n") << step;
    }
    // The program buffer fails silently (error 0).
    reset_interpreter_state();
    areas.fail_allocation = 11;
    EXPECT_EQ(init_language_tables(default_sizing()), -1);
    EXPECT_EQ(fe.take(), "");
}

TEST_F(MemoryTest, ReinitialisationKeepsTheProgramBuffer) {
    std::strcpy(areas.program.get(), "10 print 1\r\n");
    areas.program_length = 12;
    ASSERT_EQ(init_memory_areas(sizes), 0);
    EXPECT_STREQ(areas.program.get(), "10 print 1\r\n");
    EXPECT_EQ(areas.program_length, 12u);
}

TEST_F(MemoryTest, VariableTypesAndCaseBlindLookup) {
    EXPECT_EQ(create_variable("Alpha", false), 2);
    EXPECT_EQ(create_variable("b$", false), 3);
    EXPECT_EQ(create_variable("c", true), 14);
    EXPECT_EQ(create_variable("d$", true), -248);
    EXPECT_EQ(find_variable("ALPHA"), 0);
    EXPECT_EQ(find_variable("B$"), 1);
    EXPECT_EQ(find_variable("b"), -1);
    areas.long_default = true;
    EXPECT_EQ(create_variable("e", false), 14);
    EXPECT_EQ(create_variable("f$", false), 3);
}

TEST_F(MemoryTest, ScanOnlyModeLearnsTheTypeWithoutStoring) {
    areas.scan_only = true;
    EXPECT_EQ(create_variable("x$", false), 3);
    EXPECT_EQ(areas.variable_count, 0u);
    EXPECT_EQ(areas.variable_names.used, 0u);
}

TEST_F(MemoryTest, VariableTableAndNameSpaceCapacity) {
    restart_with(size_num_variables, 30);
    for (int i = 0; i < 30; ++i) ASSERT_EQ(create_variable("v" + std::to_string(i), false), 2);
    EXPECT_EQ(create_variable("one_more", false), -97);
    EXPECT_NE(fe.take().find("ERROR - Variable Table is Full."), std::string::npos);

    restart_with(size_variable_name_space, 100);
    // Nine names of 10 characters use 99 bytes; the last byte is never used.
    for (int i = 0; i < 9; ++i) ASSERT_EQ(create_variable("name_____" + std::to_string(i), false), 2);
    EXPECT_EQ(areas.variable_names.used, 99u);
    EXPECT_EQ(create_variable("z", false), -96);
    EXPECT_NE(fe.take().find("ERROR - Variable Name Table is Full."), std::string::npos);
}

TEST_F(MemoryTest, ArraysRowMajorWithSubscriptsTestedBeforeTruncation) {
    const double dims[] = {10};
    ASSERT_EQ(dimension_array("a", 1, dims, false), 2);
    ArrayEntry* a = find_array("A");
    ASSERT_NE(a, nullptr);
    double s = 9.99;
    EXPECT_EQ(address_element(*a, 1, &s), 9);
    s = 10;
    EXPECT_EQ(address_element(*a, 1, &s), -70);
    EXPECT_EQ(fe.take(), "\na(10)\nERROR - Subscript out of range or invalid.\n");
    s = -0.5;
    EXPECT_EQ(address_element(*a, 1, &s), -70);
    fe.take();

    const double dims2[] = {3, 4};
    ASSERT_EQ(dimension_array("m$", 2, dims2, false), 3);
    ArrayEntry* m = find_array("m$");
    const double at[] = {2, 1};
    EXPECT_EQ(address_element(*m, 2, at), 2 * 4 + 1);
    EXPECT_EQ(address_element(*m, 1, at), -72);
    EXPECT_EQ(fe.take(), "\nm$(2)\nERROR - Incorrect Number of Subscripts.\n");
}

TEST_F(MemoryTest, DimensionErrors) {
    const double zero[] = {0};
    EXPECT_EQ(dimension_array("a", 1, zero, false), -92);
    const double seven[] = {1, 2, 3, 4, 5, 6, 7};
    EXPECT_EQ(dimension_array("b", 7, seven, false), -89);
    EXPECT_EQ(dimension_array("c", 0, seven, false), -90);
    ASSERT_EQ(create_variable("v", false), 2);
    const double one[] = {1};
    EXPECT_EQ(dimension_array("V", 1, one, false), -270);
    EXPECT_EQ(dimension_array("l$", 1, one, true), -248);
    const double huge[] = {1e9, 1e9};
    EXPECT_EQ(dimension_array("big", 2, huge, false), -93);
    // None of the failures counted an array; their names stay consumed.
    EXPECT_EQ(areas.array_count, 0u);
    EXPECT_GT(areas.array_names.used, 0u);
}

TEST_F(MemoryTest, ArrayTableCapacity) {
    restart_with(size_number_of_arrays, 20);
    const double one[] = {1};
    for (int i = 0; i < 20; ++i) ASSERT_EQ(dimension_array("a" + std::to_string(i), 1, one, false), 2);
    EXPECT_EQ(dimension_array("x", 1, one, false), -163);
    EXPECT_NE(fe.take().find("ERROR - Array Table is full."), std::string::npos);
}

TEST_F(MemoryTest, EraseMatchesLetterCaseAndAllowsDimAgain) {
    const double dims[] = {5};
    ASSERT_EQ(dimension_array("Arr", 1, dims, false), 2);
    ASSERT_EQ(dimension_array("other", 1, dims, false), 2);
    erase_array("arr");
    EXPECT_EQ(areas.array_count, 2u);
    const std::uint32_t used = areas.array_names.used;
    erase_array("Arr");
    EXPECT_EQ(areas.array_count, 1u);
    EXPECT_EQ(find_array("arr"), nullptr);
    EXPECT_NE(find_array("other"), nullptr);
    EXPECT_EQ(areas.array_names.used, used);
    EXPECT_EQ(dimension_array("Arr", 1, dims, false), 2);
    erase_array("nothing");
    EXPECT_EQ(fe.take(), "");
}

TEST_F(MemoryTest, StoreStringReusesOrMoves) {
    assign("s$", "hello");
    const std::uint32_t first = string_var("s$");
    assign("s$", "hi");
    EXPECT_EQ(string_var("s$"), first);
    EXPECT_STREQ(string_at(first), "hi");
    assign("s$", "a longer value");
    EXPECT_NE(string_var("s$"), first);
    EXPECT_STREQ(string_at(string_var("s$")), "a longer value");
    assign("s$", "");
    EXPECT_EQ(string_var("s$"), 0u);
    assign("t$", std::string(300, 'x'));
    EXPECT_EQ(std::strlen(string_at(string_var("t$"))), 255u);
}

TEST_F(MemoryTest, LsetAndRsetKeepLengthAndPlace) {
    assign("f$", "12345");
    std::uint32_t& f = string_var("f$");
    const std::uint32_t place = f;
    ASSERT_EQ(store_string(&f, "abc", store_lset), 3);
    EXPECT_STREQ(string_at(f), "abc  ");
    ASSERT_EQ(store_string(&f, "abc", store_rset), 3);
    EXPECT_STREQ(string_at(f), "  abc");
    ASSERT_EQ(store_string(&f, "abcdefg", store_lset), 3);
    EXPECT_STREQ(string_at(f), "abcde");
    EXPECT_EQ(f, place);
    std::uint32_t& e = string_var("e$");
    ASSERT_EQ(store_string(&e, "abc", store_rset), 3);
    EXPECT_EQ(e, 0u);
}

TEST_F(MemoryTest, HousecleanKeepsTableOrderAndReclaimsDeadText) {
    restart_with(size_string_space, 1000);
    assign("b$", "bbbb");
    assign("a$", "aaaa");
    const double dims[] = {2};
    ASSERT_EQ(dimension_array("arr$", 1, dims, false), 3);
    ArrayEntry* arr = find_array("arr$");
    ASSERT_EQ(store_string(&arr->words()[1], "element", store_assign), 3);
    assign("b$", "bbbbbbbbbb");  // moves; the old text is dead
    ASSERT_EQ(houseclean(false), 0);
    // Variables first in table order (b$, a$), then array elements.
    EXPECT_EQ(string_var("b$"), 1u);
    EXPECT_EQ(string_var("a$"), 12u);
    EXPECT_EQ(arr->words()[1], 17u);
    EXPECT_STREQ(string_at(arr->words()[1]), "element");
    EXPECT_EQ(areas.strings.used, 25u);
}

TEST_F(MemoryTest, FullStringSpaceTriggersHousecleanThenFails) {
    restart_with(size_string_space, 1000);
    // Fill the space with text that is abandoned at once.
    for (int i = 0; i < 20; ++i) assign("x$", std::string(40 + i, 'a' + i % 26));
    assign("y$", std::string(200, 'y'));
    EXPECT_STREQ(string_at(string_var("y$")), std::string(200, 'y').c_str());
    EXPECT_EQ(fe.take(), "");
    // Live text filling the space.
    for (int i = 0; i < 2; ++i) assign(("z" + std::to_string(i) + "$").c_str(), std::string(250, 'z'));
    std::uint32_t& last = string_var("w$");
    EXPECT_EQ(store_string(&last, std::string(250, 'w'), store_assign), -109);
    EXPECT_NE(fe.take().find("ERROR - No more string space."), std::string::npos);
    EXPECT_STREQ(string_at(string_var("y$")), std::string(200, 'y').c_str());
}

TEST_F(MemoryTest, TemporaryStringsByMarkWithHighWater) {
    const std::uint32_t mark = temp_string_mark();
    EXPECT_EQ(mark, 1u);
    EXPECT_EQ(new_temp_string(""), 0);
    const auto a = new_temp_string("abc");
    EXPECT_EQ(a, 1);
    EXPECT_STREQ(temp_string_at(static_cast<std::uint32_t>(a)), "abc");
    release_temp_strings(mark);
    EXPECT_EQ(areas.temp_strings.used, 1u);
    EXPECT_EQ(areas.temp_high_water, 5u);
    // Exactly full, then one byte too many.
    std::string part(250, 'q');
    std::int64_t r = 0;
    while (areas.temp_strings.used + 251 <= areas.temp_strings.size) r = new_temp_string(part);
    EXPECT_GT(r, 0);
    const std::uint32_t left = areas.temp_strings.size - areas.temp_strings.used;
    EXPECT_GT(new_temp_string(std::string(left - 1, 'r')), 0);
    EXPECT_EQ(new_temp_string("s"), -14);
    EXPECT_NE(fe.take().find("No more space for temporary strings."), std::string::npos);
}

TEST_F(MemoryTest, ClearAndTheMemoryReport) {
    assign("a$", "text");
    ASSERT_EQ(create_variable("n", true), 14);
    const double dims[] = {4};
    ASSERT_EQ(dimension_array("q", 1, dims, true), 14);
    ArrayEntry* q = find_array("q");
    const auto ref = new_long_variable();
    ASSERT_GT(ref, 0);
    q->words()[2] = static_cast<std::uint32_t>(ref);
    clear_memory();
    fe.take();
    print_memory_report();
    EXPECT_EQ(fe.take(),
              "Variables         Used:      0, max:     200\n"
              "Var.  Name  Space Used:      0, max:    2000\n"
              "Arrays            Used:      0, max:      50\n"
              "Array Name  Space Used:      0, max:    1000\n"
              "String      Space Used:      1, max:   65536\n"
              "Temp String Space Used:      1, max:    8192\n"
              "Next Temp String offset:     1  (should be 1) \n"
              "Long Number Space Used:      0, max:   30000\n"
              "Temp Long # Space Used:      0, max:    6000\n"
              "Next Temp Long# Offset:      0  (should be 0) \n"
              "Files used            :      0, max:       5\n"
              "Files currently open  :      0\n"
              "Statement Numbers Used:      0, max:    1000\n"
              "Data Statements Used  :      0, max:     500\n"
              "Program Space     Used:      0, max:   65536\n");
}

TEST_F(MemoryTest, LongSpaceRoundsDownAndFillsUp) {
    restart_with(size_long_number_space, 9100);  // 30 slots of 300 bytes
    EXPECT_EQ(long_space_size_bytes(), 9000u);
    for (int i = 0; i < 30; ++i) ASSERT_GT(new_long_variable(), 0);
    EXPECT_EQ(new_long_variable(), -174);
    EXPECT_NE(fe.take().find("Not enough storage for long number structures."), std::string::npos);
    clear_long_space();
    EXPECT_EQ(long_space_used_bytes(), 0u);
}

TEST_F(MemoryTest, HousecleanCompactsLongVariablesAndTrims) {
    ASSERT_EQ(create_variable("x", true), 14);
    ASSERT_EQ(create_variable("y", true), 14);
    const auto garbage = new_long_variable();
    const auto rx = new_long_variable();
    const auto ry = new_long_variable();
    ASSERT_GT(garbage, 0);
    variable_at(0).value.word = static_cast<std::uint32_t>(rx);
    variable_at(1).value.word = static_cast<std::uint32_t>(ry);
    long_at(static_cast<std::uint32_t>(ry)).exp = 42;
    free_long_variable(static_cast<std::uint32_t>(garbage));
    EXPECT_EQ(long_space_used_bytes(), 900u);
    ASSERT_EQ(houseclean(false), 0);
    EXPECT_EQ(variable_at(0).value.word, 1u);
    EXPECT_EQ(variable_at(1).value.word, 2u);
    EXPECT_EQ(long_at(2).exp, 42);
    EXPECT_EQ(long_space_used_bytes(), 600u);
}

}  // namespace
}  // namespace tl::test
