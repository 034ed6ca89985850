// datetime_state.cpp — the zone in force, the system's zone and the clock.
#include "lang/datetime_state.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "lang/lang_state.h"

namespace tl {

DateTimeState datetime_state;

void system_zone(TimeZone& out) {
    const char* tz = std::getenv("TZ");
    if (tz != nullptr && *tz != 0) {
        std::string_view text(tz);
        if (text.front() == ':') text.remove_prefix(1);
        if (!text.empty() && text.front() == '/') {
            if (load_zone_file(std::string(text), text, out) == 0) return;
        } else if (load_database_zone(text, out) == 0) {
            return;
        }
        ZoneRule rule;
        if (parse_rule_text(text, rule)) {
            zone_from_rule(rule, text, out);
            return;
        }
    } else {
        std::error_code ec;
        const std::filesystem::path target = std::filesystem::read_symlink("/etc/localtime", ec);
        std::string name = "localtime";
        if (!ec) {
            const std::string s = target.string();
            const std::size_t at = s.find("zoneinfo/");
            if (at != std::string::npos) name = s.substr(at + 9);
        }
        if (load_zone_file("/etc/localtime", name, out) == 0) return;
    }
    zone_from_rule(ZoneRule{}, "UTC", out);
}

const TimeZone& current_zone() {
    if (!datetime_state.zone_ready) {
        system_zone(datetime_state.zone);
        datetime_state.zone_ready = true;
    }
    return datetime_state.zone;
}

void set_current_zone(TimeZone&& zone) {
    datetime_state.zone = std::move(zone);
    datetime_state.zone_ready = true;
}

double datetime_now() {
    const auto since = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration<double>(since).count();
}

double no_date_value() { return lang.predefined[pre_defaultzerodatetime].number; }

void reset_datetime_state() { datetime_state = DateTimeState{}; }

}  // namespace tl
