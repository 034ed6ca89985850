// A program file that cannot be read: every statement that reads one keeps
// its numbered message and shows, on a line of its own before it, the full
// path it tried (relative names are taken in the current folder) and why.
#include <filesystem>
#include <string>

#include "exec/run_loop.h"
#include "shell_test_support.h"
#include "test_support.h"

namespace tl::test {
namespace {

class UnreadableFile : public CoreTest {
protected:
    ScratchDir scratch;
    std::filesystem::path before = std::filesystem::current_path();

    void SetUp() override {
        CoreTest::SetUp();
        std::filesystem::current_path(scratch.path());
    }
    void TearDown() override {
        std::filesystem::current_path(before);
        CoreTest::TearDown();
    }
    /// What typing `line` at the prompt shows.
    std::string shown(const char* line) {
        fe.take();
        (void)run_command_line(line);
        return fe.take();
    }
    std::string reason_line(const std::string& name, const char* reason) const {
        const std::string folder = std::filesystem::canonical(scratch.path()).string();
        return "\nCannot open " + folder + "/" + name + ": " + reason + "\n";
    }
};

TEST_F(UnreadableFile, LoadAndRunShowThePathAndTheReasonBeforeTheReport) {
    std::filesystem::create_directory(scratch / "folder.bas");
    std::string out = shown("load \"missing.bas\"");
    EXPECT_NE(out.find(reason_line("missing.bas", "No such file or directory") + "ERROR - Unable to load program.\n"),
              std::string::npos)
        << out;
    out = shown("run \"folder.bas\"");
    EXPECT_NE(out.find(reason_line("folder.bas", "Is a directory") + "ERROR - Unable to load program.\n"),
              std::string::npos)
        << out;
    // "./" and ".." are resolved in the name shown.
    out = shown("load \"./sub/../missing.bas\"");
    EXPECT_NE(out.find(reason_line("missing.bas", "No such file or directory")), std::string::npos) << out;
    // An absolute name is shown as it is.
    out = shown("load \"/nonexistent-tessaline/x.bas\"");
    EXPECT_NE(out.find("\nCannot open /nonexistent-tessaline/x.bas: No such file or directory\n"), std::string::npos)
        << out;
}

TEST_F(UnreadableFile, AppendIncludeAndChainShowItBeforeTheStatementsReport) {
    write_file(scratch / "append.bas", "print 1\nappend \"gone1.txt\"\n");
    std::string out = shown("run \"append.bas\"");
    EXPECT_NE(out.find(reason_line("gone1.txt", "No such file or directory") + "\nappend \"gone1.txt\"\n"),
              std::string::npos)
        << out;
    EXPECT_NE(out.find("ERROR - Unable to load program.\n"), std::string::npos) << out;

    write_file(scratch / "include.bas", "include \"gone2.txt\"\nprint 1\n");
    out = shown("run \"include.bas\"");
    EXPECT_NE(out.find(reason_line("gone2.txt", "No such file or directory") + "\ninclude \"gone2.txt\"\n"),
              std::string::npos)
        << out;

    write_file(scratch / "chain.bas", "chain \"gone3.bas\"\n");
    out = shown("run \"chain.bas\"");
    EXPECT_NE(out.find(reason_line("gone3.bas", "No such file or directory") + "ERROR - Unable to load program.\n"),
              std::string::npos)
        << out;
}

}  // namespace
}  // namespace tl::test
