// test_support.h — a front end that records console output, and a fixture that resets the core.
#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <string>

#include "exec/front_end.h"
#include "exec/sizing_settings.h"
#include "lang/language_init.h"

namespace tl::test {

/// Records everything written; answers read_line from a queue of lines.
class RecordingFrontEnd : public FrontEnd {
public:
    std::string output;
    std::deque<std::string> input;

    void write(std::string_view text) override { output.append(text); }
    bool read_line(std::string_view prompt, std::string& line) override {
        output.append(prompt);
        if (input.empty()) return false;
        line = input.front();
        input.pop_front();
        return true;
    }
    /// Returns and forgets the output so far.
    std::string take() {
        std::string s;
        s.swap(output);
        return s;
    }
};

/// Resets the whole core, installs a recording front end and starts the
/// interpreter with `sizes` (defaults unless a test changes them first).
class CoreTest : public ::testing::Test {
protected:
    RecordingFrontEnd fe;
    SizingValues sizes = default_sizing();

    void SetUp() override { start(); }
    void TearDown() override {
        set_host_front_end(nullptr);
        reset_interpreter_state();
    }
    void start() {
        reset_interpreter_state();
        set_host_front_end(&fe);
        ASSERT_EQ(init_language_tables(sizes), 0) << fe.output;
    }
    void restart_with(SizingIndex i, std::uint32_t value) {
        sizes.value[static_cast<std::size_t>(i)] = value;
        start();
    }

private:
    static void set_host_front_end(FrontEnd* f) { host.front_end = f; }
};

}  // namespace tl::test
