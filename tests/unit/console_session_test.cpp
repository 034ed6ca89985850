// Tests of Console mode's terminal front end, command loop and closing prompt.
#include "shell/console_session.h"

#include <cstdio>
#include <sstream>

#include "shell/terminal_front_end.h"
#include "test_support.h"

namespace tl::test {
namespace {

/// Everything written to a temporary FILE*.
std::string contents(std::FILE* f) {
    std::string text;
    std::rewind(f);
    for (int c; (c = std::fgetc(f)) != EOF;) text.push_back(static_cast<char>(c));
    return text;
}

TEST(TerminalFrontEnd, PromptsReadsLinesAndStripsLineEnds) {
    std::FILE* out = std::tmpfile();
    ASSERT_NE(out, nullptr);
    std::istringstream in("first\r\nsecond\nlast");
    shell::TerminalFrontEnd terminal(in, out);
    std::string line;
    ASSERT_TRUE(terminal.read_line("? ", line));
    EXPECT_EQ(line, "first");
    ASSERT_TRUE(terminal.read_line("", line));
    EXPECT_EQ(line, "second");
    ASSERT_TRUE(terminal.read_line("? ", line));
    EXPECT_EQ(line, "last");
    EXPECT_FALSE(terminal.read_line("? ", line));
    terminal.write("out\n");
    EXPECT_EQ(contents(out), "? ? ? out\n");
    std::fclose(out);
}

using ConsoleSessionTest = CoreTest;

TEST_F(ConsoleSessionTest, LoopStopsAtAnEmptyLine) {
    fe.input = {"print 1", "x = 2", "", "never read"};
    shell::run_console_loop(fe);
    EXPECT_EQ(fe.take(), "Command: 1\nCommand: Result: x =                       2  ************\nCommand: ");
    EXPECT_EQ(fe.input.size(), 1U);
}

TEST_F(ConsoleSessionTest, LoopStopsAtEndOfInputOnAFreshLine) {
    fe.input = {"?"};
    shell::run_console_loop(fe);
    EXPECT_EQ(fe.take(), "Command: \nCommand: \n");
}

TEST_F(ConsoleSessionTest, ClosingPromptIsLoggedAndConsumesOneLine) {
    std::FILE* log = std::tmpfile();
    ASSERT_NE(log, nullptr);
    host.log = log;
    fe.input = {"bye", "kept"};
    shell::wait_before_exit(fe);
    host.log = nullptr;
    EXPECT_EQ(fe.take(), "Press <enter> to terminate program.\n");
    EXPECT_EQ(contents(log), "Press <enter> to terminate program.\n");
    EXPECT_EQ(fe.input.size(), 1U);
    std::fclose(log);
    shell::wait_before_exit(fe);  // and at end of input it returns too
    fe.input.clear();
    shell::wait_before_exit(fe);
}

}  // namespace
}  // namespace tl::test
