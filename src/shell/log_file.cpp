// log_file.cpp — opening, heading and closing the session log.
#include "shell/log_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>

#include "exec/front_end.h"

namespace tl::shell {
namespace {

constexpr const char* day_names[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
constexpr const char* month_names[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                       "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
constexpr const char* cant_open_message = "Cant open LOG file.";

/// Creates (or empties) the log and opens it for writing, or gives null.
/// Only a regular file is taken: the open never waits (a FIFO without a
/// reader would hold the start-up forever), a device or a FIFO is refused,
/// and the file is not passed on to programs that SPAWN starts.
std::FILE* open_log(const std::string& name) {
    const int fd = ::open(name.c_str(), O_WRONLY | O_CREAT | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0666);
    if (fd < 0) return nullptr;
    struct stat st {};
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode) || ::ftruncate(fd, 0) != 0 ||
        ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) & ~O_NONBLOCK) != 0) {
        ::close(fd);
        return nullptr;
    }
    std::FILE* log = ::fdopen(fd, "w");
    if (log == nullptr) ::close(fd);
    return log;
}

}  // namespace

std::string asctime_text(const std::tm& t) {
    const char* day = (t.tm_wday >= 0 && t.tm_wday < 7) ? day_names[t.tm_wday] : "???";
    const char* month = (t.tm_mon >= 0 && t.tm_mon < 12) ? month_names[t.tm_mon] : "???";
    char text[64];
    std::snprintf(text, sizeof text, "%.3s %.3s%3d %.2d:%.2d:%.2d %d\n", day, month, t.tm_mday, t.tm_hour, t.tm_min,
                  t.tm_sec, 1900 + t.tm_year);
    return text;
}

std::string log_file_full_name(const AppSettings& settings) {
    const std::string& path = settings.log_file_path;
    if (path.empty()) return settings.log_file_name;
    if (path.back() == '/') return path + settings.log_file_name;
    return path + "/" + settings.log_file_name;
}

bool start_log_file(const AppSettings& settings) {
    if (host.log != nullptr) return true;
    if (!settings.create_log_file) return false;

    std::FILE* log = open_log(log_file_full_name(settings));
    if (log != nullptr) {
        // A file that takes the open but not the header (a full disk) is no log either.
        const std::time_t now = std::time(nullptr);
        std::tm local{};
        localtime_r(&now, &local);
        const bool written =
            std::fprintf(log, "Tessaline BASIC Log File\nDate & Time = %s", asctime_text(local).c_str()) > 0 &&
            std::fflush(log) == 0;
        if (!written) {
            std::fclose(log);
            log = nullptr;
        }
    }
    if (log == nullptr) {
        if (host.front_end != nullptr && !host.front_end->console_mode())
            host.front_end->message_box("Error", cant_open_message);
        console_print("%s\n", cant_open_message);
        return false;
    }
    console_write("Log File Opened\n");
    host.log = log;
    return true;
}

void close_log_file() {
    if (host.log == nullptr) return;
    std::fclose(host.log);
    host.log = nullptr;
}

}  // namespace tl::shell
