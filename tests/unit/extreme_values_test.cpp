// Extreme numbers in every numeric parameter of every builtin function and of
// the statements that take numbers: NaN, both infinities, -0, the largest and
// smallest doubles and integers just beyond 32 and 64 bits. Nothing may crash
// or trip a sanitizer (the sanitizer build also checks every conversion of a
// double to an integer), and the interpreter stays usable after each line.
#include <string>
#include <vector>

#include "exec/exec_state.h"
#include "exec/run_loop.h"
#include "lang/keyword_tables.h"
#include "test_support.h"

namespace tl::test {
namespace {

/// Ends a line that waits or loops for long (DELAY, FOR to infinity) after a
/// number of event pumps.
class BoundedFrontEnd : public RecordingFrontEnd {
public:
    int pumps = 0;
    void pump_events() override {
        if (++pumps > 400) host.flags.interrupt_requested = true;
    }
};

class ExtremeValuesTest : public CoreTest {
protected:
    BoundedFrontEnd bounded;

    void SetUp() override {
        CoreTest::SetUp();
        host.front_end = &bounded;
        line("vnan = exp(1000) - exp(1000)");
        line("vinf = exp(1000)");
        line("vminf = -exp(1000)");
        line("vmzero = 0 * -1");
        line("dim ar(3), ar$(3), ar2(2, 2)");
        line("s$ = \"hello\"");
        bounded.take();
    }
    void line(const std::string& text) {
        bounded.pumps = 0;
        host.flags.interrupt_requested = false;
        (void)run_command_line(text.c_str());
    }
    /// Runs `text` and then checks that a plain line still works.
    void survive(const std::string& text) {
        line(text);
        bounded.take();
        line("print 12345");
        const std::string after = bounded.take();
        ASSERT_NE(after.find("12345"), std::string::npos) << "after: " << text << "\n" << after;
    }
};

const std::vector<std::string> extremes = {
    "vnan",        "vinf",         "vminf",      "vmzero",      "1e308",      "-1e308", "5e-324",
    "-5e-324",     "2147483648",   "-2147483649", "4294967296", "1e19",       "-1e19",  "0.5",
    "-1",          "255.5",        "-0.5",
};

TEST_F(ExtremeValuesTest, EveryParameterOfEveryBuiltinFunction) {
    const std::vector<std::string> bases = {"3", "\"hello\"", "s$"};
    for (int slot = 0; slot < fn_count; ++slot) {
        const std::string name = keyword_name(Table::functions, slot);
        if (name.empty() || slot == fn_placeholder_41) continue;
        for (int count = 1; count <= 4; ++count) {
            for (int at = 0; at < count; ++at) {
                for (std::size_t b = 0; b < bases.size(); ++b) {
                    for (const std::string& v : extremes) {
                        std::string args;
                        for (int i = 0; i < count; ++i) {
                            if (i > 0) args += ", ";
                            // The third base is a string first and numbers after it.
                            args += i == at ? v : (b == 2 && i > 0 ? "2" : bases[b]);
                        }
                        survive("print " + name + "(" + args + ")");
                    }
                }
            }
        }
    }
}

TEST_F(ExtremeValuesTest, EveryNumericParameterOfStatements) {
    // V stands for the extreme value.
    const std::vector<std::string> statements = {
        "print V",
        "print V; V, V",
        "write V, V",
        "?? V",
        "x = V: ?? x",
        "print using \"###.##\"; V",
        "print using \"eng\"; V",
        "print using \"%10.3f\"; V",
        "print tab(V); 1",
        "printtabs = V: print 1, 2",
        "print ar(V)",
        "ar(V) = 1",
        "ar$(V) = \"a\"",
        "print ar2(1, V)",
        "dim big(V)",
        "dim big2(2, V)",
        "for i = V to 3: next",
        "for i = 1 to V: next",
        "for i = 1 to 3 step V: next",
        "for ar(V) = 1 to 2: next",
        "while V: wend",
        "if V then print 1 else print 2",
        "if V = 5 then print \"eq\"",
        "if V < 5 or V > 5 then print \"ne\"",
        "on V goto 10",
        "on V gosub 10",
        "color V",
        "delay V",
        "help V",
        "randomize V",
        "mid$(s$, V) = \"x\"",
        "mid$(s$, 1, V) = \"x\"",
        "float V",
        "long y: y = V: ?? y",
        "long y = long(V)",
        "x = V: long y = x",
        "x$ = str$(V)",
        "x$ = hex$(V)",
        "sort ar, keycol1 = V",
        "sort ar2, keycol1 = V",
        "sort ar, count = V",
        "if 0 then color V",
        "if 0 then delay V",
        "if 0 then x = ar(V)",
        "restore V",
        "return V",
    };
    for (const std::string& t : statements) {
        for (const std::string& v : extremes) {
            std::string text = t;
            for (std::size_t p = text.find('V'); p != std::string::npos; p = text.find('V', p + v.size()))
                text.replace(p, 1, v);
            survive(text);
            line("float 50");
        }
    }
}

}  // namespace
}  // namespace tl::test
