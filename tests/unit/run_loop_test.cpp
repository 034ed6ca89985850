// Tests of the run loop that a transcript cannot reach: interruption through the
// flags, stepping with commands typed while paused, and the long-number hook.
#include <cstring>
#include <string>
#include <vector>

#include "exec/commands.h"
#include "exec/exec_state.h"
#include "exec/memory_areas.h"
#include "exec/program_store.h"
#include "exec/run_loop.h"
#include "exec/variables.h"
#include "longmath/long_arith.h"
#include "shell_test_support.h"
#include "test_support.h"

namespace tl::test {
namespace {

/// A front end that raises the interrupt flag after a number of event pumps
/// and answers stepping waits from a script.
class ScriptedFrontEnd : public RecordingFrontEnd {
public:
    int interrupt_after = -1;
    int pumps = 0;
    std::vector<std::string> step_answers;  // "" = one statement, text = command, "<eof>" = end

    void pump_events() override {
        ++pumps;
        if (interrupt_after >= 0 && pumps >= interrupt_after) host.flags.interrupt_requested = true;
    }
    int wait_for_step(std::string& command) override {
        if (step_answers.empty()) return step_end;
        command = step_answers.front();
        step_answers.erase(step_answers.begin());
        if (command == "<eof>") return step_end;
        return command.empty() ? step_run_statement : step_command;
    }
};

class RunLoopTest : public CoreTest {
protected:
    ScriptedFrontEnd scripted;

    void SetUp() override {
        CoreTest::SetUp();
        host.front_end = &scripted;
    }
    int run(const std::string& program) {
        EXPECT_TRUE(replace_program_text(program));
        return run_command_line("run");
    }
    double number(const char* name) {
        const int i = find_variable(name);
        return i < 0 ? -1.0 : variable_at(i).value.number;
    }
};

TEST_F(RunLoopTest, InterruptEndsTheProgramAtAStatementBoundary) {
    scripted.interrupt_after = 500;
    EXPECT_LT(run("for i = 1 to 1e9\r\nx = x + 1\r\nnext\r\n"), 0);
    const std::string out = scripted.take();
    EXPECT_NE(out.find("ERROR - User interrupted program"), std::string::npos) << out;
    EXPECT_GT(number("x"), 10.0);
    EXPECT_LT(number("x"), 1000.0);
    // The interpreter stays usable: the flag is cleared and a command runs.
    scripted.interrupt_after = -1;
    EXPECT_EQ(run_command_line("y = 2"), 0);
    EXPECT_EQ(number("y"), 2.0);
}

TEST_F(RunLoopTest, InterruptInsideNestedBodiesUnwindsEverything) {
    scripted.interrupt_after = 300;
    EXPECT_LT(run("gosub 100\r\nend\r\n100 while 1\r\nfor i = 1 to 3: n = n + 1: next\r\nwend\r\n"), 0);
    EXPECT_EQ(exec.block.block_type, block_none);
    EXPECT_FALSE(exec.skip);
    scripted.interrupt_after = -1;
    scripted.take();
    EXPECT_EQ(run_command_line("print 7"), 0);
    EXPECT_EQ(scripted.take(), "7\n");
}

TEST_F(RunLoopTest, StopWaitsAndCommandsRunWhilePaused) {
    scripted.step_answers = {"", "print \"paused\"; a", "x = 99", "cont"};
    EXPECT_EQ(run("a = 1\r\nstop\r\na = 2\r\nb = 3\r\nprint a; b; x\r\n"), 0);
    const std::string out = scripted.take();
    EXPECT_NE(out.find("User interrupted program at offset"), std::string::npos) << out;
    EXPECT_NE(out.find("Next statement is:\r\na = 2\n*\n"), std::string::npos) << out;
    EXPECT_NE(out.find("\nStepping...(click STEP or CONTINUE)\n"), std::string::npos);
    // The banner is printed once; the step ran "a = 2", then "print" saw it.
    EXPECT_EQ(out.find("User interrupted program at offset"), out.rfind("User interrupted program at offset"));
    EXPECT_NE(out.find("paused            2"), std::string::npos) << out;
    EXPECT_NE(out.find("            2            3           99"), std::string::npos) << out;
    EXPECT_FALSE(host.flags.step_mode.load());
}

TEST_F(RunLoopTest, LinesTypedWhilePausedInsideBlocksRunOutsideThem) {
    // Paused inside a FOR, a WHILE and a GOSUB: typed lines (loops of their
    // own, a NEXT or WEND of nothing, CONT) neither see those blocks open nor
    // close them, and the program goes on where it stood.
    scripted.step_answers = {"print \"v\"; v", "for k = 1 to 2: s = s + k: next", "cont",
                             "while w < 3: w = w + 1: wend", "print \"w\"; w", "cont",
                             "if 1 then print \"in if\"", "cont", "cont"};
    EXPECT_EQ(run("for v = 1 to 2\r\nstop\r\nn = n + 1\r\nnext\r\nj = 0\r\nwhile j < 1\r\nj = j + 1\r\nstop\r\n"
                  "wend\r\ngosub 100\r\nprint \"done\"; n; s; w\r\nend\r\n100 stop\r\nreturn\r\n"),
              0);
    const std::string out = scripted.take();
    EXPECT_EQ(out.find("ERROR"), std::string::npos) << out;
    EXPECT_NE(out.find("v            1"), std::string::npos) << out;
    EXPECT_NE(out.find("w            3"), std::string::npos) << out;
    EXPECT_NE(out.find("in if"), std::string::npos) << out;
    EXPECT_NE(out.find("done            2            3            3"), std::string::npos) << out;
    // A NEXT typed at the prompt is refused as it is at the command prompt,
    // and does not end the loop the program waits in.
    scripted.step_answers = {"next", "cont"};
    EXPECT_EQ(run("for v = 1 to 3\r\nif v = 1 then stop\r\nn = n + 1\r\nnext\r\n"), 0);
    EXPECT_EQ(number("n"), 3.0);
}

TEST_F(RunLoopTest, EndOfInputWhileSteppingEndsTheProgram) {
    scripted.step_answers = {"<eof>"};
    EXPECT_LT(run("stop\r\nprint \"never\"; 1\r\n"), 0);
    const std::string out = scripted.take();
    EXPECT_EQ(out.find("never            1"), std::string::npos) << out;
    EXPECT_FALSE(host.flags.step_mode.load());
}

TEST_F(RunLoopTest, ContinueInAForLoopPassesOverItsBodyUntilInterrupted) {
    scripted.interrupt_after = 200;
    EXPECT_LT(run("for i = 1 to 3\r\nn = n + 1\r\nif i = 2 then continue\r\nm = m + 1\r\nnext\r\n"), 0);
    EXPECT_NE(scripted.take().find("User interrupted program"), std::string::npos);
    // Rounds 1 and 2 ran; then the loop kept passing over its body without counting.
    EXPECT_EQ(number("i"), 2.0);
    EXPECT_EQ(number("n"), 2.0);
    EXPECT_EQ(number("m"), 1.0);
}

TEST_F(RunLoopTest, InterruptingAnEndlessChainReportsOnlyTheInterruption) {
    // Wherever the interruption falls (in a run or in the check of the next
    // program), it is the one report: the program has no errors.
    ScratchDir scratch;
    const std::string file = scratch / "again.bas";
    write_file(file, "x = x + 1\r\nchain \"" + file + "\"\r\n");
    const std::string command = "run \"" + file + "\"";
    for (int after = 1; after <= 40; ++after) {
        scripted.interrupt_after = after;
        scripted.pumps = 0;
        EXPECT_LT(run_command_line(command.c_str()), 0);
        const std::string out = scripted.take();
        EXPECT_NE(out.find("ERROR - User interrupted program"), std::string::npos) << after << out;
        EXPECT_EQ(out.find("can't run"), std::string::npos) << after << out;
    }
    scripted.interrupt_after = -1;
    EXPECT_EQ(run_command_line("print 7"), 0);
    EXPECT_EQ(scripted.take(), "7\n");
}

TEST_F(RunLoopTest, TheLongHookStopsALongComputation) {
    ASSERT_EQ(run_command_line("x = 1"), 0);
    scripted.interrupt_after = scripted.pumps + 1;
    // The hook is installed by the run loop; it reports the interruption.
    EXPECT_LT(poll_interruption(), 0);
    EXPECT_NE(scripted.take().find("User interrupted program"), std::string::npos);
}

TEST_F(RunLoopTest, CommandLineRunsBehindTheProgramAndGotoReachesIt) {
    ASSERT_EQ(run("10 print \"ten\"\r\n20 end\r\n"), 0);
    scripted.take();
    const std::uint32_t length = areas.program_length;
    EXPECT_EQ(run_command_line("goto 10"), 0);
    EXPECT_EQ(scripted.take(), "ten\n");
    EXPECT_EQ(areas.program_length, length);
}

}  // namespace
}  // namespace tl::test
