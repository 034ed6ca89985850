// Faults of control flow and of passing over statements, each group by its
// cause: blocks that did not pass a RETURN up, a FOR holding storage that was
// taken away, statements passed over that judged values or changed state,
// NaN in conversions and comparisons, and messages shown twice.
#include <string>

#include "exec/exec_state.h"
#include "exec/program_store.h"
#include "exec/run_loop.h"
#include "exec/variables.h"
#include "test_support.h"

namespace tl::test {
namespace {

class ControlFaultsTest : public CoreTest {
protected:
    /// Runs `program` and returns everything printed.
    std::string run(const std::string& program) {
        EXPECT_TRUE(replace_program_text(program));
        (void)run_command_line("run");
        return fe.take();
    }
    std::string typed(const std::string& line) {
        (void)run_command_line(line.c_str());
        return fe.take();
    }
    static int count(const std::string& text, const std::string& part) {
        int n = 0;
        for (std::size_t p = text.find(part); p != std::string::npos; p = text.find(part, p + 1)) ++n;
        return n;
    }
};

// ---- a block's body ended by RETURN, END, BREAK or an error -------------

TEST_F(ControlFaultsTest, ReturnFromInsideLoopsOfASubroutineOrAFunction) {
    const std::string out = run(
        "dim a(5): a(3) = 42\r\n"
        "gosub 100: print \"back\"\r\n"
        "print f(42); f(7)\r\n"
        "k = 0\r\nwhile k < 3\r\nk = k + 1\r\ngosub 200\r\nwend\r\nprint \"k=\"; k\r\n"
        "gosub 300: print \"nested back\"\r\n"
        "end\r\n"
        "100 for j = 1 to 2\r\nif j = 2 then return\r\nnext\r\nprint \"not here\"\r\nreturn\r\n"
        "200 while 1: return: wend\r\nreturn\r\n"
        "300 for i = 1 to 3: while 1\r\nif i = 2 then return\r\nbreak\r\nwend: next\r\nreturn\r\n"
        "def f(n)\r\n for i = 0 to 4\r\n  if a(i) = n then return i\r\n next\r\n return -1\r\ndef end\r\n");
    EXPECT_EQ(out.find("ERROR"), std::string::npos) << out;
    EXPECT_NE(out.find("back\n"), std::string::npos) << out;
    EXPECT_EQ(out.find("not here"), std::string::npos) << out;
    EXPECT_NE(out.find("3-1"), std::string::npos) << out;
    EXPECT_NE(out.find("k=            3"), std::string::npos) << out;
    EXPECT_NE(out.find("nested back"), std::string::npos) << out;
}

TEST_F(ControlFaultsTest, EndAndErrorsInsideLoopsOfASubroutineUnwind) {
    std::string out = run("gosub 10: print \"not here\"\r\nend\r\n10 for i = 1 to 3\r\nif i = 2 then end\r\nnext\r\nreturn\r\n");
    EXPECT_EQ(out.find("ERROR"), std::string::npos) << out;
    EXPECT_EQ(out.find("not here"), std::string::npos) << out;
    out = run("gosub 10: print \"not here\"\r\nend\r\n10 while 1\r\nx = 1 / 0\r\nwend\r\nreturn\r\n");
    EXPECT_EQ(count(out, "ERROR - "), 1) << out;
    EXPECT_NE(out.find("Attempt to divide by zero."), std::string::npos) << out;
    // A subroutine's body is outside the loops around its GOSUB.
    out = run("for i = 1 to 2: gosub 10: next\r\nend\r\n10 break\r\nreturn\r\n");
    EXPECT_NE(out.find("BREAK must be inside a loop."), std::string::npos) << out;
}

// ---- the FOR control variable ------------------------------------------

TEST_F(ControlFaultsTest, AnErasedControlElementEndsTheLoopWithAMessage) {
    // Without the fix this read and wrote freed memory (caught under ASan).
    const std::string out = run("dim q(3)\r\nfor q(1) = 1 to 3\r\nerase q\r\nprint \"round\"\r\nnext\r\nprint \"after\"\r\n");
    EXPECT_EQ(count(out, "round"), 1) << out;
    EXPECT_NE(out.find("Name is not a function or dimsioned array."), std::string::npos) << out;
    EXPECT_EQ(out.find("after"), std::string::npos) << out;
    // Erased and dimensioned again: the loop counts in the new array.
    const std::string again =
        run("dim q(3)\r\nfor q(1) = 1 to 3\r\nerase q: dim q(3): q(1) = 9\r\nprint \"r\";\r\nnext\r\nprint q(1)\r\n");
    EXPECT_EQ(again.find("ERROR"), std::string::npos) << again;
    EXPECT_NE(again.find("r           10"), std::string::npos) << again;
}

TEST_F(ControlFaultsTest, APredefinedVariableIsNoControlVariable) {
    const std::string out = run("x = 7\r\nfor pi = 1 to 3: next\r\nprint x\r\n");
    EXPECT_NE(out.find("FOR control variable must be numeric."), std::string::npos) << out;
    (void)typed("x = 7");
    fe.take();
    EXPECT_NE(typed("for pi = 1 to 3: next").find("FOR control variable must be numeric."), std::string::npos);
    EXPECT_NE(typed("print x").find("7"), std::string::npos);
    EXPECT_NE(typed("for sin(1) = 1 to 3: next").find("FOR control variable must be numeric."), std::string::npos);
}

TEST_F(ControlFaultsTest, OnlyANameBehindNextIsPassedOver) {
    EXPECT_NE(run("if 0 then for i = 1 to 2: print i;: next else print \"e\"\r\n").find("e\n"), std::string::npos);
    std::string out = run("for i = 1 to 2: print \"x\";: next i: print \"after\"\r\n");
    EXPECT_NE(out.find("xxafter"), std::string::npos) << out;
    out = run("for i = 1 to 2: next i, j garbage (((\r\n");
    EXPECT_NE(out.find("Program has errors - can't run."), std::string::npos) << out;
}

TEST_F(ControlFaultsTest, ALoopAtTheVeryStartIsStillALoopForGoto) {
    std::string out = run("for i = 1 to 2\r\n10 print i\r\nnext\r\ngoto 10\r\n");
    EXPECT_NE(out.find("GOTO can't jump into or out of a loop."), std::string::npos) << out;
    out = run("while k < 1\r\n20 k = k + 1\r\nwend\r\ngosub 30\r\nend\r\n30 goto 20\r\n");
    EXPECT_NE(out.find("GOTO can't jump into or out of a loop."), std::string::npos) << out;
}

TEST_F(ControlFaultsTest, RecursionIsLimitedByTheStackOnly) {
    const std::string out = run(
        "gosub 10: print \"deepest\"; m\r\nend\r\n"
        "10 d = d + 1\r\nif d > m then m = d\r\nif d < 3000 then gosub 10\r\n"
        "on (d < 2) + 1 gosub 20, 20\r\nfor i = 1 to 1: next\r\nd = d - 1\r\nreturn\r\n20 return\r\n");
    EXPECT_NE(out.find("deepest         3000"), std::string::npos) << out;
}

// ---- passing over: syntax and types only, no values, no effects --------

TEST_F(ControlFaultsTest, APrintPassedOverLeavesTheLineAsItWas) {
    std::string out = run("for i = 1 to 3: print \"x\";: if 0 then print \"!\"\r\nnext\r\nprint\r\n");
    EXPECT_NE(out.find("xxx\n"), std::string::npos) << out;
    out = run("print \"a\";: for i = 1 to 0: print \"b\": next: print \"c\"\r\n");
    EXPECT_NE(out.find("ac\n"), std::string::npos) << out;
    out = run("print \"a\";: while 0: print \"z\": wend: print \"y\"\r\n");
    EXPECT_NE(out.find("ay\n"), std::string::npos) << out;
}

TEST_F(ControlFaultsTest, StatementsPassedOverDoNotJudgeValues) {
    const std::string out = run(
        "x = 300: d = 5: n = 0: p$ = \"memory\"\r\n"
        "if 0 then color x\r\nif 0 then delay -d\r\nif 0 then help n\r\n"
        "if n then delay d - 1.5 + 0.5\r\nif n then printall p$\r\nif n then on x - 1 goto 10\r\n"
        "if n then help n\r\n"
        "a$ = \"12\": print a$ * 2\r\n"
        "x = -1: if 0 then color sgn(x)\r\n"
        "print \"ok\"\r\n10 end\r\n");
    EXPECT_EQ(out.find("ERROR"), std::string::npos) << out;
    EXPECT_NE(out.find("24"), std::string::npos) << out;
    EXPECT_NE(out.find("ok"), std::string::npos) << out;
}

// ---- NaN ----------------------------------------------------------------

TEST_F(ControlFaultsTest, NaNIsOutOfRangeForPositionsAndCodes) {
    (void)typed("n = exp(1000) - exp(1000)");
    fe.take();
    EXPECT_NE(typed("print mid$(\"hello\", n)").find("MID$ - invalid start position."), std::string::npos);
    EXPECT_NE(typed("print chr$(n)").find("Parameter out of Range"), std::string::npos);
    EXPECT_NE(typed("print string$(n, 65)").find("Parameter out of Range"), std::string::npos);
    EXPECT_NE(typed("print left$(\"abc\", n)").find("ERROR"), std::string::npos);
}

TEST_F(ControlFaultsTest, ComparisonsWithNaNAreFalseButUnequal) {
    (void)typed("n = exp(1000) - exp(1000)");
    fe.take();
    // Each comparison twice: the second time from its plan.
    for (int i = 0; i < 2; ++i) {
        const std::string out = run(
            "n = exp(1000) - exp(1000)\r\n"
            "print n = 5; n < 5; n > 5; n <= 5\r\nprint n >= 5; n <> 5; n = n; n <> n\r\n");
        EXPECT_NE(out.find("            0            0            0            0\n"
                           "            0            1            0            1\n"),
                  std::string::npos)
            << out;
    }
}

// ---- reported once, shown once ----------------------------------------

TEST_F(ControlFaultsTest, AFailedConditionIsReportedOnce) {
    std::string out = typed("if 1/0 then print 1");
    EXPECT_EQ(count(out, "ERROR - "), 1) << out;
    out = run("while 1/0: wend\r\n");
    EXPECT_EQ(count(out, "ERROR - "), 1) << out;
    out = typed("date$ = \"x\"");
    EXPECT_EQ(count(out, "Result:"), 1) << out;
}

TEST_F(ControlFaultsTest, SmallerOnes) {
    EXPECT_NE(typed("on 255.5 goto 10").find("Invalid value for ON GOTO or ON GOSUB."), std::string::npos);
    EXPECT_NE(typed("field #1, 10 as a$").find("Statement not valid from the command line."), std::string::npos);
    EXPECT_NE(typed("load").find("Beginning Program Execution"), std::string::npos);
}

}  // namespace
}  // namespace tl::test
