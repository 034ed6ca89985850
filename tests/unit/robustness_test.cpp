// No input ends the interpreter: runaway recursion, huge precision, hostile
// program files. Each case must end with a message and leave a working prompt.
#include <chrono>
#include <cstring>
#include <random>
#include <string>

#include "exec/commands.h"
#include "exec/exec_state.h"
#include "exec/long_text_buffers.h"
#include "exec/memory_areas.h"
#include "exec/program_store.h"
#include "exec/run_loop.h"
#include "exec/variables.h"
#include "longmath/long_state.h"
#include "shell_test_support.h"
#include "test_support.h"

namespace tl::test {
namespace {

/// Raises the interrupt flag after a number of event pumps.
class InterruptingFrontEnd : public RecordingFrontEnd {
public:
    int interrupt_after = -1;
    int pumps = 0;
    void pump_events() override {
        ++pumps;
        if (interrupt_after >= 0 && pumps >= interrupt_after) host.flags.interrupt_requested = true;
    }
};

class RobustnessTest : public CoreTest {
protected:
    InterruptingFrontEnd front;
    ScratchDir dir;

    void SetUp() override {
        CoreTest::SetUp();
        host.front_end = &front;
    }
    /// Puts `program` into the Program Buffer and runs it as "run" does.
    int run(const std::string& program) {
        EXPECT_TRUE(replace_program_text(program));
        return run_command_line("run");
    }
    /// Writes `content` to a file and loads and runs it as `run "file"` does.
    int run_file(const std::string& content) {
        const std::string path = dir / "program.bas";
        write_file(path, content);
        return load_and_run(path.c_str(), false, false);
    }
    /// The prompt still works: a command line runs and prints.
    void expect_usable_prompt() {
        front.take();
        front.interrupt_after = -1;
        EXPECT_EQ(run_command_line("print \"o\" + \"k\""), 0);
        EXPECT_EQ(front.take(), "ok\n");
        EXPECT_EQ(exec.block.block_type, block_none);
        EXPECT_FALSE(exec.skip);
    }
    static bool contains(const std::string& text, const char* part) { return text.find(part) != std::string::npos; }
};

constexpr const char* nesting_message = "Nesting too deep: too many GOSUB, FOR, WHILE or function calls are open.";

TEST_F(RobustnessTest, EndlessGosubRecursionEndsWithTheNestingMessage) {
    EXPECT_LT(run("10 n = n + 1: gosub 10\r\n"), 0);
    const std::string out = front.take();
    EXPECT_TRUE(contains(out, nesting_message)) << out.substr(0, 500);
    // Many levels were open before the guard stopped it.
    EXPECT_GT(variable_at(find_variable("n")).value.number, 1000.0);
    expect_usable_prompt();
    // The same program again: the guard still works after the unwinding.
    EXPECT_LT(run_command_line("run"), 0);
    EXPECT_TRUE(contains(front.take(), nesting_message));
    expect_usable_prompt();
}

TEST_F(RobustnessTest, LoopsOpenedThroughRecursionEndWithAMessage) {
    // Each level keeps a FOR or WHILE open; whichever runs out first (the
    // stack or the temporary space of the FOR limits) ends it with a message.
    for (const char* program : {"10 while 1\r\ngosub 10\r\nwend\r\n", "10 for i = 1 to 2: gosub 10: next\r\n",
                                "10 for i = 1 to 2\r\nwhile 1\r\ngosub 10\r\nwend\r\nnext\r\n"}) {
        EXPECT_LT(run(program), 0) << program;
        const std::string out = front.take();
        EXPECT_TRUE(contains(out, nesting_message) || contains(out, "ERROR - No more space for temporary strings."))
            << program << out.substr(0, 800);
        expect_usable_prompt();
    }
    EXPECT_LT(run("10 while 1\r\ngosub 10\r\nwend\r\n"), 0);
    EXPECT_TRUE(contains(front.take(), nesting_message));
}

TEST_F(RobustnessTest, SelfCallingUserFunctionEndsWithAMessage) {
    EXPECT_LT(run("def f(x) = f(x + 1)\r\nprint f(1)\r\n"), 0);
    const std::string out = front.take();
    EXPECT_TRUE(contains(out, "Nesting of User-Defined Functions too deep.") || contains(out, nesting_message))
        << out.substr(0, 500);
    expect_usable_prompt();
}

TEST_F(RobustnessTest, MultiLineFunctionRecursingThroughGosubEndsWithAMessage) {
    // Each call opens a GOSUB as well, so the native stack fills faster than
    // the count of function calls does.
    EXPECT_LT(run("def g(n)\r\ngosub 100\r\nreturn g(n + 1)\r\ndef end\r\nprint g(1)\r\nend\r\n"
                  "100 for k = 1 to 1: for j = 1 to 1: next: next: return\r\n"),
              0);
    const std::string out = front.take();
    EXPECT_TRUE(contains(out, "Nesting of User-Defined Functions too deep.") || contains(out, nesting_message))
        << out.substr(0, 500);
    expect_usable_prompt();
}

TEST_F(RobustnessTest, DeepParenthesesAndCallsInOneLine) {
    // As deep as a line allows, with the debug listing (indented by depth) on.
    std::string parens = "x = " + std::string(120, '(') + "1" + std::string(120, ')');
    ASSERT_EQ(run_command_line(parens.c_str()), 0) << front.take();
    EXPECT_EQ(variable_at(find_variable("x")).value.number, 1.0);
    std::string calls = "y = ";
    for (int i = 0; i < 40; ++i) calls += "abs(";
    calls += "-2" + std::string(40, ')');
    ASSERT_EQ(run_command_line(calls.c_str()), 0) << front.take();
    EXPECT_EQ(variable_at(find_variable("y")).value.number, 2.0);
    ASSERT_EQ(run_command_line("debug detail"), 0) << front.take();
    EXPECT_EQ(run_command_line(parens.c_str()), 0);
    ASSERT_EQ(run_command_line("debug off"), 0);
    expect_usable_prompt();
}

TEST_F(RobustnessTest, MillionDigitDivisionStopsWhenInterrupted) {
    ASSERT_EQ(run_command_line("float 1000000"), 0) << front.take();
    ASSERT_EQ(run_command_line("long a, b"), 0) << front.take();
    front.take();
    front.interrupt_after = front.pumps + 3;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_LT(run_command_line("a = 1: b = 3: a = a / b: b = a * a"), 0);
    const auto seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    const std::string out = front.take();
    EXPECT_TRUE(contains(out, "User interrupted program")) << out;
    EXPECT_LT(seconds, 20.0);
    EXPECT_EQ(long_state.mode.precision, 1000000);
    EXPECT_FALSE(host.flags.interrupt_requested.load());
    expect_usable_prompt();
}

TEST_F(RobustnessTest, ProgramFilesOfRandomBytesAreRefusedOrRun) {
    std::mt19937 gen(20240611);
    for (int round = 0; round < 40; ++round) {
        std::string junk(static_cast<std::size_t>(gen() % 3000), '\0');
        for (char& c : junk) c = static_cast<char>(gen() & 0xff);
        exec.statement_budget = 5000;  // a line may well be a loop
        (void)run_file(junk);
        expect_usable_prompt();
        if (HasFailure()) {
            ADD_FAILURE() << "round " << round;
            return;
        }
    }
}

TEST_F(RobustnessTest, EmptyProgramFilesLoadAppendAndInclude) {
    EXPECT_LT(run_file(""), 0);  // nothing to run, but nothing breaks
    expect_usable_prompt();
    const std::string empty = dir / "empty.bas";
    write_file(empty, "");
    EXPECT_TRUE(replace_program_text(""));
    EXPECT_EQ(read_program_file(empty, read_append), 0);
    EXPECT_EQ(read_program_file(empty, read_include, 0), 0);
    EXPECT_EQ(areas.program_length, 0u);
    expect_usable_prompt();
}

TEST_F(RobustnessTest, NulBytesInAProgramFile) {
    (void)run_file(std::string("print 1\r\npr\0int 2\r\n\0\0\0\r\nprint 3\r\n", 29));
    expect_usable_prompt();
    (void)run_file(std::string(500, '\0'));
    expect_usable_prompt();
}

TEST_F(RobustnessTest, CarriageReturnOnlyLineEndsMakeOneLongLine) {
    // A file with CR alone between its lines is a single line: a short one
    // is checked as one statement line, a long one is refused as too long.
    EXPECT_LT(run_file("x = 1\rprint 5\r"), 0);
    EXPECT_TRUE(contains(front.take(), "Program has errors - can't run."));
    expect_usable_prompt();
    EXPECT_EQ(run_file("x = 1\r"), 0);
    expect_usable_prompt();
    std::string many;
    for (int i = 0; i < 100; ++i) many += "x = x + 1\r";
    EXPECT_LT(run_file(many), 0);
    EXPECT_TRUE(contains(front.take(), "Statement too long (>255)"));
    expect_usable_prompt();
}

TEST_F(RobustnessTest, TenMegabyteProgramIsRefused) {
    std::string big;
    big.reserve(10 * 1024 * 1024 + 16);
    while (big.size() < 10u * 1024 * 1024) big += "print \"0123456789012345678901234567890123456789\"\r\n";
    EXPECT_LT(run_file(big), 0);
    const std::string out = front.take();
    EXPECT_TRUE(contains(out, "Program too large for buffer.")) << out.substr(0, 300);
    EXPECT_EQ(areas.program_length, 0u);
    expect_usable_prompt();
}

TEST_F(RobustnessTest, TenThousandCharacterLinesAreRefused) {
    EXPECT_LT(run_file("print 1\r\nx$ = \"" + std::string(10000, 'a') + "\"\r\n"), 0);
    EXPECT_TRUE(contains(front.take(), "Statement too long (>255)"));
    expect_usable_prompt();
    EXPECT_LT(run_file(std::string(10000, '(') + "\n"), 0);
    expect_usable_prompt();
    // At the prompt the same line is refused as well.
    const std::string line = "print \"" + std::string(10000, 'b') + "\"";
    EXPECT_LT(run_command_line(line.c_str()), 0);
    expect_usable_prompt();
}

TEST_F(RobustnessTest, LongWhileLoopsDoNotFillTheTemporarySpaces) {
    // Each test of the condition makes temporaries (a constant's text, a
    // string, a long number); 20,000 tests are far more than the spaces hold.
    EXPECT_EQ(run("long a\r\n"
                  "while 1\r\n  i = i + 1\r\n  if i >= 20000 then break\r\nwend\r\n"
                  "while j < 20000 and \"abc\" < \"abd\"\r\n  j = j + 1\r\nwend\r\n"
                  "while a < 20000\r\n  a = a + 1\r\nwend\r\n"
                  "print \"done\"\r\n"),
              0)
        << front.output.substr(0, 800);
    EXPECT_TRUE(contains(front.take(), "done"));
    EXPECT_EQ(variable_at(find_variable("i")).value.number, 20000.0);
    EXPECT_EQ(variable_at(find_variable("j")).value.number, 20000.0);
    expect_usable_prompt();
}

TEST_F(RobustnessTest, StatementBudgetEndsAnEndlessLoopLikeAnInterruption) {
    exec.statement_budget = 1000;
    EXPECT_LT(run("10 x = x + 1: goto 10\r\n"), 0);
    EXPECT_TRUE(contains(front.take(), "User interrupted program"));
    const double x = variable_at(find_variable("x")).value.number;
    EXPECT_GT(x, 300.0);
    EXPECT_LT(x, 1000.0);
    expect_usable_prompt();
}

TEST_F(RobustnessTest, ResetReturnsTheRunStateToItsStart) {
    exec.statement_budget = 7;
    exec.trace = true;
    exec.data_entry = 3;
    exec.program_file[0] = 'x';
    long_text_buffers.print.assign(100, 'z');
    reset_interpreter_state();
    EXPECT_EQ(exec.statement_budget, 0u);
    EXPECT_FALSE(exec.trace);
    EXPECT_EQ(exec.data_entry, 0u);
    EXPECT_EQ(exec.program_file[0], 0);
    EXPECT_TRUE(long_text_buffers.print.empty());
    EXPECT_TRUE(exec.program_has_errors);
    host.front_end = &front;
    ASSERT_EQ(init_language_tables(sizes), 0);
}

}  // namespace
}  // namespace tl::test
