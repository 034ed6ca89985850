// front_end.cpp — console output through the installed front end, copied to the log.
#include "exec/front_end.h"

#include <cstdarg>
#include <string>

namespace tl {

HostState host;

void console_write(std::string_view text) {
    if (text.empty()) return;
    // The log first: a process killed in between has logged all it showed.
    if (host.log != nullptr) {
        std::fwrite(text.data(), 1, text.size(), host.log);
        std::fflush(host.log);
    }
    if (host.front_end != nullptr) host.front_end->write(text);
}

void pump_events() {
    if (host.front_end != nullptr) host.front_end->pump_events();
}

int wait_for_step(char (&command)[256]) {
    command[0] = 0;
    if (host.front_end == nullptr) return step_end;
    std::string line;
    const int r = host.front_end->wait_for_step(line);
    if (r == step_command) {
        const std::size_t n = line.size() < 255 ? line.size() : 255;
        line.copy(command, n);
        command[n] = 0;
    }
    return r;
}

void console_print(const char* format, ...) {
    char buffer[4096];
    va_list args;
    va_start(args, format);
    int n = std::vsnprintf(buffer, sizeof buffer, format, args);
    va_end(args);
    if (n < 0) return;
    if (n >= static_cast<int>(sizeof buffer)) n = sizeof buffer - 1;
    console_write(std::string_view(buffer, static_cast<std::size_t>(n)));
}

}  // namespace tl
