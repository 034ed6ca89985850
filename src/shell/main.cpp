// main.cpp — the program's entry: command-line checks, start-up, Console mode, exit.
#include <cstdio>
#include <string>
#include <vector>

#include "exec/front_end.h"
#include "lang/language_init.h"
#include "shell/command_line.h"
#include "shell/console_session.h"
#include "shell/log_file.h"
#include "shell/settings.h"
#include "shell/shell_state.h"
#include "shell/working_folder.h"

namespace {

using namespace tl::shell;

/// Start-up in its fixed order; returns the exit code when the session is over.
int run_session() {
    ShellState& s = shell_state;
    s.settings = load_settings();
    tl::host.front_end = &s.terminal;

    if (tl::init_language_tables(s.settings.sizes) < 0) return 1;

    s.working_folder = choose_working_folder(s.settings, user_documents_folder(), s.program_folder);
    if (!enter_working_folder(s.working_folder))
        std::fprintf(stderr, "Cannot enter the working folder %s\n", s.working_folder.c_str());
    start_log_file(s.settings);

    run_console_loop(s.terminal);
    wait_before_exit(s.terminal);

    if (!save_settings(s.settings)) std::fprintf(stderr, "The settings could not be saved.\n");
    close_log_file();
    tl::host.front_end = nullptr;
    return 0;
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
    return run_session();
}
