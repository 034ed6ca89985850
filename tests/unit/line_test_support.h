// line_test_support.h — a fixture that runs lines as typed at the prompt and returns their output.
#pragma once

#include <string>

#include "exec/run_loop.h"
#include "test_support.h"

namespace tl::test {

class LineTest : public CoreTest {
protected:
    /// Runs one typed line; returns its output, whatever the line's status.
    std::string run(const std::string& line) {
        fe.take();
        (void)run_command_line(line.c_str());
        return fe.take();
    }
    /// The output of a line that must succeed.
    std::string ok(const std::string& line) {
        fe.take();
        EXPECT_EQ(run_command_line(line.c_str()), 0) << line << "\n" << fe.output;
        return fe.take();
    }
    /// True when `out` holds the report of `message`.
    static bool has_error(const std::string& out, const std::string& message) {
        return out.find("ERROR - " + message + "\n") != std::string::npos;
    }
};

}  // namespace tl::test
