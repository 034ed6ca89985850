// Tests of the session log: header, copying of console lines, and failure to open.
#include "shell/log_file.h"

#include "shell_test_support.h"
#include "test_support.h"

namespace tl::test {
namespace {

using shell::AppSettings;

/// A front end that behaves like the window: message boxes are recorded apart.
class WindowLikeFrontEnd : public RecordingFrontEnd {
public:
    std::vector<std::string> boxes;
    bool console_mode() const override { return false; }
    void message_box(std::string_view title, std::string_view text) override {
        boxes.push_back(std::string(title) + "|" + std::string(text));
    }
};

class LogFileTest : public ::testing::Test {
protected:
    ScratchDir dir;
    RecordingFrontEnd fe;
    AppSettings settings;

    void SetUp() override {
        host.front_end = &fe;
        settings.create_log_file = true;
        settings.log_file_path = dir.path();
        settings.log_file_name = "session.log";
    }
    void TearDown() override {
        shell::close_log_file();
        host.front_end = nullptr;
    }
    std::string log_text() const { return read_file(dir / "session.log"); }
    static std::string header_at(std::time_t when) {
        std::tm local{};
        localtime_r(&when, &local);
        return "Tessaline BASIC Log File\nDate & Time = " + shell::asctime_text(local);
    }
};

TEST(AsctimeText, MatchesTheCRuntimeForm) {
    std::tm t{};
    t.tm_year = 93;
    t.tm_mon = 5;
    t.tm_mday = 30;
    t.tm_hour = 21;
    t.tm_min = 49;
    t.tm_sec = 8;
    t.tm_wday = 3;
    EXPECT_EQ(shell::asctime_text(t), "Wed Jun 30 21:49:08 1993\n");
    t.tm_mday = 5;
    t.tm_mon = 0;
    t.tm_wday = 6;
    t.tm_year = 126;
    t.tm_hour = 0;
    EXPECT_EQ(shell::asctime_text(t), "Sat Jan  5 00:49:08 2026\n");
}

TEST(LogFileName, JoinsPathAndName) {
    AppSettings s;
    s.log_file_name = "x.log";
    EXPECT_EQ(shell::log_file_full_name(s), "x.log");
    s.log_file_path = "/var/log";
    EXPECT_EQ(shell::log_file_full_name(s), "/var/log/x.log");
    s.log_file_path = "/var/log/";
    EXPECT_EQ(shell::log_file_full_name(s), "/var/log/x.log");
}

TEST_F(LogFileTest, HeaderThenEveryConsoleLineIsOnDiskAtOnce) {
    write_file(dir / "session.log", "an older session that must go\n");
    const std::time_t before = std::time(nullptr);
    ASSERT_TRUE(shell::start_log_file(settings));
    const std::time_t after = std::time(nullptr);
    EXPECT_EQ(fe.take(), "Log File Opened\n");
    const std::string head = log_text();
    EXPECT_TRUE(head == header_at(before) || head == header_at(after)) << head;

    console_write("Command: ");
    console_print("%d\n", 42);
    EXPECT_EQ(log_text(), head + "Command: 42\n");  // no close or flush by the test
    EXPECT_EQ(fe.take(), "Command: 42\n");

    shell::close_log_file();
    EXPECT_EQ(host.log, nullptr);
    console_write("after\n");
    EXPECT_EQ(log_text(), head + "Command: 42\n");
}

TEST_F(LogFileTest, SecondStartKeepsTheOpenLog) {
    ASSERT_TRUE(shell::start_log_file(settings));
    std::FILE* first = host.log;
    console_write("line\n");
    EXPECT_TRUE(shell::start_log_file(settings));
    EXPECT_EQ(host.log, first);
    EXPECT_NE(log_text().find("line\n"), std::string::npos);
}

TEST_F(LogFileTest, DisabledFlagOpensNothing) {
    settings.create_log_file = false;
    EXPECT_FALSE(shell::start_log_file(settings));
    EXPECT_EQ(host.log, nullptr);
    EXPECT_EQ(fe.output, "");
    EXPECT_FALSE(std::filesystem::exists(dir / "session.log"));
}

TEST_F(LogFileTest, UnwritablePathReportsOnceAndRunsWithoutLog) {
    write_file(dir / "plain-file", "");
    settings.log_file_path = dir / "plain-file";  // a file, so nothing can be created below it
    EXPECT_FALSE(shell::start_log_file(settings));
    EXPECT_EQ(host.log, nullptr);
    EXPECT_EQ(fe.take(), "Cant open LOG file.\n");

    WindowLikeFrontEnd window;
    host.front_end = &window;
    EXPECT_FALSE(shell::start_log_file(settings));
    EXPECT_EQ(window.output, "Cant open LOG file.\n");
    ASSERT_EQ(window.boxes.size(), 1U);
    EXPECT_EQ(window.boxes[0], "Error|Cant open LOG file.");
}

}  // namespace
}  // namespace tl::test
