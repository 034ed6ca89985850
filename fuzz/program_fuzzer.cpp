// program_fuzzer.cpp — a whole program file: load, check pass and run.
//
// The input up to a line "#INPUT#" is the program file, given byte for byte
// (NUL bytes, lone CRs and overlong lines included); the lines behind it
// answer INPUT. The program is loaded through the same file reading as
// `run "file"`, so the file is written to a private temporary folder first.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "exec/commands.h"
#include "exec/run_loop.h"
#include "fuzz_host.h"

namespace {

struct Harness {
    tl::fuzz::FuzzFrontEnd front_end;
    tl::fuzz::FolderKeeper folder;
    tl::fuzz::ProgramFile file;
};

Harness* harness = nullptr;

constexpr std::string_view input_marker = "\n#INPUT#\n";

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    harness = new Harness;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view all(reinterpret_cast<const char*>(data), size);
    if (tl::fuzz::mentions_spawn(all)) return -1;
    const std::size_t marker = all.find(input_marker);
    const std::string_view program = all.substr(0, marker);
    const std::string_view answers =
        marker == std::string_view::npos ? std::string_view() : all.substr(marker + input_marker.size());

    harness->file.write(program);
    tl::fuzz::start_interpreter(harness->front_end, answers);
    (void)tl::load_and_run(harness->file.path(), false, false);
    // Whatever the program did, the prompt must still work afterwards.
    tl::exec.statement_budget = tl::fuzz::statements_per_input;
    harness->front_end.pumps = 0;
    harness->front_end.deadline = std::chrono::steady_clock::now() + tl::fuzz::time_per_input;
    (void)tl::run_command_line("print 1 + 1");
    harness->folder.restore();
    return 0;
}
