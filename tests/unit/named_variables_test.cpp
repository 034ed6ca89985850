// named_variables_test.cpp — numeric variables read and written by name.
#include "exec/arrays.h"
#include "exec/named_variables.h"
#include "exec/variables.h"
#include "test_support.h"

namespace tl::test {
namespace {

using NamedVariablesTest = CoreTest;

TEST_F(NamedVariablesTest, ReadingNeverCreates) {
    EXPECT_EQ(named_double("sincrossover1"), 0.0);
    EXPECT_EQ(named_double("t(2)"), 0.0);
    EXPECT_EQ(areas.variable_count, 0u);
    set_named_double("SinCrossover1", 24);
    EXPECT_EQ(named_double("sincrossover1"), 24.0);
    EXPECT_EQ(areas.variable_count, 1u);
    set_named_double("sincrossover1", 32);
    EXPECT_EQ(areas.variable_count, 1u);
    EXPECT_EQ(named_double("SINCROSSOVER1"), 32.0);
}

TEST_F(NamedVariablesTest, OtherTypesAreLeftAlone) {
    ASSERT_EQ(create_variable("name$", false), 3);
    set_named_double("name$", 5);
    EXPECT_EQ(named_double("name$"), 0.0);
    // In the long-default mode a created variable is still a double.
    areas.long_default = true;
    void* target = areas.assignment_target;
    set_named_double("sintotaltime", 1.5);
    EXPECT_EQ(areas.assignment_target, target);
    EXPECT_EQ(named_double("sintotaltime"), 1.5);
    EXPECT_EQ(variable_at(find_variable("sintotaltime")).type, 2u);
    // Only scanning: nothing is stored.
    areas.scan_only = true;
    set_named_double("other", 1);
    areas.scan_only = false;
    EXPECT_EQ(find_variable("other"), -1);
}

TEST_F(NamedVariablesTest, ElementsOfExistingArrays) {
    const double three = 3;
    ASSERT_EQ(dimension_array("times", 1, &three, false), 2);
    set_named_double("times(2)", 7.5);
    EXPECT_EQ(named_double("times(2)"), 7.5);
    set_named_double("times(3)", 1);  // out of range: ignored
    EXPECT_EQ(named_double("times(3)"), 0.0);
    set_named_double("nothere(0)", 1);  // no such array: nothing is created
    EXPECT_EQ(find_array("nothere"), nullptr);
    EXPECT_EQ(find_variable("nothere(0)"), -1);
}

TEST_F(NamedVariablesTest, AFullTableIsNotAnError) {
    restart_with(size_num_variables, 30);
    for (int i = 0; i < 30; ++i) ASSERT_GE(create_variable("v" + std::to_string(i), false), 0);
    fe.take();
    set_named_double("sintotaltime", 3);
    EXPECT_EQ(named_double("sintotaltime"), 0.0);
    EXPECT_EQ(fe.take(), "");
}

}  // namespace
}  // namespace tl::test
