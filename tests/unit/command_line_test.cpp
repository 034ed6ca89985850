// Tests of the command-line checks and the program's folder.
#include "shell/command_line.h"

#include <filesystem>

#include "shell_test_support.h"

namespace tl::test {
namespace {

using shell::check_command_line;
using shell::StartAction;

const std::string program = "/opt/tessaline/bin/tessaline";  // 28 characters

TEST(CommandLine, LengthLimitIs511Characters) {
    // program + blank + parameter = 511
    const std::vector<std::string> at_limit = {std::string(511 - program.size() - 1, 'a')};
    ASSERT_EQ(shell::command_line_length(program, at_limit), 511U);
    EXPECT_EQ(check_command_line(program, at_limit).action, StartAction::run);

    const std::vector<std::string> over = {"/c", std::string(512 - program.size() - 4, 'a')};
    ASSERT_EQ(shell::command_line_length(program, over), 512U);
    const auto refused = check_command_line(program, over);
    EXPECT_EQ(refused.action, StartAction::refuse);
    EXPECT_EQ(refused.error, "Invalid Parameters (too long)");
}

TEST(CommandLine, AtMostTenParameters) {
    std::vector<std::string> params(10, "x");
    EXPECT_EQ(check_command_line(program, params).action, StartAction::run);
    params.push_back("x");
    const auto refused = check_command_line(program, params);
    EXPECT_EQ(refused.action, StartAction::refuse);
    EXPECT_EQ(refused.error, "Invalid Parameters (too many)");
    // The length is checked first.
    params.back() = std::string(600, 'y');
    EXPECT_EQ(check_command_line(program, params).error, "Invalid Parameters (too long)");
}

TEST(CommandLine, ConsoleSwitchOnlyAsFirstParameterInAnyCase) {
    EXPECT_TRUE(check_command_line(program, {"/c"}).console_mode);
    EXPECT_TRUE(check_command_line(program, {"/C", "extra"}).console_mode);
    EXPECT_FALSE(check_command_line(program, {}).console_mode);
    EXPECT_FALSE(check_command_line(program, {"x", "/c"}).console_mode);
    EXPECT_FALSE(check_command_line(program, {"/cc"}).console_mode);
    EXPECT_FALSE(check_command_line(program, {"-c"}).console_mode);
}

TEST(CommandLine, HelpAndVersion) {
    EXPECT_EQ(check_command_line(program, {"--help"}).action, StartAction::show_help);
    EXPECT_EQ(check_command_line(program, {"/c", "--version"}).action, StartAction::show_version);
    EXPECT_EQ(check_command_line(program, {"--version", "--help"}).action, StartAction::show_help);
    EXPECT_NE(shell::usage_text().find("/c"), std::string::npos);
}

TEST(ProgramFolder, FolderOfAPath) {
    EXPECT_EQ(shell::folder_of("/opt/tessaline/bin/tessaline"), "/opt/tessaline/bin");
    EXPECT_EQ(shell::folder_of("/tessaline"), "/");
    EXPECT_EQ(shell::folder_of("tessaline"), ".");
}

TEST(ProgramFolder, ExecutablePathNamesTheRunningProgram) {
    const std::string self = shell::executable_path("ignored");
    ASSERT_FALSE(self.empty());
    EXPECT_EQ(self.front(), '/');
    EXPECT_TRUE(std::filesystem::is_regular_file(self));
}

}  // namespace
}  // namespace tl::test
