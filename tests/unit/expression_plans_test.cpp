// Tests of expression plans: an expression replayed from its plan must give
// the value the evaluator gives, bit for bit, and every error must still be
// the evaluator's own report. Random expressions are run with the caches on
// (plans made and replayed) and off (the text evaluated every time).
#include <cstdint>
#include <cstring>
#include <random>
#include <string>

#include "exec/arrays.h"
#include "exec/exec_state.h"
#include "exec/memory_areas.h"
#include "exec/program_store.h"
#include "exec/run_loop.h"
#include "exec/sizing_settings.h"
#include "lang/lang_state.h"
#include "test_support.h"

namespace tl::test {
namespace {

struct Outcome {
    std::string output;
    double values[3] = {};
    std::uint32_t temp_high_water = 0;
};

class ExpressionPlansTest : public CoreTest {
protected:
    void TearDown() override {
        exec.caches_enabled = true;
        CoreTest::TearDown();
    }
    /// Runs `program` on a fresh core and collects what it printed and r(0..2).
    Outcome run(const std::string& program, bool caches) {
        start();
        exec.caches_enabled = caches;
        fe.take();
        EXPECT_TRUE(replace_program_text(program));
        (void)run_command_line("run");
        Outcome o;
        o.output = fe.take();
        o.temp_high_water = areas.temp_high_water;
        if (const ArrayEntry* r = find_array("r"); r != nullptr && r->type == kind_double)
            std::memcpy(o.values, r->doubles(), sizeof o.values);
        return o;
    }
    /// Runs `program` both ways; output and values must be the same.
    void expect_same(const std::string& program) {
        const Outcome planned = run(program, true);
        replays += lang.caches.plan_replays;
        const Outcome direct = run(program, false);
        EXPECT_EQ(planned.output, direct.output) << program;
        EXPECT_EQ(planned.temp_high_water, direct.temp_high_water) << program;
        EXPECT_EQ(std::memcmp(planned.values, direct.values, sizeof planned.values), 0)
            << program << "\n" << planned.values[1] << " / " << direct.values[1];
    }
    std::uint64_t replays = 0;
};

/// Random expressions over doubles, strings, arrays, constants and every
/// operator and function the plans know, with some that they do not know and
/// some malformed ones.
class ExpressionMaker {
public:
    explicit ExpressionMaker(unsigned seed) : rng_(seed) {}
    std::string make(int depth = 0) {
        if (depth > 2 || pick(3) == 0) return leaf(depth);
        switch (pick(11)) {
            case 0: return "(" + make(depth + 1) + ")";
            case 1: return pick_of({"-", "+", "not ", "- -", "-+"}) + make(depth + 1);
            case 2: return pick_of({"int(", "abs(", "sgn(", "fix(", "sqr(", "int(", "rnd("}) + make(depth + 1) + ")";
            case 3: return pick_of({"len(", "asc(", "not "}) + text(depth + 1) + (pick(2) == 0 ? ")" : ") - 1");
            case 4:
                return "instr(" + std::string(pick(2) == 0 ? make(depth + 1) + ", " : "") + text(depth + 1) + ", " +
                       text(depth + 1) + ")";
            case 5: return text(depth + 1) + pick_of({" = ", " <> ", " < ", " >= ", " and ", " or "}) + text(depth + 1);
            default: {
                static const char* const binary[] = {" + ",  " - ",  " * ", " / ", " % ",   " ^ ",   " = ",
                                                     " <> ", " < ",  " > ", " <= ", " >= ", " and ", " or ",
                                                     " xor ", " eor ", "+",   "*-"};
                return make(depth + 1) + binary[pick(sizeof binary / sizeof *binary)] + make(depth + 1);
            }
        }
    }

    /// A string expression.
    std::string text(int depth = 0) {
        if (depth > 3 || pick(3) == 0) {
            static const char* const leaves[] = {"s$", "t$", "\"XYZ\"", "\"\"", "w$(k)", "w$(1)", "\"a\\nb\"", "u$"};
            return leaves[pick(sizeof leaves / sizeof *leaves)];
        }
        switch (pick(7)) {
            case 0: return "chr$(" + make(depth + 1) + ")";
            case 1:
                return "mid$(" + text(depth + 1) + ", " + make(depth + 1) +
                       (pick(2) == 0 ? ", " + make(depth + 1) : std::string()) + ")";
            case 2: return pick_of({"left$(", "right$("}) + text(depth + 1) + ", " + make(depth + 1) + ")";
            case 3: return "(" + text(depth + 1) + ")";
            case 4: return text(depth + 1) + pick_of({" + ", " - ", "+"}) + text(depth + 1);
            default: return text(depth + 1) + " + " + text(depth + 1);
        }
    }
private:
    std::string leaf(int depth) {
        // Mostly what plans know; now and then what they leave to the evaluator.
        static const char* const known[] = {"a", "b", "c", "z", "k", "1", "0", "2.5", ".5", "1e308", "3e-5",
                                            "n(1)", "n(k)", "n(k + 1)", "m(1,2)", "m(k,k)", "0.1", "7", "a", "b"};
        static const char* const unknown[] = {"q",   "s$",   "pi",   "12345678901234567890", "\"x\"", "n",
                                              "n(a)", "n(-1)", "n(9)", "len(\"ab\")"};
        std::string s = pick(8) != 0 ? known[pick(sizeof known / sizeof *known)]
                                     : unknown[pick(sizeof unknown / sizeof *unknown)];
        if (depth > 0 && pick(60) == 0) s += pick_of({" *", " (", ")", " b"});  // malformed
        return s;
    }
    int pick(std::size_t n) { return static_cast<int>(rng_() % n); }
    std::string pick_of(std::initializer_list<const char*> options) {
        return *(options.begin() + pick(options.size()));
    }
    std::mt19937 rng_;
};

TEST_F(ExpressionPlansTest, RandomExpressionsGiveTheEvaluatorsValuesAndErrors) {
    ExpressionMaker maker(20261122);
    const char* values[] = {"0", "1.75", "-1.5", "2.5", "1e300", "-7", "0.1", "3"};
    std::mt19937 rng(7);
    for (int i = 0; i < 1000; ++i) {
        const std::string e = maker.make();
        std::string program = "dim n(5), m(3, 3), r(3), w$(3)\r\n";
        program += "a = " + std::string(values[rng() % 8]) + ": b = " + values[rng() % 8] + ": c = " +
                   values[rng() % 8] + ": z = 0\r\n";
        program += "n(1) = 4: n(2) = -0.25: m(1, 2) = 9: m(2, 2) = 1e-300\r\n";
        program += "s$ = \"Tessaline\": t$ = \"XYZ\" + string$(240, \"q\"): w$(1) = \"b\": w$(2) = \"XYZZY\"\r\n";
        program += "for k = 1 to 2\r\n  r(k) = " + e + "\r\n  u$ = " + maker.text(0) +
                   "\r\nnext\r\nprint r(1); r(2); u$\r\nprintall \"memory\"\r\n";
        expect_same(program);
    }
    EXPECT_GT(replays, 1000u);  // most expressions were answered by a plan
}

TEST_F(ExpressionPlansTest, RandomElementTargetsAddressTheSameElements) {
    // Random subscripts of assignment targets: in range, out of range in a
    // later round, not whole numbers, strings, and malformed ones.
    ExpressionMaker maker(20261123);
    std::mt19937 rng(11);
    int completed = 0;
    std::uint64_t subscripts_replayed = 0;
    for (int i = 0; i < 300; ++i) {
        std::string program = "dim n(5), m(3, 3), r(3), w$(3)\r\na = 1.75: b = 2: c = -1: z = 0\r\n";
        program += "n(1) = 4: n(2) = 0.5: m(1, 2) = 2\r\ns$ = \"ab\": t$ = \"XYZ\": w$(1) = \"b\"\r\n";
        // Mostly subscripts in range for every round; now and then any expression.
        auto subscript = [&](std::initializer_list<const char*> usual) {
            return rng() % 4 == 0 ? maker.make(1) : std::string(*(usual.begin() + rng() % usual.size()));
        };
        program += "for k = 1 to 3\r\n  n(" + subscript({"k", "k + 1", "b", "n(2) * 2 + 1", "fix(a * k)"}) +
                   ") = k\r\n  m(" + subscript({"k - 1", "int(a)", "z", "b - k + 1"}) + ", k - 1) = " +
                   maker.make(1) + "\r\n  w$(" + subscript({"k - 1", "z", "m(1, 2)"}) + ") = s$\r\nnext\r\n";
        program += "r(0) = n(0) + n(1) * 2 + n(2) * 4 + n(3) * 8: r(1) = m(0, 0) + m(1, 1) + m(2, 2)\r\n";
        program += "r(2) = m(0, 1) + m(1, 2) + m(2, 0): print w$(0); w$(1); w$(2)\r\nprintall \"memory\"\r\n";
        const Outcome planned = run(program, true);
        subscripts_replayed += lang.caches.plan_replays;
        const Outcome direct = run(program, false);
        EXPECT_EQ(planned.output, direct.output) << program;
        EXPECT_EQ(planned.temp_high_water, direct.temp_high_water) << program;
        EXPECT_EQ(std::memcmp(planned.values, direct.values, sizeof planned.values), 0) << program;
        completed += planned.output.find("ERROR") == std::string::npos ? 1 : 0;
    }
    // Neither all failing early nor all passing: both ways were compared.
    EXPECT_GT(completed, 30);
    EXPECT_LT(completed, 270);
    EXPECT_GT(subscripts_replayed, 300u);
}

TEST_F(ExpressionPlansTest, EveryOperatorAndFunctionAgreesWithTheEvaluator) {
    const char* expressions[] = {
        "fix(a)", "fix(-a)", "int(a)", "int(-a)", "abs(b)", "sgn(b)", "sgn(z)", "sqr(a)", "a % b", "-a % b",
        "-a ^ 2", "2 ^ -a", "a ^ b ^ 2", "- - a", "+a - -b", "not a", "not z", "a and z", "a or z", "a xor b",
        "a eor z", "a = b", "a <> b", "a < b", "a > b", "a <= a", "a >= b", "a - b * 2 / 3 + 1", "(a + b) * (a - b)",
        "n(1) * n(k + 1)", "m(k, k + 1) - a", "1 - 2 < 3 and not 0 or 1 xor 1", "a * 1e308", "(-0.5)", "-(0.5) * a",
        "-(0.5) * a - -(0.25) * -(1.5) + -(2.5) - -3.75 * -4.5 + -(-(-6.25))"};
    for (const char* e : expressions) {
        expect_same(std::string("dim n(5), m(3, 3), r(3)\r\na = 2.5: b = -1.75: z = 0\r\n") +
                    "n(1) = 4: n(2) = -0.25: m(1, 2) = 9\r\nprintall \"memory\"\r\nfor k = 1 to 2\r\n  x = " + e + "\r\n  r(k) = x\r\nnext\r\nprintall \"memory\"\r\n");
    }
}

TEST_F(ExpressionPlansTest, PlansEndWhereTheStatementGoesOn) {
    // THEN, TO, STEP, ELSE, ":" and "//" end an expression; parameter lists
    // end at "," and ")"; a plan leaves the scan position where the text does.
    expect_same(
        "dim r(3), n(4)\r\nx = 3\r\nfor i = x - 2 to x * 2 - 3 step x - 2: n(i) = i * x: next\r\n"
        "for k = 1 to 2\r\n  if n(2) * 2 > x then r(k) = k + n(k) else r(k) = -k // note\r\n"
        "  while r(0) < x: r(0) = r(0) + 1: wend\r\nnext\r\nprint r(0); r(1); r(2); mid$(\"abcdef\", x - 1, x - 1)\r\n");
    EXPECT_GT(replays, 0u);
}

TEST_F(ExpressionPlansTest, PlansFollowChangesOfTablesAndText) {
    // An array erased and made again, a variable that appears after the plan
    // was made, the text of the place replaced by another program.
    expect_same(
        "dim n(3), r(3)\r\nfor k = 1 to 2\r\n  r(k) = n(2) + k\r\n  erase n: dim n(5): n(2) = k * 10\r\nnext\r\n"
        "print r(1); r(2)\r\n");
    expect_same("dim r(3)\r\nfor k = 1 to 2\r\n  r(k) = k * 2\r\n  if k = 1 then kk = 5\r\nnext\r\nprint r(1); r(2)\r\n");
    start();
    EXPECT_TRUE(replace_program_text("dim r(3)\r\nr(1) = 2 + 3\r\n"));
    (void)run_command_line("run");
    EXPECT_TRUE(replace_program_text("dim r(3)\r\nr(1) = 2 * 3\r\n"));
    (void)run_command_line("run");
    EXPECT_EQ(find_array("r")->doubles()[1], 6.0);
}

TEST_F(ExpressionPlansTest, StatementsPassedOverRaiseNothing) {
    // Untaken branches are scanned for syntax and types only: their values
    // (a division by zero, a subscript out of range, a square root of a
    // negative number) raise nothing, with a plan as without one.
    expect_same(
        "dim n(3), r(3)\r\nfor k = 1 to 3\r\n  if k > 5 then r(1) = 10 / (k - k) + n(k * 9) + sqr(-k) - -(2.5)\r\n"
        "  if k < 5 then r(2) = r(2) + k else r(3) = n(-k) / 0 + 1.5\r\n  while k > 9: r(0) = 1 / 0: wend\r\n"
        "next\r\nprint r(1); r(2); r(3)\r\nprintall \"memory\"\r\n");
    EXPECT_GT(replays, 6u);
}

TEST_F(ExpressionPlansTest, RunningOutOfTemporarySpaceIsTheEvaluatorsMessage) {
    // With the smallest temporary string space, long joins and function
    // calls fill it: the plan must give up exactly where the evaluator runs
    // out, leaving its message, and agree on the space used before that.
    sizes.value[static_cast<std::size_t>(size_temp_string_space)] = 4096;
    // The first round fits; a later one, with longer texts, does not.
    const std::string setup = "s$ = string$(200, \"a\"): t$ = \"\"\r\nfor k = 1 to 9\r\n  u$ = left$(s$, k * 25)\r\n  ";
    for (const char* body : {"t$ = u$+u$+u$+u$+u$+u$+u$+u$+u$+u$+u$+u$+u$+u$+u$+u$",
                             "t$ = mid$(u$+u$+u$+u$+u$+u$+u$+u$, k)+mid$(u$+u$+u$+u$+u$+u$+u$, 2)+u$+u$+u$",
                             "if len(u$+u$+u$+u$+u$+u$+u$+u$+u$+u$+u$+u$+u$+u$+u$+u$) < 0 then t$ = u$"}) {
        expect_same(setup + body + "\r\nnext\r\nprint len(t$); k\r\nprintall \"memory\"\r\n");
    }
    EXPECT_GT(replays, 3u);
}

TEST_F(ExpressionPlansTest, ErrorsInLaterRoundsAreReportedByTheEvaluator) {
    // The first rounds are answered by the plan; the failing round gives up
    // and the evaluator reports it with its caret.
    for (const char* body : {"r(1) = 10 / k", "r(1) = n(k + 2)", "r(1) = (k - 1) ^ -1", "r(1) = sqr(k - 1)",
                             "r(1) = 1e300 * 10 ^ (300 * (k - 1))", "r(1) = 5 % k"}) {
        expect_same(std::string("dim n(3), r(3)\r\nfor k = 2 to -1 step -1\r\n  ") + body + "\r\nnext\r\n");
    }
}

TEST_F(ExpressionPlansTest, SubscriptsFromPlansAddressTheSameElements) {
    // Subscripts of doubles come from their plans after the first round;
    // the round that leaves the array, or gives the wrong count, reports
    // as the parameter list does.
    for (const char* body : {"n(k) = k: r(1) = r(1) + n(k)", "m(k, k - 1) = k: r(1) = m(k, k - 1) + m(1, 0)",
                             "w$(k) = chr$(64 + k): r(1) = asc(w$(k))", "r(1) = n(k, 1)", "n(k - 1) = k",
                             "r(k - 1) = n(4 - k) + n(k + 1)"}) {
        expect_same(std::string("dim n(4), m(4, 3), w$(4), r(3)\r\nfor k = 1 to 5\r\n  ") + body +
                    "\r\nnext\r\nprint r(1); n(3)\r\n");
    }
    // The temporary space recorded while a string and an element meet.
    expect_same("dim n(4), r(3)\r\ns$ = \"abc\"\r\nfor k = 1 to 3\r\n  t$ = s$ + str$(n(k)) + s$\r\n"
                "  n(k) = len(t$ + mid$(t$, n(k) + 1))\r\nnext\r\nprintall \"memory\"\r\n");
    EXPECT_GT(replays, 10u);
}

}  // namespace
}  // namespace tl::test
