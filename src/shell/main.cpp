// main.cpp — the program's entry: command-line checks, start-up, Console mode, exit.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "shell/command_line.h"
#include "shell/console_session.h"
#include "shell/log_file.h"
#include "shell/session.h"
#include "shell/shell_state.h"
#include "shell/termination_signals.h"
#include "shell/window_launch.h"

namespace {

using namespace tl::shell;

/// The history file of the line editor, under the user's state folder.
std::string history_file() {
    const char* state = std::getenv("XDG_STATE_HOME");
    std::string folder;
    if (state != nullptr && *state != 0) {
        folder = state;
    } else if (const char* home = std::getenv("HOME"); home != nullptr && *home != 0) {
        folder = std::string(home) + "/.local/state";
    } else {
        return {};
    }
    folder += "/tessaline";
    std::error_code ec;
    std::filesystem::create_directories(folder, ec);
    return ec ? std::string() : folder + "/history";
}

/// Console mode from start to end; returns the exit code.
int run_session(const std::string& program_file) {
    ShellState& s = shell_state;
    SessionStart start;
    if (!begin_session(start, s.terminal)) return 1;
    start_log_file(s.settings);

    install_interrupt_handler();
    install_termination_handlers();
    s.terminal.enable_line_editing(history_file());
    bool program_ok = true;
    if (!program_file.empty()) program_ok = run_program_file(program_file);
    if (termination_signal() == 0) run_console_loop(s.terminal);
    s.terminal.save_history();
    if (termination_signal() == 0) wait_before_exit(s.terminal);
    end_session(start);
    return program_ok ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    const std::string program_path = argc > 0 && argv[0] != nullptr ? argv[0] : "";
    const std::vector<std::string> parameters(argv + (argc > 0 ? 1 : 0), argv + argc);

    // Before the window program takes over, which keeps the setting.
    ignore_file_size_signal();
    const CommandLineCheck check = check_command_line(program_path, parameters);
    if (int status = 0; answer_without_running(check, status)) return status;

    const std::string executable = executable_path(argc > 0 ? argv[0] : nullptr);
    // The window and batch mode are the window program's; Console mode is
    // this one's, also when no display can be opened.
    if (check.batch) {
        exec_window_program(executable, argv);
        return 1;
    }
    if (!check.console_mode) {
        if (display_available()) exec_window_program(executable, argv);
        else std::fputs(no_display_message, stderr);
    }
    shell_state.program_folder = folder_of(executable);
    shell_state.console_mode = true;
    // A program named on the command line is found from the folder Tessaline
    // was started in, before the working folder becomes current.
    const std::string program_file = absolute_program_file(check.program_file);
    const int code = run_session(program_file);
    end_by_termination_signal();
    return code;
}
