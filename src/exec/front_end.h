// front_end.h — the one interface through which the interpreter reaches the user.
//
// The interpreter core never talks to a terminal, a window or a test directly:
// each host (Console mode, the Qt window, the tests, the fuzzer) implements this
// interface and installs it with set_front_end().
#pragma once

#include <atomic>
#include <cstdio>
#include <string>
#include <string_view>

namespace tl {

class GraphWindow;
class ConsoleEffects;   // console_effects.h
class MessageDialog;    // message_dialog.h
class DocumentViewer;   // document_viewer.h
class PortChooser;

class FrontEnd {
public:
    virtual ~FrontEnd() = default;

    /// Appends text to the console. Text may hold several lines or part of one.
    virtual void write(std::string_view text) = 0;

    /// Reads one line of input after showing `prompt`; the line end is removed.
    /// Returns false at end of input.
    virtual bool read_line(std::string_view prompt, std::string& line) = 0;

    /// Reads one key without echo; returns -1 when none can be read, or
    /// key_end_of_input when the input has ended (no key can ever come).
    virtual int read_key() { return -1; }

    /// Runs between statements so that the user interface stays live.
    virtual void pump_events() {}

    /// True for the terminal front end, where graphs and dialogs are refused.
    virtual bool console_mode() const { return true; }

    /// Waits before a statement in step mode. Returns step_run_statement to
    /// execute one statement, step_command with a typed command line in
    /// `command`, or step_end when input ended (the program is stopped).
    virtual int wait_for_step(std::string& command) {
        if (!read_line("Stepping -- Command: ", command)) return -1;
        return command.empty() ? 0 : 1;
    }

    /// Shows a message to the user (a box in the window, a line in a terminal).
    virtual void message_box(std::string_view title, std::string_view text) {
        write(title);
        write(": ");
        write(text);
        write("\n");
    }
};

/// What FrontEnd::read_key gives when the input has ended.
constexpr int key_end_of_input = -2;

enum StepAnswer : int {
    step_end = -1,
    step_run_statement = 0,
    step_command = 1,
};

/// Flags through which a front end steers a running program. They are read by
/// the run loop at statement boundaries and may be set from a signal handler.
struct RunFlags {
    std::atomic<bool> interrupt_requested{false};
    std::atomic<bool> step_requested{false};
    std::atomic<bool> step_mode{false};
    /// INKEY$ found the input ended: the program ends before its next
    /// statement, as INPUT ends it there.
    std::atomic<bool> input_ended{false};
};

/// The interpreter's link to its host: the front end, the log file and the flags.
struct HostState {
    /// Installed front end (not owned); null means output is discarded.
    FrontEnd* front_end = nullptr;
    /// Open log file that receives a copy of every console line, or null.
    std::FILE* log = nullptr;
    RunFlags flags;
    /// The host's graph window (src/exec/graph_window.h), or null where
    /// graphs cannot be shown.
    GraphWindow* graph_window = nullptr;
    /// The host's serial-port chooser (src/exec/port_chooser.h), or null
    /// where none can be shown.
    PortChooser* port_chooser = nullptr;
    /// The folder that holds the interpreter itself, with its trailing
    /// separator (the special function "programdir$"); set by the shell.
    char program_folder[261] = {};
    /// Services of hosts that have windows (null: the Console-mode behaviour).
    ConsoleEffects* effects = nullptr;
    MessageDialog* message_dialog = nullptr;
    DocumentViewer* documents = nullptr;
    /// The last line typed for INPUT or LINE INPUT (kept so its storage is reused).
    std::string input_line;
};

extern HostState host;

/// Runs the front end's event pump (between statements, in long loops).
void pump_events();
/// Asks the front end what to do before a statement in step mode; a typed
/// command goes to `command` (at most 255 characters).
[[nodiscard]] int wait_for_step(char (&command)[256]);

/// Appends text to the console and copies it to the log, which is flushed at
/// once so that a killed process loses nothing that was shown.
void console_write(std::string_view text);

/// Copies text to the log only (a write failure is handled as below).
void log_write(std::string_view text);
/// Copies a line typed at `prompt` to the log (the terminal showed it itself).
void log_typed_line(std::string_view prompt, std::string_view line);

/// After a failed write to the log: closes it, says so once on the console
/// ("The log file could not be written (<reason>): logging stopped.") and
/// goes on without a log. `error` is the errno of the failure.
void stop_logging_after_failure(int error);

/// printf-style console output (cut at 4095 characters).
void console_print(const char* format, ...) __attribute__((format(printf, 1, 2)));

}  // namespace tl
