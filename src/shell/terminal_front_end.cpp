// terminal_front_end.cpp — console output and line input for Console mode.
#include "shell/terminal_front_end.h"

#include <string>

namespace tl::shell {

void TerminalFrontEnd::write(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), out_);
    std::fflush(out_);
}

bool TerminalFrontEnd::read_line(std::string_view prompt, std::string& line) {
    if (!prompt.empty()) write(prompt);
    if (!std::getline(in_, line)) return false;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return true;
}

}  // namespace tl::shell
