// command_line_fuzzer.cpp — one line typed at the prompt.
//
// The first line of the input is the command; the lines after it answer
// INPUT, LINE INPUT and the stepping prompt. The interpreter starts afresh
// for every input, so a finding replays on its own.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "exec/run_loop.h"
#include "fuzz_host.h"

namespace {

/// The harness's own state (the interpreter's records are reset per input).
struct Harness {
    tl::fuzz::FuzzFrontEnd front_end;
    tl::fuzz::FolderKeeper folder;
};

Harness* harness = nullptr;

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    harness = new Harness;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view all(reinterpret_cast<const char*>(data), size);
    if (tl::fuzz::mentions_spawn(all)) return -1;
    const std::size_t end = all.find('\n');
    const std::string command(all.substr(0, end));  // cut at an embedded NUL, as a typed line is
    const std::string_view rest = end == std::string_view::npos ? std::string_view() : all.substr(end + 1);

    tl::fuzz::start_interpreter(harness->front_end, rest);
    (void)tl::run_command_line(command.c_str());
    // The prompt must still work after whatever the line did.
    tl::exec.statement_budget = tl::fuzz::statements_per_input;
    harness->front_end.pumps = 0;
    harness->front_end.deadline = std::chrono::steady_clock::now() + tl::fuzz::time_per_input;
    (void)tl::run_command_line("x = 1 + 1");
    harness->folder.restore();
    return 0;
}
