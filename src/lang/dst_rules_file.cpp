// dst_rules_file.cpp — reading the daylight-saving rules file: lines of
// "standard", "daylight", "start" and "end" with their fields.
#include "lang/dst_rules_file.h"

#include <cstdlib>

#include "lang/civil_calendar.h"

namespace tl {
namespace {

constexpr const char* weekdays[7] = {"sunday", "monday", "tuesday", "wednesday", "thursday", "friday", "saturday"};
constexpr const char* months[12] = {"january", "february", "march",     "april",   "may",      "june",
                                    "july",    "august",   "september", "october", "november", "december"};
constexpr const char* ordinals[5] = {"first", "second", "third", "fourth", "last"};

std::string lower(std::string_view s) {
    std::string r(s);
    for (char& c : r)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return r;
}

/// Index of `word` in `names`: the whole name, or its first three letters.
template <std::size_t N>
int find_name(std::string_view word, const char* const (&names)[N], bool short_ok) {
    const std::string w = lower(word);
    for (std::size_t i = 0; i < N; ++i) {
        const std::string_view name(names[i]);
        if (w == name || (short_ok && w.size() == 3 && name.substr(0, 3) == w)) return static_cast<int>(i);
    }
    return -1;
}

/// [+-]h[h][:mm[:ss]] with the hour at most `max_hours`; a sign only when `signed_ok`.
bool read_clock(std::string_view s, bool signed_ok, int max_hours, std::int32_t& out) {
    int sign = 1;
    if (!s.empty() && (s[0] == '+' || s[0] == '-')) {
        if (!signed_ok) return false;
        sign = s[0] == '-' ? -1 : 1;
        s.remove_prefix(1);
    }
    int parts[3] = {};
    int count = 0;
    std::size_t i = 0;
    while (count < 3) {
        const std::size_t from = i;
        int v = 0;
        while (i < s.size() && s[i] >= '0' && s[i] <= '9' && i - from < 3) v = v * 10 + (s[i++] - '0');
        if (i == from || (count > 0 && i - from != 2)) return false;
        parts[count++] = v;
        if (i == s.size()) break;
        if (s[i++] != ':') return false;
    }
    if (i != s.size() || parts[0] > max_hours || parts[1] > 59 || parts[2] > 59) return false;
    out = sign * (parts[0] * 3600 + parts[1] * 60 + parts[2]);
    return true;
}

bool good_abbr(std::string_view s) {
    if (s.empty() || s.size() > 15) return false;
    for (char c : s) {
        const bool ok = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '+' ||
                        c == '-';
        if (!ok) return false;
    }
    return true;
}

struct Parsed {
    bool standard = false, daylight = false, start = false, end = false;
};

}  // namespace

bool parse_dst_rules(std::string_view text, ZoneRule& out, DstRulesFault& fault) {
    ZoneRule rule;
    Parsed seen;
    int line_number = 0;
    auto fail = [&](int line, std::string what) {
        fault.line = line;
        fault.what = std::move(what);
        return false;
    };
    while (!text.empty()) {
        ++line_number;
        std::size_t eol = text.find('\n');
        std::string_view line = text.substr(0, eol);
        text.remove_prefix(eol == std::string_view::npos ? text.size() : eol + 1);
        if (const std::size_t hash = line.find('#'); hash != std::string_view::npos) line = line.substr(0, hash);
        std::string_view words[8];
        int count = 0;
        for (std::size_t i = 0; i < line.size();) {
            while (i < line.size() && (line[i] == ' ' || line[i] == '\t' || line[i] == '\r')) ++i;
            const std::size_t from = i;
            while (i < line.size() && line[i] != ' ' && line[i] != '\t' && line[i] != '\r') ++i;
            if (i > from) {
                if (count == 8) return fail(line_number, "too many words");
                words[count++] = line.substr(from, i - from);
            }
        }
        if (count == 0) continue;
        const std::string key = lower(words[0]);
        if (key == "standard" || key == "daylight") {
            const bool is_standard = key == "standard";
            if ((is_standard ? seen.standard : seen.daylight)) return fail(line_number, "\"" + key + "\" given twice");
            if (count < 2 || count > 3) return fail(line_number, "expected: " + key + " OFFSET [ABBREVIATION]");
            std::int32_t offset = 0;
            if (!read_clock(words[1], true, 24, offset) || (words[1][0] != '+' && words[1][0] != '-'))
                return fail(line_number, "bad offset \"" + std::string(words[1]) + "\" (write +hh:mm or -hh:mm)");
            if (std::abs(offset) > 24 * 3600) return fail(line_number, "offset beyond 24 hours");
            std::string abbr = offset_abbreviation(offset);
            if (count == 3) {
                if (!good_abbr(words[2])) return fail(line_number, "bad abbreviation \"" + std::string(words[2]) + "\"");
                abbr.assign(words[2]);
            }
            if (is_standard) {
                rule.std_offset = offset;
                rule.std_abbr = abbr;
                seen.standard = true;
            } else {
                rule.dst_offset = offset;
                rule.dst_abbr = abbr;
                seen.daylight = true;
            }
        } else if (key == "start" || key == "end") {
            const bool is_start = key == "start";
            if ((is_start ? seen.start : seen.end)) return fail(line_number, "\"" + key + "\" given twice");
            RuleDate d;
            int time_word = 0;
            if (count == 5 && find_name(words[1], ordinals, false) >= 0) {
                d.kind = RuleDate::month_week_day;
                d.week = find_name(words[1], ordinals, false) + 1;
                d.weekday = find_name(words[2], weekdays, true);
                if (d.weekday < 0) return fail(line_number, "unknown weekday \"" + std::string(words[2]) + "\"");
                d.month = find_name(words[3], months, true) + 1;
                if (d.month < 1) return fail(line_number, "unknown month \"" + std::string(words[3]) + "\"");
                time_word = 4;
            } else if (count == 4) {
                char* end = nullptr;
                const std::string day_text(words[1]);
                const long day = std::strtol(day_text.c_str(), &end, 10);
                const int month = find_name(words[2], months, true) + 1;
                if (end == day_text.c_str() || *end != 0) return fail(line_number, "bad day \"" + day_text + "\"");
                if (month < 1) return fail(line_number, "unknown month \"" + std::string(words[2]) + "\"");
                if (day < 1 || day > days_in_month(2001, month))
                    return fail(line_number, "no day " + day_text + " in " + std::string(words[2]));
                d.kind = RuleDate::julian_no_leap;
                d.day = static_cast<int>(days_from_civil(2001, month, static_cast<int>(day)) -
                                         days_from_civil(2001, 1, 1)) + 1;
                time_word = 3;
            } else {
                return fail(line_number, "expected: " + key + " ORDINAL WEEKDAY MONTH hh:mm, or " + key +
                                             " DAY MONTH hh:mm");
            }
            if (!read_clock(words[time_word], false, 167, d.time))
                return fail(line_number, "bad time \"" + std::string(words[time_word]) + "\" (write hh:mm)");
            (is_start ? rule.start : rule.end) = d;
            (is_start ? seen.start : seen.end) = true;
        } else {
            return fail(line_number, "unknown word \"" + std::string(words[0]) + "\"");
        }
    }
    if (!seen.standard) return fail(0, "no \"standard\" line");
    if (seen.daylight && !(seen.start && seen.end)) return fail(0, "\"daylight\" needs a \"start\" and an \"end\" line");
    if (!seen.daylight && (seen.start || seen.end)) return fail(0, "\"start\" and \"end\" need a \"daylight\" line");
    rule.has_dst = seen.daylight;
    out = rule;
    return true;
}

}  // namespace tl
