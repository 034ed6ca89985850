// main.cpp — the program's entry: command-line checks, start-up, Console mode, exit.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "exec/front_end.h"
#include "exec/memory_areas.h"
#include "lang/language_init.h"
#include "shell/command_line.h"
#include "shell/console_session.h"
#include "shell/log_file.h"
#include "shell/session_settings.h"
#include "shell/settings.h"
#include "shell/shell_state.h"
#include "shell/termination_signals.h"
#include "shell/working_folder.h"

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

/// Start-up in its fixed order; returns the exit code when the session is over.
int run_session(const std::string& program_file) {
    ShellState& s = shell_state;
    const std::string snapshot_path = settings_snapshot_path();
    const SettingsSnapshot loaded = load_session_settings(snapshot_path);
    s.settings = loaded.settings;
    tl::host.front_end = &s.terminal;

    if (tl::init_language_tables(s.settings.sizes) < 0) return 1;
    std::snprintf(tl::host.program_folder, sizeof tl::host.program_folder, "%s%s", s.program_folder.c_str(),
                  s.program_folder.ends_with('/') ? "" : "/");

    s.working_folder = choose_working_folder(s.settings, loaded.documents_folder, s.program_folder);
    if (!enter_working_folder(s.working_folder))
        std::fprintf(stderr, "Cannot enter the working folder %s\n", s.working_folder.c_str());
    start_log_file(s.settings);

    install_interrupt_handler();
    install_termination_handlers();
    s.terminal.enable_line_editing(history_file());
    bool program_ok = true;
    if (!program_file.empty()) program_ok = run_program_file(program_file);
    if (termination_signal() == 0) run_console_loop(s.terminal);
    s.terminal.save_history();
    if (termination_signal() == 0) wait_before_exit(s.terminal);

    if (!save_session_settings(s.settings, loaded, snapshot_path))
        std::fprintf(stderr, "The settings could not be saved.\n");
    close_log_file();
    tl::reset_interpreter_state();  // gives back every area, arrays included
    tl::host.front_end = nullptr;
    return program_ok ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    const std::string program_path = argc > 0 && argv[0] != nullptr ? argv[0] : "";
    const std::vector<std::string> parameters(argv + (argc > 0 ? 1 : 0), argv + argc);

    const CommandLineCheck check = check_command_line(program_path, parameters);
    switch (check.action) {
    case StartAction::refuse:
        std::fprintf(stderr, "Error: %s\n", check.error.c_str());
        return -1;
    case StartAction::show_help:
        std::fputs(usage_text().c_str(), stdout);
        return 0;
    case StartAction::show_version:
        std::printf("Tessaline %s\n", tessaline_version);
        return 0;
    case StartAction::run:
        break;
    }

    shell_state.program_folder = folder_of(executable_path(argc > 0 ? argv[0] : nullptr));
    // The window does not exist yet, so every start runs in Console mode.
    shell_state.console_mode = true;
    // A program named on the command line is found from the folder Tessaline
    // was started in, before the working folder becomes current.
    std::string program_file = check.program_file;
    if (!program_file.empty()) {
        std::error_code ec;
        const std::filesystem::path absolute = std::filesystem::absolute(program_file, ec);
        if (!ec) program_file = absolute.lexically_normal().string();
    }
    const int code = run_session(program_file);
    end_by_termination_signal();
    return code;
}
