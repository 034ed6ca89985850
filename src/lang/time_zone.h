// time_zone.h — time zones: the system's database files, yearly daylight-saving
// rules, fixed offsets, and the conversion between UTC and local time.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tl {

/// When a yearly change happens, in the local time in force before it.
struct RuleDate {
    enum Kind : std::uint8_t {
        month_week_day,  ///< weekday `weekday` (0 Sunday) of week `week` (1..4, 5 = last) of `month`
        julian_no_leap,  ///< day `day` 1..365 of the year, 29 February never counted
        zero_based_day,  ///< day `day` 0..365 of the year, 29 February counted
    };
    Kind kind = month_week_day;
    int month = 1;
    int week = 1;
    int weekday = 0;
    int day = 0;
    std::int32_t time = 7200;  ///< seconds after local midnight, -167h..167h
};

/// A standard offset with an optional yearly daylight-saving period.
struct ZoneRule {
    std::int32_t std_offset = 0;  ///< seconds east of UTC
    std::int32_t dst_offset = 0;
    bool has_dst = false;
    RuleDate start;  ///< daylight saving begins (in standard time)
    RuleDate end;    ///< daylight saving ends (in daylight time)
    std::string std_abbr = "UTC";
    std::string dst_abbr;
};

/// One local time type of a zone.
struct ZoneType {
    std::int32_t offset = 0;  ///< seconds east of UTC
    bool dst = false;
    std::uint32_t abbr = 0;  ///< offset of the abbreviation in TimeZone::abbrs
};

/// A time zone: a list of transitions (as in the database files), followed
/// after the last one by a yearly rule. A zone of a rule only has no list.
struct TimeZone {
    std::string name;
    std::vector<std::int64_t> transitions;  ///< UTC seconds, ascending
    std::vector<std::uint8_t> transition_types;
    std::vector<ZoneType> types;
    std::string abbrs;   ///< NUL-separated abbreviations
    int before_type = 0;  ///< the type before the first transition
    bool has_rule = false;
    ZoneRule rule;
};

/// A stretch of UTC time [begin, end) with one offset. begin and end are
/// period_unbounded_* at the ends of time.
struct ZonePeriod {
    std::int64_t begin = 0;
    std::int64_t end = 0;
    std::int32_t offset = 0;
    bool dst = false;
    const char* abbr = "";  ///< points into the zone (valid while the zone is unchanged)
};

inline constexpr std::int64_t period_unbounded_begin = INT64_MIN;
inline constexpr std::int64_t period_unbounded_end = INT64_MAX;

/// The period of `zone` that contains UTC second `utc`. No allocation.
[[nodiscard]] ZonePeriod zone_period(const TimeZone& zone, std::int64_t utc);

/// The UTC second of local second `local` (seconds since 1970-01-01 00:00 on
/// the local clock). A local time that occurs once has one answer. In a gap
/// (clocks moved forward) and in an overlap (clocks moved back) the offset in
/// force before the change is used: a time in a gap comes out moved forward
/// by the gap's length, and a time in an overlap is its earlier occurrence.
[[nodiscard]] std::int64_t local_to_utc(const TimeZone& zone, std::int64_t local);

/// Reads the zone `name` (such as "Europe/Berlin") from the system's
/// database under $TZDIR or /usr/share/zoneinfo; letter case need not match.
/// Returns 0, or -1 when the name is not a zone (nothing is changed then).
[[nodiscard]] int load_database_zone(std::string_view name, TimeZone& out);

/// Reads a database file by its path (such as /etc/localtime). Returns 0 or -1.
[[nodiscard]] int load_zone_file(const std::string& path, std::string_view name, TimeZone& out);

/// Parses the zone files' rule text (as "CET-1CEST,M3.5.0,M10.5.0/3": west
/// of UTC is positive there). Returns true when the whole text is a rule.
[[nodiscard]] bool parse_rule_text(std::string_view text, ZoneRule& out);

/// Parses a fixed offset: "UTC", "UTC+hh", "UTC+hh:mm", "+hh:mm", "-hhmm"
/// and the like, with east of UTC positive, at most 24 hours. Returns true
/// and the offset in seconds, or false.
[[nodiscard]] bool parse_fixed_offset(std::string_view text, std::int32_t& seconds);

/// Makes `out` the zone of `rule` alone, called `name`.
void zone_from_rule(const ZoneRule& rule, std::string_view name, TimeZone& out);

/// The abbreviation used for a fixed offset: "UTC", "+05", "+0530", "-0930".
[[nodiscard]] std::string offset_abbreviation(std::int32_t seconds);

}  // namespace tl
