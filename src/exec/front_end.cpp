// front_end.cpp — console output through the installed front end, copied to the log.
#include "exec/front_end.h"

#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <string>

namespace tl {

HostState host;

namespace {

/// Writes text to the log, if one is open, and flushes it. Returns 0, or the
/// errno of a failed write.
int copy_to_log(std::string_view text) {
    if (host.log == nullptr) return 0;
    errno = 0;
    const bool written = std::fwrite(text.data(), 1, text.size(), host.log) == text.size();
    if (std::fflush(host.log) == 0 && written) return 0;
    return errno != 0 ? errno : EIO;
}

}  // namespace

void console_write(std::string_view text) {
    if (text.empty()) return;
    // The log first: a process killed in between has logged all it showed.
    const int error = copy_to_log(text);
    if (host.front_end != nullptr) host.front_end->write(text);
    if (error != 0) stop_logging_after_failure(error);
}

void log_write(std::string_view text) {
    if (const int error = copy_to_log(text); error != 0) stop_logging_after_failure(error);
}

void log_typed_line(std::string_view prompt, std::string_view line) {
    log_write(prompt);
    log_write(line);
    log_write("\n");
}

void stop_logging_after_failure(int error) {
    if (host.log == nullptr) return;
    std::fclose(host.log);
    host.log = nullptr;
    console_print("\nThe log file could not be written (%s): logging stopped.\n",
                  std::strerror(error));
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
