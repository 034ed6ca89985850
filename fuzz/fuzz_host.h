// fuzz_host.h — the front end and the start-up shared by the interpreter fuzzers.
#pragma once

#include <unistd.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "exec/exec_state.h"
#include "exec/front_end.h"
#include "exec/sizing_settings.h"
#include "lang/language_init.h"

namespace tl::fuzz {

/// Statements one input may run before the run is ended as if interrupted.
inline constexpr std::uint64_t statements_per_input = 20000;
/// Event pumps one input may cause before the interrupt flag is raised. The
/// run loop pumps once per statement, DELAY and the long-number loops pump on
/// their own, so this ends waits and long computations that run no statements.
inline constexpr int pumps_per_input = 40000;
/// Wall time one input may take before the interrupt flag is raised (DELAY
/// sleeps between its pumps).
inline constexpr std::chrono::milliseconds time_per_input{1000};

/// Discards output (but touches every byte, so that a bad view is noticed),
/// answers INPUT with the lines of the fuzz data and ends every wait.
class FuzzFrontEnd : public FrontEnd {
public:
    std::string_view input;
    int pumps = 0;
    std::chrono::steady_clock::time_point deadline;
    std::size_t written = 0;
    unsigned checksum = 0;

    void write(std::string_view text) override {
        written += text.size();
        for (const char c : text) checksum = checksum * 31u + static_cast<unsigned char>(c);
    }
    bool read_line(std::string_view prompt, std::string& line) override {
        write(prompt);
        if (input.empty()) return false;
        const std::size_t end = input.find('\n');
        line.assign(input.substr(0, end));
        input.remove_prefix(end == std::string_view::npos ? input.size() : end + 1);
        return true;
    }
    int read_key() override {
        if (input.empty()) return -1;
        const int key = static_cast<unsigned char>(input.front());
        input.remove_prefix(1);
        return key;
    }
    void pump_events() override {
        if (++pumps >= pumps_per_input || std::chrono::steady_clock::now() > deadline)
            host.flags.interrupt_requested = true;
    }
};

/// True when the text could name SPAWN, which starts shell commands: such
/// inputs are not run (the fuzzer must not run arbitrary commands).
inline bool mentions_spawn(std::string_view text) {
    constexpr std::string_view word = "spawn";
    std::size_t matched = 0;
    for (const char raw : text) {
        const char c = (raw >= 'A' && raw <= 'Z') ? static_cast<char>(raw - 'A' + 'a') : raw;
        if (c == word[matched]) {
            if (++matched == word.size()) return true;
        } else {
            matched = c == word[0] ? 1 : 0;
        }
    }
    return false;
}

/// Starts the interpreter afresh for one input: every record reset, the
/// front end installed, the areas allocated, the budget set.
inline void start_interpreter(FuzzFrontEnd& front_end, std::string_view input) {
    reset_interpreter_state();
    front_end.input = input;
    front_end.pumps = 0;
    front_end.deadline = std::chrono::steady_clock::now() + time_per_input;
    host.front_end = &front_end;
    host.log = nullptr;
    if (init_language_tables(default_sizing()) != 0) std::abort();
    exec.statement_budget = statements_per_input;
}

/// CHDIR may move the process; the next input starts in the same folder.
class FolderKeeper {
public:
    FolderKeeper() {
        if (getcwd(folder_, sizeof folder_) == nullptr) folder_[0] = 0;
    }
    void restore() const {
        if (folder_[0] != 0 && chdir(folder_) != 0) std::abort();
    }

private:
    char folder_[4096];
};

/// The program file of an input, in a private temporary folder: programs
/// are loaded through the same file reading as `run "file"`.
class ProgramFile {
public:
    ProgramFile() {
        const char* tmp = std::getenv("TMPDIR");
        std::string folder = std::string(tmp != nullptr && tmp[0] != 0 ? tmp : "/tmp") + "/tessaline-fuzz-XXXXXX";
        if (mkdtemp(folder.data()) == nullptr) std::abort();
        path_ = folder + "/program.bas";
    }
    /// Writes `text` byte for byte (NUL bytes, lone CRs and overlong lines included).
    void write(std::string_view text) const {
        std::FILE* f = std::fopen(path_.c_str(), "wb");
        if (f == nullptr) std::abort();
        if (std::fwrite(text.data(), 1, text.size(), f) != text.size()) std::abort();
        std::fclose(f);
    }
    const char* path() const { return path_.c_str(); }

private:
    std::string path_;
};

}  // namespace tl::fuzz
