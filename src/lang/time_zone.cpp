// time_zone.cpp — zone periods, local-to-UTC conversion, zone files and rule texts.
#include "lang/time_zone.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "exec/open_without_waiting.h"
#include "lang/civil_calendar.h"

namespace tl {
namespace {

constexpr std::int64_t seconds_per_day = 86400;

/// UTC second of the change `d` in year `y`, the local clock showing `offset_before`.
std::int64_t rule_change(const RuleDate& d, std::int64_t y, std::int32_t offset_before) {
    std::int64_t days = 0;
    switch (d.kind) {
        case RuleDate::month_week_day: {
            const std::int64_t first = days_from_civil(y, d.month, 1);
            int day = 1 + (d.weekday - weekday_from_days(first) + 7) % 7 + (d.week - 1) * 7;
            while (day > days_in_month(y, d.month)) day -= 7;
            days = first + day - 1;
            break;
        }
        case RuleDate::julian_no_leap:
            days = days_from_civil(y, 1, 1) + d.day - 1 + (is_leap_year(y) && d.day >= 60 ? 1 : 0);
            break;
        case RuleDate::zero_based_day: days = days_from_civil(y, 1, 1) + d.day; break;
    }
    return days * seconds_per_day + d.time - offset_before;
}

ZonePeriod standard_period(const ZoneRule& r, std::int64_t begin) {
    return {begin, period_unbounded_end, r.std_offset, false, r.std_abbr.c_str()};
}

/// The period of `r` containing `t`, not beginning before `floor_begin`.
ZonePeriod rule_period(const ZoneRule& r, std::int64_t t, std::int64_t floor_begin) {
    if (!r.has_dst) return standard_period(r, floor_begin);
    const std::int64_t y = civil_from_days(floor_div(t + r.std_offset, seconds_per_day)).year;
    struct Change {
        std::int64_t at;
        bool to_dst;
    } changes[6];
    for (int k = 0; k < 3; ++k) {
        changes[2 * k] = {rule_change(r.start, y - 1 + k, r.std_offset), true};
        changes[2 * k + 1] = {rule_change(r.end, y - 1 + k, r.dst_offset), false};
    }
    std::sort(std::begin(changes), std::end(changes), [](const Change& a, const Change& b) { return a.at < b.at; });
    int i = 5;
    while (i >= 0 && changes[i].at > t) --i;
    ZonePeriod p;
    bool dst = false;
    if (i < 0) {
        p.begin = period_unbounded_begin;
        dst = !changes[0].to_dst;
    } else {
        p.begin = changes[i].at;
        dst = changes[i].to_dst;
    }
    p.end = i < 5 ? changes[i + 1].at : period_unbounded_end;
    p.begin = std::max(p.begin, floor_begin);
    p.dst = dst;
    p.offset = dst ? r.dst_offset : r.std_offset;
    p.abbr = dst ? r.dst_abbr.c_str() : r.std_abbr.c_str();
    return p;
}

ZonePeriod type_period(const TimeZone& z, int type, std::int64_t begin, std::int64_t end) {
    const ZoneType& ty = z.types[static_cast<std::size_t>(type)];
    return {begin, end, ty.offset, ty.dst, z.abbrs.c_str() + ty.abbr};
}

// ---- the database files ------------------------------------------------------

std::int64_t read_be(const unsigned char* p, int size) {
    std::uint64_t v = 0;
    for (int i = 0; i < size; ++i) v = (v << 8) | p[i];
    if (size == 4) return static_cast<std::int32_t>(static_cast<std::uint32_t>(v));
    return static_cast<std::int64_t>(v);
}

struct Counts {
    std::uint32_t isut, isstd, leap, time, type, chars;
};

bool read_header(const std::string& data, std::size_t at, Counts& c, char& version) {
    if (data.size() < at + 44 || data.compare(at, 4, "TZif") != 0) return false;
    version = data[at + 4];
    const auto* p = reinterpret_cast<const unsigned char*>(data.data() + at + 20);
    std::uint32_t* fields[6] = {&c.isut, &c.isstd, &c.leap, &c.time, &c.type, &c.chars};
    for (int i = 0; i < 6; ++i) *fields[i] = static_cast<std::uint32_t>(read_be(p + 4 * i, 4));
    return c.type >= 1 && c.type <= 256 && c.chars >= 1 && c.time < 100000 && c.leap < 100000;
}

std::size_t block_size(const Counts& c, int time_size) {
    return c.time * static_cast<std::size_t>(time_size) + c.time + c.type * 6u + c.chars +
           c.leap * static_cast<std::size_t>(time_size + 4) + c.isstd + c.isut;
}

bool parse_zone_data(const std::string& data, TimeZone& z) {
    Counts c{};
    char version = 0;
    if (!read_header(data, 0, c, version)) return false;
    std::size_t at = 44;
    int time_size = 4;
    if (version >= '2') {  // skip the 32-bit block; the 64-bit one follows
        at += block_size(c, 4);
        if (!read_header(data, at, c, version)) return false;
        at += 44;
        time_size = 8;
    }
    if (data.size() < at + block_size(c, time_size)) return false;
    const auto* p = reinterpret_cast<const unsigned char*>(data.data() + at);
    z.transitions.resize(c.time);
    z.transition_types.resize(c.time);
    for (std::uint32_t i = 0; i < c.time; ++i) z.transitions[i] = read_be(p + i * time_size, time_size);
    p += c.time * static_cast<std::size_t>(time_size);
    for (std::uint32_t i = 0; i < c.time; ++i) {
        if (p[i] >= c.type) return false;
        z.transition_types[i] = p[i];
    }
    p += c.time;
    z.types.resize(c.type);
    for (std::uint32_t i = 0; i < c.type; ++i, p += 6) {
        z.types[i].offset = static_cast<std::int32_t>(read_be(p, 4));
        z.types[i].dst = p[4] != 0;
        z.types[i].abbr = p[5];
        if (p[5] >= c.chars || std::abs(z.types[i].offset) > 25 * 3600) return false;
    }
    z.abbrs.assign(reinterpret_cast<const char*>(p), c.chars);
    z.abbrs.push_back(0);
    if (!std::is_sorted(z.transitions.begin(), z.transitions.end())) return false;
    z.before_type = 0;
    for (std::uint32_t i = 0; i < c.type; ++i) {
        if (!z.types[i].dst) {
            z.before_type = static_cast<int>(i);
            break;
        }
    }
    z.has_rule = false;
    if (time_size == 8) {  // the rule for the times after the last transition
        const std::size_t footer = at + block_size(c, time_size);
        if (footer < data.size() && data[footer] == '\n') {
            const std::size_t close = data.find('\n', footer + 1);
            if (close == std::string::npos) return false;
            const std::string_view text(data.data() + footer + 1, close - footer - 1);
            if (!text.empty()) {
                if (!parse_rule_text(text, z.rule)) return false;
                z.has_rule = true;
            }
        }
    }
    return true;
}

bool safe_zone_name(std::string_view name) {
    if (name.empty() || name.size() > 200 || name.front() == '/' || name.back() == '/') return false;
    std::size_t start = 0;
    for (;;) {
        const std::size_t slash = name.find('/', start);
        const std::string_view part = name.substr(start, slash == std::string_view::npos ? name.npos : slash - start);
        if (part.empty() || part.front() == '.') return false;
        for (char ch : part) {
            const bool ok = (ch >= 'a' && ch <= 'z') || (ch >= 'A' && ch <= 'Z') || (ch >= '0' && ch <= '9') ||
                            ch == '_' || ch == '-' || ch == '+' || ch == '.';
            if (!ok) return false;
        }
        if (slash == std::string_view::npos) return true;
        start = slash + 1;
    }
}

bool same_ignoring_case(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        char x = a[i], y = b[i];
        if (x >= 'A' && x <= 'Z') x = static_cast<char>(x - 'A' + 'a');
        if (y >= 'A' && y <= 'Z') y = static_cast<char>(y - 'A' + 'a');
        if (x != y) return false;
    }
    return true;
}

/// The file of `name` under `root`, its parts matched without regard to case
/// when no exact match exists; `canonical` gets the name as spelt on disk.
bool find_zone_file(const std::filesystem::path& root, std::string_view name, std::filesystem::path& file,
                    std::string& canonical) {
    namespace fs = std::filesystem;
    std::error_code ec;
    fs::path at = root;
    canonical.clear();
    std::size_t start = 0;
    for (;;) {
        const std::size_t slash = name.find('/', start);
        const std::string_view part = name.substr(start, slash == std::string_view::npos ? name.npos : slash - start);
        fs::path next = at / std::string(part);
        std::string spelt(part);
        if (!fs::exists(next, ec)) {
            bool found = false;
            for (const auto& entry : fs::directory_iterator(at, ec)) {
                const std::string candidate = entry.path().filename().string();
                if (same_ignoring_case(candidate, part)) {
                    next = entry.path();
                    spelt = candidate;
                    found = true;
                    break;
                }
            }
            if (!found) return false;
        }
        at = next;
        if (!canonical.empty()) canonical += '/';
        canonical += spelt;
        if (slash == std::string_view::npos) break;
        start = slash + 1;
    }
    file = at;
    return fs::is_regular_file(file, ec);
}

// ---- rule texts ----------------------------------------------------------------

struct Reader {
    std::string_view s;
    std::size_t i = 0;
    [[nodiscard]] bool at_end() const { return i >= s.size(); }
    [[nodiscard]] char peek() const { return at_end() ? '\0' : s[i]; }
    bool take(char c) {
        if (peek() != c) return false;
        ++i;
        return true;
    }
    bool number(int& out, int max) {
        const std::size_t from = i;
        long v = 0;
        while (!at_end() && s[i] >= '0' && s[i] <= '9') {
            v = v * 10 + (s[i] - '0');
            if (v > max) return false;
            ++i;
        }
        out = static_cast<int>(v);
        return i > from;
    }
};

bool read_abbr(Reader& r, std::string& out) {
    const std::size_t from = r.i;
    if (r.take('<')) {
        while (!r.at_end() && r.peek() != '>') ++r.i;
        if (!r.take('>')) return false;
        out.assign(r.s.substr(from + 1, r.i - from - 2));
        return !out.empty();
    }
    while (!r.at_end() && ((r.peek() >= 'A' && r.peek() <= 'Z') || (r.peek() >= 'a' && r.peek() <= 'z'))) ++r.i;
    out.assign(r.s.substr(from, r.i - from));
    return out.size() >= 3;
}

/// [+-]hh[:mm[:ss]] with hh up to `max_hours`.
bool read_clock(Reader& r, std::int32_t& out, int max_hours) {
    int sign = 1;
    if (r.take('-')) {
        sign = -1;
    } else {
        (void)r.take('+');
    }
    int h = 0, m = 0, sec = 0;
    if (!r.number(h, max_hours)) return false;
    if (r.take(':')) {
        if (!r.number(m, 59)) return false;
        if (r.take(':') && !r.number(sec, 59)) return false;
    }
    out = sign * (h * 3600 + m * 60 + sec);
    return true;
}

bool read_rule_date(Reader& r, RuleDate& d) {
    if (r.take('M')) {
        d.kind = RuleDate::month_week_day;
        if (!r.number(d.month, 12) || d.month < 1 || !r.take('.') || !r.number(d.week, 5) || d.week < 1 ||
            !r.take('.') || !r.number(d.weekday, 6))
            return false;
    } else if (r.take('J')) {
        d.kind = RuleDate::julian_no_leap;
        if (!r.number(d.day, 365) || d.day < 1) return false;
    } else {
        d.kind = RuleDate::zero_based_day;
        if (!r.number(d.day, 365)) return false;
    }
    d.time = 7200;
    if (r.take('/')) return read_clock(r, d.time, 167);
    return true;
}

}  // namespace

ZonePeriod zone_period(const TimeZone& z, std::int64_t t) {
    const std::size_t n = z.transitions.size();
    if (n == 0) {
        if (z.has_rule || z.types.empty()) return rule_period(z.rule, t, period_unbounded_begin);
        return type_period(z, z.before_type, period_unbounded_begin, period_unbounded_end);
    }
    const auto it = std::upper_bound(z.transitions.begin(), z.transitions.end(), t);
    const auto idx = static_cast<std::size_t>(it - z.transitions.begin());
    if (idx == 0) return type_period(z, z.before_type, period_unbounded_begin, z.transitions[0]);
    if (idx == n) {
        if (z.has_rule) return rule_period(z.rule, t, z.transitions[n - 1]);
        return type_period(z, z.transition_types[n - 1], z.transitions[n - 1], period_unbounded_end);
    }
    return type_period(z, z.transition_types[idx - 1], z.transitions[idx - 1], z.transitions[idx]);
}

std::int64_t local_to_utc(const TimeZone& zone, std::int64_t local) {
    // Offsets stay within 26 hours of UTC: every period that can hold the
    // answer meets [local - 27h, local + 27h]. They are tried in time order.
    constexpr std::int64_t reach = 27 * 3600;
    ZonePeriod c = zone_period(zone, local - reach);
    ZonePeriod previous{};
    bool have_previous = false;
    for (int guard = 0; guard < 64; ++guard) {
        const std::int64_t t = local - c.offset;
        if (t >= c.begin && t < c.end) return t;
        // A gap: too late for the period before, too early for this one.
        if (have_previous && t < c.begin && local - previous.offset >= previous.end) return local - previous.offset;
        if (c.end == period_unbounded_end || c.end > local + reach) break;
        previous = c;
        have_previous = true;
        c = zone_period(zone, c.end);
    }
    return local - zone_period(zone, local).offset;
}

int load_zone_file(const std::string& path, std::string_view name, TimeZone& out) {
    // A zone file is small; a device or a pipe named instead (TZ=/dev/zero)
    // is neither waited for nor read without end.
    constexpr std::size_t most = 1u << 20;
    std::FILE* in = open_without_waiting(path.c_str(), "rb");
    if (in == nullptr) return -1;
    std::string data;
    char chunk[4096];
    for (std::size_t n = 0; data.size() <= most && (n = std::fread(chunk, 1, sizeof chunk, in)) > 0;) data.append(chunk, n);
    std::fclose(in);
    if (data.size() > most) return -1;
    TimeZone z;
    if (!parse_zone_data(data, z)) return -1;
    z.name.assign(name);
    out = std::move(z);
    return 0;
}

int load_database_zone(std::string_view name, TimeZone& out) {
    if (!safe_zone_name(name)) return -1;
    const char* dir = std::getenv("TZDIR");
    const std::filesystem::path root = dir != nullptr && *dir != 0 ? dir : "/usr/share/zoneinfo";
    std::filesystem::path file;
    std::string canonical;
    if (!find_zone_file(root, name, file, canonical)) return -1;
    return load_zone_file(file.string(), canonical, out);
}

bool parse_rule_text(std::string_view text, ZoneRule& out) {
    Reader r{text};
    ZoneRule z;
    std::int32_t west = 0;
    if (!read_abbr(r, z.std_abbr) || !read_clock(r, west, 24)) return false;
    z.std_offset = -west;
    if (r.at_end()) {
        out = z;
        return true;
    }
    if (!read_abbr(r, z.dst_abbr)) return false;
    z.has_dst = true;
    z.dst_offset = z.std_offset + 3600;
    if (r.peek() != ',') {
        if (!read_clock(r, west, 24)) return false;
        z.dst_offset = -west;
    }
    if (!r.take(',') || !read_rule_date(r, z.start) || !r.take(',') || !read_rule_date(r, z.end) || !r.at_end())
        return false;
    out = z;
    return true;
}

bool parse_fixed_offset(std::string_view text, std::int32_t& seconds) {
    if (text.size() >= 3 && same_ignoring_case(text.substr(0, 3), "utc")) text.remove_prefix(3);
    if (text.empty()) {
        seconds = 0;
        return true;
    }
    if (text[0] != '+' && text[0] != '-') return false;
    const int sign = text[0] == '-' ? -1 : 1;
    text.remove_prefix(1);
    int digits[4] = {};
    int count = 0;
    bool colon = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char ch = text[i];
        if (ch == ':' && count == 2 && !colon) {
            colon = true;
        } else if (ch >= '0' && ch <= '9' && count < 4) {
            digits[count++] = ch - '0';
        } else {
            return false;
        }
    }
    int h = 0, m = 0;
    if (count == 1 && !colon) {
        h = digits[0];
    } else if (count == 2 && !colon) {
        h = digits[0] * 10 + digits[1];
    } else if (count == 4) {
        h = digits[0] * 10 + digits[1];
        m = digits[2] * 10 + digits[3];
    } else {
        return false;
    }
    if (m > 59 || h * 60 + m > 24 * 60) return false;
    seconds = sign * (h * 3600 + m * 60);
    return true;
}

std::string offset_abbreviation(std::int32_t seconds) {
    if (seconds == 0) return "UTC";
    const std::int32_t a = std::abs(seconds);
    char text[16];
    if (a % 3600 == 0) {
        std::snprintf(text, sizeof text, "%c%02d", seconds < 0 ? '-' : '+', a / 3600);
    } else {
        std::snprintf(text, sizeof text, "%c%02d%02d", seconds < 0 ? '-' : '+', a / 3600, a % 3600 / 60);
    }
    return text;
}

void zone_from_rule(const ZoneRule& rule, std::string_view name, TimeZone& out) {
    out = TimeZone{};
    out.name.assign(name);
    out.has_rule = true;
    out.rule = rule;
}

}  // namespace tl
