// terminal_front_end.h — the front end of Console mode: the terminal, with line editing.
#pragma once

#include <cstdio>
#include <iostream>
#include <string>

#include "exec/front_end.h"

namespace tl::shell {

class TerminalFrontEnd final : public FrontEnd {
public:
    explicit TerminalFrontEnd(std::istream& in = std::cin, std::FILE* out = stdout) : in_(in), out_(out) {}

    /// Writes the text and flushes it, so output and prompts show at once.
    void write(std::string_view text) override;
    /// Shows the prompt and reads one line (without its "\n" or "\r\n"): with
    /// line editing and history when enabled, else a plain read.
    bool read_line(std::string_view prompt, std::string& line) override;
    /// One key without echo when standard input is a terminal; else one byte.
    int read_key() override;

    /// Line editing with history (only when standard input is a terminal).
    void enable_line_editing(const std::string& history_file);
    /// Adds a command line to the editing history.
    void remember(const std::string& line);
    /// Writes the history file (when line editing is on).
    void save_history();
    bool line_editing() const { return editing_; }

private:
    std::istream& in_;
    std::FILE* out_;
    bool editing_ = false;
    std::string history_file_;
};

/// Installs the Ctrl+C handler: it asks a running program to stop instead of
/// ending the interpreter.
void install_interrupt_handler();

}  // namespace tl::shell
