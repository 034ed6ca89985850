// console_session.cpp — Console mode's command loop and its closing prompt.
#include "shell/console_session.h"

#include <algorithm>
#include <cstdio>

#include "exec/commands.h"
#include "exec/file_table.h"
#include "exec/run_loop.h"
#include "lang/lang_state.h"
#include "shell/recent_lists.h"
#include "shell/shell_state.h"

namespace tl::shell {
namespace {

/// The settings' recent-command list: newest first, no repeats, 20 at most.
void remember_command(const std::string& line) {
    remember_recent(shell_state.settings.recent_commands, line);
    shell_state.terminal.remember(line);
}

}  // namespace

int execute_typed_line(const std::string& line) {
    host.flags.interrupt_requested = false;
    if (lang.reporter.debug) console_print("\nCommand Line:     %s\n\n", line.c_str());
    return run_command_line(line.c_str());
}

bool run_program_file(const std::string& file) {
    host.flags.interrupt_requested = false;
    console_write("\n----- Beginning Program Execution---------------------------------------------\n");
    return load_and_run(file.c_str(), false, false) >= 0;
}

bool run_loaded_program() {
    host.flags.interrupt_requested = false;
    console_write("\n----- Beginning Program Execution---------------------------------------------\n");
    return load_and_run(nullptr, false, false) >= 0;
}

void run_console_loop(FrontEnd& front_end) {
    std::string line;
    for (;;) {
        if (!front_end.read_line(command_prompt, line)) {
            front_end.write("\n");  // end of input left the cursor after the prompt
            return;
        }
        if (line.empty()) return;
        log_typed_line(command_prompt, line);
        remember_command(line);
        (void)execute_typed_line(line);
    }
}

void wait_before_exit(FrontEnd& front_end) {
    // The session ends here: every file is written out and closed.
    close_all_files();
    console_write("Press <enter> to terminate program.\n");
    std::string ignored;
    (void)front_end.read_line("", ignored);
}

}  // namespace tl::shell
