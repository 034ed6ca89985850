// terminal_front_end.cpp — console output, line input with libedit, keys and Ctrl+C.
#include "shell/terminal_front_end.h"

#include <termios.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <string>

#include "shell/line_editor.h"

namespace tl::shell {
namespace {

constexpr int history_length = 1000;

void on_interrupt(int) { host.flags.interrupt_requested.store(true); }

}  // namespace

void install_interrupt_handler() {
    struct sigaction action {};
    action.sa_handler = on_interrupt;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    sigaction(SIGINT, &action, nullptr);
}

void TerminalFrontEnd::write(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), out_);
    std::fflush(out_);
}

bool TerminalFrontEnd::read_line(std::string_view prompt, std::string& line) {
    if (editing_) {
        const std::string p(prompt);
        char* text = line_editor()->readline(p.c_str());
        if (text == nullptr) return false;
        line = text;
        std::free(text);
    } else {
        if (!prompt.empty()) write(prompt);
        if (!std::getline(in_, line)) return false;
    }
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return true;
}

int TerminalFrontEnd::read_key() {
    std::fflush(out_);
    if (&in_ == &std::cin && isatty(STDIN_FILENO)) {
        termios saved{};
        if (tcgetattr(STDIN_FILENO, &saved) == 0) {
            termios raw = saved;
            raw.c_lflag &= static_cast<tcflag_t>(~(ICANON | ECHO));
            raw.c_cc[VMIN] = 1;
            raw.c_cc[VTIME] = 0;
            tcsetattr(STDIN_FILENO, TCSANOW, &raw);
            unsigned char c = 0;
            const ssize_t n = ::read(STDIN_FILENO, &c, 1);
            tcsetattr(STDIN_FILENO, TCSANOW, &saved);
            return n == 1 ? c : n == 0 ? key_end_of_input : -1;
        }
    }
    const int c = in_.get();
    return in_ ? c : key_end_of_input;
}

void TerminalFrontEnd::enable_line_editing(const std::string& history_file) {
    if (&in_ != &std::cin || !isatty(STDIN_FILENO)) return;
    const LineEditor* editor = line_editor();
    if (editor == nullptr) return;  // plain reading
    editing_ = true;
    history_file_ = history_file;
    // Ctrl+C only sets the interrupt flag (our handler); the line editor must
    // not pass it on as a signal that ends the interpreter.
    *editor->catch_signals = 0;
    editor->using_history();
    editor->stifle_history(history_length);
    if (!history_file_.empty()) editor->read_history(history_file_.c_str());
}

void TerminalFrontEnd::remember(const std::string& line) {
    if (editing_ && !line.empty()) line_editor()->add_history(line.c_str());
}

void TerminalFrontEnd::save_history() {
    if (editing_ && !history_file_.empty()) line_editor()->write_history(history_file_.c_str());
}

}  // namespace tl::shell
