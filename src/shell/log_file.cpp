// log_file.cpp — opening, heading and closing the session log.
#include "shell/log_file.h"

#include <cstdio>

#include "exec/front_end.h"

namespace tl::shell {
namespace {

constexpr const char* day_names[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
constexpr const char* month_names[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                       "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
constexpr const char* cant_open_message = "Cant open LOG file.";

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

    std::FILE* log = std::fopen(log_file_full_name(settings).c_str(), "w");
    if (log == nullptr) {
        if (host.front_end != nullptr && !host.front_end->console_mode())
            host.front_end->message_box("Error", cant_open_message);
        console_print("%s\n", cant_open_message);
        return false;
    }

    console_write("Log File Opened\n");
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    std::fprintf(log, "Tessaline BASIC Log File\nDate & Time = %s", asctime_text(local).c_str());
    std::fflush(log);
    host.log = log;
    return true;
}

void close_log_file() {
    if (host.log == nullptr) return;
    std::fclose(host.log);
    host.log = nullptr;
}

}  // namespace tl::shell
