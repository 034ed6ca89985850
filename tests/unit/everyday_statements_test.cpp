// Statements that the program transcripts cannot reach: LONGMATH variables as
// targets (no LONG statement yet), terminal colours, the help folder, CHDIR,
// and DELAY stopped by the user.
#include <unistd.h>

#include <chrono>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>

#include "exec/commands.h"
#include "exec/everyday_statements.h"
#include "exec/memory_areas.h"
#include "exec/program_store.h"
#include "exec/run_loop.h"
#include "exec/variables.h"
#include "lang/item.h"
#include "test_support.h"

namespace tl::test {
namespace {

class EverydayStatements : public CoreTest {
protected:
    /// Checks and runs `text` as the loaded program.
    int run(const std::string& text) {
        EXPECT_TRUE(replace_program_text(text));
        if (int rc = check_program(); rc < 0) return rc;
        return start_program(false);
    }
    /// A line typed at the prompt.
    int type(const char* line) { return run_command_line(line); }
    /// A LONGMATH variable, as the LONG statement declares it.
    void declare_long(const char* name) { ASSERT_EQ(create_variable(name, true), static_cast<int>(kind_long)); }
};

TEST_F(EverydayStatements, LongVariablesTakeInputReadSwapAndFunctionValues) {
    ASSERT_EQ(run("def twice(n) = n + n\n"
                  "data 98765432109876543210.5, x\n"),
              0)
        << fe.output;
    declare_long("big");
    declare_long("other");
    fe.take();

    // A wrong entry is refused before anything is stored.
    fe.input = {"12abc", "123456789012345678901234567890"};
    EXPECT_EQ(type("input big"), 0) << fe.output;
    EXPECT_NE(fe.output.find("?Redo from start - Incorrect data type - looking for a number."), std::string::npos);
    fe.take();
    EXPECT_EQ(type("?? big"), 0);
    EXPECT_NE(fe.take().find("big:  (long) 123456789012345678901234567890"), std::string::npos);

    EXPECT_EQ(type("read other"), 0) << fe.output;
    EXPECT_EQ(type("swap big, other"), 0) << fe.output;
    fe.take();
    EXPECT_EQ(type("?? big, other"), 0);
    const std::string shown = fe.take();
    EXPECT_NE(shown.find("big:  (long) 98765432109876543210.5"), std::string::npos) << shown;
    EXPECT_NE(shown.find("other:  (long) 123456789012345678901234567890"), std::string::npos) << shown;

    EXPECT_EQ(type("big = twice(big)"), 0) << fe.output;
    fe.take();
    EXPECT_EQ(type("printall \"variables\""), 0);
    EXPECT_NE(fe.take().find("big:  (long) 197530864219753086421"), std::string::npos);

    // A long variable cannot trade places with a double, nor read text.
    EXPECT_LT(type("swap big, plain"), 0);
    EXPECT_NE(fe.take().find("ERROR - Invalid type."), std::string::npos);
    EXPECT_LT(type("read other"), 0);
    EXPECT_NE(fe.take().find("ERROR - Incorrect data type - looking for a number."), std::string::npos);
}

TEST_F(EverydayStatements, ColourNumbersBecomeAnsiSequences) {
    char out[32];
    EXPECT_EQ(std::string(out, color_escape(7, out)), "\x1b[0m");                // normal
    EXPECT_EQ(std::string(out, color_escape(4, out)), "\x1b[0;31;40m");          // red on black
    EXPECT_EQ(std::string(out, color_escape(14, out)), "\x1b[0;93;40m");         // bright yellow
    EXPECT_EQ(std::string(out, color_escape(0x1F, out)), "\x1b[0;97;44m");       // bright white on blue
    EXPECT_EQ(std::string(out, color_escape(0xA0, out)), "\x1b[0;30;102m");      // black on bright green
}

TEST_F(EverydayStatements, HelpNamesTheDocumentBesideTheProgram) {
    EXPECT_EQ(type("help 9"), 0) << fe.output;
    const std::string out = fe.take();
    EXPECT_NE(out.find("\"User-Defined Funtions\" is the document /"), std::string::npos) << out;
    EXPECT_NE(out.find("/help/user functions.pdf\n"), std::string::npos) << out;
    EXPECT_STREQ(help_document_file(1), "intro to basic.pdf");
    EXPECT_STREQ(help_document_title(help_document_count), "Quick Reference Booklet");
    EXPECT_STREQ(help_document_title(0), "");
}

TEST_F(EverydayStatements, ChdirChangesAndShowsTheFolder) {
    const std::filesystem::path before = std::filesystem::current_path();
    const std::filesystem::path target = std::filesystem::canonical(std::filesystem::temp_directory_path());
    const std::string line = "chdir \"" + target.string() + "\"";
    EXPECT_EQ(type(line.c_str()), 0) << fe.output;
    EXPECT_EQ(std::filesystem::current_path(), target);
    EXPECT_EQ(fe.take(), "Current directory is: " + target.string() + "\n");
    EXPECT_EQ(type("chdir"), 0);
    EXPECT_EQ(fe.take(), "Current directory is: " + target.string() + "\n");
    std::filesystem::current_path(before);
}

/// Asks to stop the program at the second pump.
class InterruptingFrontEnd : public RecordingFrontEnd {
public:
    int pumps = 0;
    void pump_events() override {
        if (++pumps == 2) host.flags.interrupt_requested = true;
    }
};

TEST_F(EverydayStatements, DelayStopsWhenTheUserInterrupts) {
    const std::string text = "delay 30\nprint \"not reached\"\n";
    EXPECT_TRUE(replace_program_text(text));
    ASSERT_EQ(check_program(), 0) << fe.output;
    InterruptingFrontEnd interrupting;  // the first pump is before DELAY, the second inside it
    host.front_end = &interrupting;
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_LT(start_program(false), 0);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
    EXPECT_NE(interrupting.output.find("ERROR - User interrupted program"), std::string::npos) << interrupting.output;
    EXPECT_EQ(interrupting.output.find("not reached"), std::string::npos) << interrupting.output;
    host.front_end = &fe;
}

TEST_F(EverydayStatements, ReadingStartsAgainWithEveryRun) {
    const std::string program = "read a, b\nprint a; b\ndata 1, 2, 3\n";
    ASSERT_EQ(run(program), 0) << fe.output;
    ASSERT_EQ(run(program), 0) << fe.output;
    EXPECT_EQ(fe.take(), "            1            2\n            1            2\n");
}

}  // namespace
}  // namespace tl::test
