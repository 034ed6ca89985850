// termination_signals.h — ending the session cleanly on SIGHUP, SIGTERM and SIGQUIT.
//
// A closed terminal, a polite kill or Ctrl+\ ends Tessaline the way an empty
// command line does: the running program is stopped, the history, the
// settings and the log are saved and closed, and the process then ends by
// the same signal, so that its parent sees why it ended.
#pragma once

namespace tl::shell {

/// Installs the handlers. Each records the signal, raises the interrupt flag
/// (a running program stops at its next statement) and puts the null device
/// on standard input, so that any read in progress or to come (the prompt,
/// INPUT, the stepping prompt, the closing prompt) ends as at the end of input.
void install_termination_handlers();

/// A file written past the size limit of the process (ulimit -f) fails its
/// write with an error that the statement reports, instead of the signal
/// ending the process. Programs that SPAWN starts get the default back.
void ignore_file_size_signal();

/// A window's event loop sleeps until something happens: after this, every
/// handled signal also writes one byte to `fd` (the writing end of a pipe
/// the loop watches; -1 for none), so that the loop wakes and closes the
/// window.
void set_termination_wake_fd(int fd);

/// The signal that asked Tessaline to end, or 0.
[[nodiscard]] int termination_signal();

/// After everything has been saved: gives the terminal back its settings
/// from before the session and ends the process by the recorded signal (its
/// default action, without a core file). Returns only when no signal came.
void end_by_termination_signal();

}  // namespace tl::shell
