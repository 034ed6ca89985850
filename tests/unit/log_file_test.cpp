// Tests of the session log: header, copying of console lines, and failure to open.
#include "shell/log_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>

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

TEST_F(LogFileTest, OnlyARegularFileIsTakenAndTheOpenNeverWaits) {
    // A device that takes the open but no write, and a FIFO with and without
    // a reader: each is refused at once, as a log that cannot be opened.
    const std::string fifo = dir / "fifo";
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    for (const int with_reader : {0, 1}) {
        const int reader = with_reader != 0 ? ::open(fifo.c_str(), O_RDONLY | O_NONBLOCK) : -1;
        for (const std::string& name : {std::string("/dev/full"), fifo}) {
            settings.log_file_path = "";
            settings.log_file_name = name;
            const auto start = std::chrono::steady_clock::now();
            EXPECT_FALSE(shell::start_log_file(settings)) << name;
            EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2)) << name;
            EXPECT_EQ(host.log, nullptr);
            EXPECT_EQ(fe.take(), "Cant open LOG file.\n") << name;
        }
        if (reader >= 0) ::close(reader);
    }
}

TEST_F(LogFileTest, TheLogIsNotPassedToOtherPrograms) {
    ASSERT_TRUE(shell::start_log_file(settings));
    const int flags = ::fcntl(::fileno(host.log), F_GETFD);
    EXPECT_NE(flags & FD_CLOEXEC, 0);
}

TEST_F(LogFileTest, AFailedWriteIsReportedOnceAndLoggingStops) {
    ASSERT_TRUE(shell::start_log_file(settings));
    std::fclose(host.log);
    host.log = std::fopen("/dev/full", "w");  // what a full disk does to the log
    ASSERT_NE(host.log, nullptr);
    fe.take();
    console_write("first\n");
    EXPECT_EQ(host.log, nullptr);
    EXPECT_EQ(fe.take(), "first\n\nThe log file could not be written (No space left on device): logging stopped.\n");
    console_write("second\n");
    log_typed_line("Command: ", "print 1");
    EXPECT_EQ(fe.take(), "second\n");
}

}  // namespace
}  // namespace tl::test
