// error_reporter.h — the one routine through which every language error is shown.
#pragma once

#include <string_view>

namespace tl {

/// What the reporter needs to know about the statement being worked on and
/// the display state; owned by the language core's state (see lang_state.h).
struct ReporterState {
    /// The current line text (NUL-terminated) and the start of the statement
    /// within it; no echo is printed while `text` is null.
    const char* text = nullptr;
    const char* statement_start = nullptr;
    /// Column of the offending Item, relative to the statement start. The
    /// routine that detects an error sets it before reporting.
    int error_column = 0;
    /// Debug output state: pass-through messages are shown only while it is on.
    bool debug = false;
    /// Set by the run loop when the echo follows a fresh line already (after
    /// the stepping or trace display), so no newline is printed before it.
    bool display_after_step = false;
    bool display_after_trace = false;
    /// Guards against reports made while a report is being printed.
    bool reporting = false;
    /// Set for the duration of report_error_no_echo.
    bool no_echo = false;
};

/// Reports error `number` (0 to 337, or err_already_reported): prints the
/// statement echo, the caret line and "ERROR - <message>", except that
/// pass-through messages (0 and texts starting with "-") print only in the
/// debug state. Returns -number (-1 for 0), so `return report_error(n);`
/// both reports and propagates.
[[nodiscard]] int report_error(int number);

/// As report_error, without the statement echo and caret line.
[[nodiscard]] int report_error_no_echo(int number);

/// The caret line for `text` with the caret at `column` (clamped to the text,
/// moved right past blanks and tabs; tabs before it are kept). Exposed for tests.
std::string_view caret_line(const char* text, int column, char (&buffer)[260]);

}  // namespace tl
