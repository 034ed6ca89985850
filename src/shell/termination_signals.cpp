// termination_signals.cpp — the handlers of SIGHUP, SIGTERM and SIGQUIT and the
// ending they lead to.
#include "shell/termination_signals.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "exec/front_end.h"
#include "shell/shell_state.h"

namespace tl::shell {
namespace {

constexpr int handled_signals[] = {SIGHUP, SIGTERM, SIGQUIT};

// Only async-signal-safe calls here: open, dup2, close and write.
void on_termination(int signal) {
    const int saved_errno = errno;
    if (shell_state.termination_signal == 0) shell_state.termination_signal = signal;
    host.flags.interrupt_requested.store(true);
    if (const int fd = shell_state.termination_wake_fd; fd >= 0) {
        const char byte = 1;
        (void)!::write(fd, &byte, 1);
    }
    const int null_device = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    if (null_device >= 0) {
        (void)::dup2(null_device, STDIN_FILENO);
        (void)::close(null_device);
    }
    errno = saved_errno;
}

}  // namespace

void install_termination_handlers() {
    // The terminal's settings as they are before the line editor changes
    // them, and a handle on it that survives standard input being replaced.
    if (isatty(STDIN_FILENO) && shell_state.terminal_fd < 0) {
        const int fd = ::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 3);
        if (fd >= 0 && tcgetattr(fd, &shell_state.terminal_mode) == 0)
            shell_state.terminal_fd = fd;
        else if (fd >= 0)
            ::close(fd);
    }
    struct sigaction action {};
    action.sa_handler = on_termination;
    sigemptyset(&action.sa_mask);
    for (const int s : handled_signals) sigaddset(&action.sa_mask, s);
    // A read that the signal interrupts is restarted, and then finds the
    // null device.
    action.sa_flags = SA_RESTART;
    for (const int s : handled_signals) sigaction(s, &action, nullptr);
}

void ignore_file_size_signal() {
    struct sigaction action {};
    action.sa_handler = SIG_IGN;
    sigemptyset(&action.sa_mask);
    sigaction(SIGXFSZ, &action, nullptr);
}

void set_termination_wake_fd(int fd) { shell_state.termination_wake_fd = fd; }

int termination_signal() { return shell_state.termination_signal; }

void end_by_termination_signal() {
    const int signal = shell_state.termination_signal;
    if (signal == 0) return;
    if (shell_state.terminal_fd >= 0) (void)tcsetattr(shell_state.terminal_fd, TCSANOW, &shell_state.terminal_mode);
    // The session was saved: a core file of it would show nothing.
    const rlimit no_core{0, 0};
    (void)setrlimit(RLIMIT_CORE, &no_core);
    struct sigaction action {};
    action.sa_handler = SIG_DFL;
    sigemptyset(&action.sa_mask);
    sigaction(signal, &action, nullptr);
    sigset_t only;
    sigemptyset(&only);
    sigaddset(&only, signal);
    sigprocmask(SIG_UNBLOCK, &only, nullptr);
    std::raise(signal);
    _exit(128 + signal);  // not reached
}

}  // namespace tl::shell
