// What the file transcripts cannot reach: browsecommports$ in a window
// (a test host plays the chooser), the COMn names, and the files a reset closes.
#include <sys/stat.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "exec/file_table.h"
#include "exec/port_chooser.h"
#include "exec/run_loop.h"
#include "exec/serial_port.h"
#include "test_support.h"

namespace tl::test {
namespace {

/// A window host: not Console mode.
class WindowFrontEnd : public RecordingFrontEnd {
public:
    bool console_mode() const override { return false; }
};

/// Picks the port it is told to, or cancels; remembers what it was shown.
class FakeChooser : public PortChooser {
public:
    std::string answer;
    bool cancel = false;
    std::string title;
    std::vector<std::string> shown;
    bool choose_port(std::string_view t, const std::vector<std::string>& ports, std::string& chosen) override {
        title = t;
        shown = ports;
        if (cancel) return false;
        chosen = answer;
        return true;
    }
};

class FileFunctions : public CoreTest {
protected:
    WindowFrontEnd window;
    FakeChooser chooser;
    void use_window() {
        host.front_end = &window;
        host.port_chooser = &chooser;
    }
    void TearDown() override {
        host.port_chooser = nullptr;
        CoreTest::TearDown();
    }
};

TEST_F(FileFunctions, BrowseCommPortsGivesThePickedPortOrTheCancelError) {
    use_window();
    chooser.answer = "/dev/ttyUSB3";
    EXPECT_EQ(run_command_line("print browsecommports$(\"Instrument\")"), 0);
    EXPECT_EQ(window.take(), "/dev/ttyUSB3\n");
    EXPECT_EQ(chooser.title, "Instrument");
    EXPECT_EQ(chooser.shown, list_serial_ports());
    chooser.cancel = true;
    EXPECT_LT(run_command_line("print browsecommports$(\"Instrument\")"), 0);
    EXPECT_NE(window.take().find("ERROR - User cancelled from comm port selection dialog."), std::string::npos);
}

TEST_F(FileFunctions, BrowseCommPortsIsRefusedInConsoleModeAndWithoutAChooser) {
    EXPECT_LT(run_command_line("print browsecommports$(\"x\")"), 0);
    EXPECT_NE(fe.take().find("ERROR - Statement not valid in CONSOLE mode."), std::string::npos);
    host.front_end = &window;
    EXPECT_LT(run_command_line("print browsecommports$(\"x\")"), 0);
    EXPECT_NE(window.take().find("ERROR - Invalid function call."), std::string::npos);
}

TEST_F(FileFunctions, ComNamesStandForTheFirstSerialDevices) {
    EXPECT_EQ(serial_device_path("COM1"), "/dev/ttyS0");
    EXPECT_EQ(serial_device_path("com12:"), "/dev/ttyS11");
    EXPECT_EQ(serial_device_path("COM0"), "COM0");
    EXPECT_EQ(serial_device_path("COM1x"), "COM1x");
    EXPECT_EQ(serial_device_path("/dev/ttyUSB0"), "/dev/ttyUSB0");
}

TEST_F(FileFunctions, ResetAndClearWriteOutWhatALineStillHolds) {
    const std::string name = (std::filesystem::temp_directory_path() / "tessaline-open-line.txt").string();
    const std::string open = "open \"o\", 1, \"" + name + "\" : print #1, \"partial\";";
    ASSERT_EQ(run_command_line(open.c_str()), 0);
    // A line typed at the prompt ends: the text is written out, the file stays open.
    EXPECT_EQ(std::filesystem::file_size(name), 7u);
    ASSERT_EQ(run_command_line("print #1, \" more\";"), 0);
    reset_interpreter_state();  // closes every file
    std::ifstream in(name);
    std::string text;
    std::getline(in, text);
    EXPECT_EQ(text, "partial more");
    std::filesystem::remove(name);
}

TEST_F(FileFunctions, RandomFilesOnFailingDevicesGiveTheirReadSeekAndWriteErrors) {
    auto error_of = [this](const std::string& line) {
        EXPECT_LT(run_command_line(line.c_str()), 0) << line;
        const std::string out = fe.take();
        const std::size_t at = out.find("ERROR - ");
        return at == std::string::npos ? out : out.substr(at, out.find('\n', at) - at);
    };
    // A full device takes the record but cannot keep it.
    ASSERT_EQ(run_command_line("open \"r\", 1, \"/dev/full\", 10"), 0);
    EXPECT_EQ(error_of("put #1, 1"), "ERROR - RANDOM file write error.");
    // A pipe has no record positions.
    const std::filesystem::path fifo = std::filesystem::temp_directory_path() / "tessaline-random-fifo";
    std::filesystem::remove(fifo);
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    ASSERT_EQ(run_command_line(("open \"r\", 2, \"" + fifo.string() + "\", 10").c_str()), 0);
    EXPECT_EQ(error_of("get #2, 1"), "ERROR - RANDOM file seek error.");
    EXPECT_EQ(error_of("put #2, 3"), "ERROR - RANDOM file seek error.");
    // Memory that is not mapped cannot be read.
    ASSERT_EQ(run_command_line("open \"r\", 3, \"/proc/self/mem\", 10"), 0);
    EXPECT_EQ(error_of("get #3, 1"), "ERROR - RANDOM file read error.");
    // The files stay usable: closing them all succeeds.
    EXPECT_EQ(run_command_line("close"), 0);
    std::filesystem::remove(fifo);
}

}  // namespace
}  // namespace tl::test
