// Random programs whose statements are often passed over (untaken IF and ELSE
// branches, FOR loops run zero times, WHILE 0, the rest of a body after BREAK),
// run with the look-up caches and expression plans on and off: everything
// printed must be the same. Passed over, an expression is not computed and
// its values are not judged, whichever way it is evaluated.
#include <random>
#include <string>

#include "exec/exec_state.h"
#include "exec/program_store.h"
#include "exec/run_loop.h"
#include "test_support.h"

namespace tl::test {
namespace {

class SkipModeDifferentialTest : public CoreTest {
protected:
    std::string run_with(const std::string& program, bool caches) {
        start();
        exec.caches_enabled = caches;
        EXPECT_TRUE(replace_program_text(program));
        (void)run_command_line("run");
        exec.caches_enabled = true;
        return fe.take();
    }
};

struct Generator {
    std::mt19937 rng;
    int pick(int n) { return static_cast<int>(rng() % static_cast<unsigned>(n)); }

    std::string operand() {
        static const char* const leaves[] = {"x", "y", "z", "-x", "3", "0", "2.5", "sgn(x)", "abs(y)", "int(z)",
                                             "len(a$)", "val(a$)", "a(1)", "a(k)", "1e300", "(x - y)"};
        return leaves[pick(sizeof leaves / sizeof leaves[0])];
    }
    std::string expression() {
        static const char* const ops[] = {" + ", " - ", " * ", " / ", " ^ ", " % ", " < ", " = ", " <> ", " and "};
        std::string e = operand();
        for (int n = pick(4); n > 0; --n) e += ops[pick(sizeof ops / sizeof ops[0])] + operand();
        return e;
    }
    std::string condition() {
        static const char* const conditions[] = {"0", "1", "x > 100", "x < y", "k = 2", "a$ = \"\"", "y"};
        return conditions[pick(sizeof conditions / sizeof conditions[0])];
    }
    /// A statement that may err or wait when it runs; it is only ever passed over.
    std::string risky() {
        static const char* const risky[] = {"color sgn(x) * 300", "color x * 100", "delay -x",        "help y - 20",  "x = 1 / 0",
                                            "a(99) = 1",      "print a$ * 2",    "on x - 9 goto 10",
                                            "printall a$",    "z = 1e300 * 1e300", "print chr$(x - 9)",
                                            "dim a(3)",       "y = mid$(\"ab\", x - 9)"};
        return risky[pick(sizeof risky / sizeof risky[0])];
    }
    std::string statement() {
        switch (pick(6)) {
            case 0: return "x = " + expression();
            case 1: return "y = " + expression();
            case 2: return "print " + expression() + (pick(2) ? ";" : "");
            case 3: return "print \"s\";";
            case 4: return "k = k + 1";
            default: return "a$ = str$(" + expression() + ")";
        }
    }
    std::string line() {
        switch (pick(7)) {
            case 0: return "if " + condition() + " then " + statement() + " else " + statement();
            case 1: return "if 0 then " + risky() + ": " + statement();
            case 2: return "for i = 1 to 0: " + risky() + ": " + statement() + ": next";
            case 3: return "while 0: " + risky() + ": wend";
            case 4: return "for i = 1 to 2: " + statement() + ": break: " + risky() + ": next";
            case 5: return "if " + condition() + " then print \"t\"; else " + statement();
            default: return statement();
        }
    }
    std::string program() {
        std::string p = "dim a(3): a(1) = 4: x = 1: y = 2: z = 3: k = 1: a$ = \"7\"\r\n";
        for (int n = 3 + pick(8); n > 0; --n) p += line() + "\r\n";
        return p + "print: print x; y; z; k; a$\r\n10 end\r\n";
    }
};

TEST_F(SkipModeDifferentialTest, CachesOnAndOffPrintTheSame) {
    Generator g{std::mt19937(20261124)};
    for (int round = 0; round < 400; ++round) {
        const std::string program = g.program();
        const std::string with = run_with(program, true);
        const std::string without = run_with(program, false);
        ASSERT_EQ(with, without) << program;
    }
}

TEST_F(SkipModeDifferentialTest, RiskyStatementsPassedOverNeverErr) {
    Generator g{std::mt19937(7)};
    for (int round = 0; round < 200; ++round) {
        const std::string program = "x = 1: y = 2: a$ = \"q\": dim a(3)\r\nfor j = 1 to 3\r\nif j > 5 then " + g.risky() +
                                    "\r\nfor i = 1 to 0: " + g.risky() + ": next\r\nnext\r\nprint \"done\"\r\n10 end\r\n";
        for (const bool caches : {true, false}) {
            const std::string out = run_with(program, caches);
            ASSERT_EQ(out.find("ERROR"), std::string::npos) << program << out;
            ASSERT_NE(out.find("done"), std::string::npos) << program << out;
        }
    }
}

}  // namespace
}  // namespace tl::test
