// shell_state.h — the application shell's process-wide state.
#pragma once

#include <termios.h>

#include <csignal>
#include <string>

#include "shell/settings.h"
#include "shell/terminal_front_end.h"

namespace tl::shell {

struct SessionStart;

struct ShellState {
    /// The settings as read at start-up; written when they change and at exit.
    AppSettings settings;
    /// The session begun and not yet ended (what save_settings_now saves with), or null.
    SessionStart* session = nullptr;
    /// The folder that holds the executable.
    std::string program_folder;
    /// The folder chosen at start-up and made current.
    std::string working_folder;
    /// True in Console mode ("/c"); until the window exists the shell always runs so.
    bool console_mode = true;
    /// The front end of Console mode.
    TerminalFrontEnd terminal;
    /// SIGHUP, SIGTERM or SIGQUIT once one asked the session to end (set by
    /// its handler), else 0.
    volatile std::sig_atomic_t termination_signal = 0;
    /// Where the handler of those signals also writes a byte (a pipe that
    /// the window's event loop watches), or -1.
    volatile std::sig_atomic_t termination_wake_fd = -1;
    /// The terminal as standard input was at start-up (a duplicate, or -1)
    /// and its settings then, given back when a signal ends the session.
    int terminal_fd = -1;
    termios terminal_mode{};
};

extern ShellState shell_state;

}  // namespace tl::shell
