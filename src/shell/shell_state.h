// shell_state.h — the application shell's process-wide state.
#pragma once

#include <string>

#include "shell/settings.h"
#include "shell/terminal_front_end.h"

namespace tl::shell {

struct ShellState {
    /// The settings as read at start-up; written back at exit.
    AppSettings settings;
    /// The folder that holds the executable.
    std::string program_folder;
    /// The folder chosen at start-up and made current.
    std::string working_folder;
    /// True in Console mode ("/c"); until the window exists the shell always runs so.
    bool console_mode = true;
    /// The front end of Console mode.
    TerminalFrontEnd terminal;
};

extern ShellState shell_state;

}  // namespace tl::shell
