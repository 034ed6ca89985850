// terminal_front_end.h — the front end of Console mode: plain standard input and output.
#pragma once

#include <cstdio>
#include <iostream>

#include "exec/front_end.h"

namespace tl::shell {

class TerminalFrontEnd final : public FrontEnd {
public:
    explicit TerminalFrontEnd(std::istream& in = std::cin, std::FILE* out = stdout) : in_(in), out_(out) {}

    /// Writes the text and flushes it, so output and prompts show at once.
    void write(std::string_view text) override;

    /// Shows the prompt and reads one line (without its "\n" or "\r\n").
    bool read_line(std::string_view prompt, std::string& line) override;

private:
    std::istream& in_;
    std::FILE* out_;
};

}  // namespace tl::shell
