// Date-time values: the calendar against std::chrono, format codes, rule texts,
// fixed offsets, the rules file against the database's own rules, the gap and
// overlap rule and the axis labels. Conversions in many zones are compared
// with a second implementation by datetime_zoneinfo_test.py.
#include <chrono>
#include <cstdint>
#include <random>
#include <string>

#include "lang/civil_calendar.h"
#include "lang/datetime_state.h"
#include "lang/datetime_text.h"
#include "lang/datetime_value.h"
#include "lang/dst_rules_file.h"
#include "lang/time_zone.h"
#include "test_support.h"

namespace tl::test {
namespace {

using namespace std::chrono;

TEST(CivilCalendar, AgreesWithChronoAndRoundTripsFarOut) {
    std::mt19937_64 rng(15);
    std::uniform_int_distribution<std::int64_t> near(days{sys_days{year{-32000} / 1 / 1}.time_since_epoch()}.count(),
                                                     days{sys_days{year{32000} / 12 / 31}.time_since_epoch()}.count());
    for (int i = 0; i < 200000; ++i) {
        const std::int64_t z = near(rng);
        const year_month_day ref{sys_days{days{z}}};
        const CivilDate c = civil_from_days(z);
        ASSERT_EQ(c.year, static_cast<int>(ref.year())) << z;
        ASSERT_EQ(c.month, static_cast<int>(static_cast<unsigned>(ref.month()))) << z;
        ASSERT_EQ(c.day, static_cast<int>(static_cast<unsigned>(ref.day()))) << z;
        ASSERT_EQ(weekday_from_days(z), static_cast<int>(weekday{sys_days{days{z}}}.c_encoding())) << z;
        ASSERT_EQ(days_from_civil(c.year, c.month, c.day), z);
    }
    // The whole range of values: about 1.85e12 days either side.
    std::uniform_int_distribution<std::int64_t> far(-1850000000000, 1850000000000);
    for (int i = 0; i < 100000; ++i) {
        const std::int64_t z = far(rng);
        const CivilDate c = civil_from_days(z);
        ASSERT_EQ(days_from_civil(c.year, c.month, c.day), z) << z;
        ASSERT_EQ(civil_from_days(z + 1).day == 1, c.day == days_in_month(c.year, c.month)) << z;
    }
}

TimeZone database(const char* name) {
    TimeZone z;
    EXPECT_EQ(load_database_zone(name, z), 0) << name;
    return z;
}

std::string format(double value, const TimeZone& z, std::string_view layout) {
    char out[256];
    std::size_t bad_at = 0;
    const int n = format_datetime(value, z, layout, out, sizeof out, bad_at);
    if (n == datetime_format_bad_code) return "bad code at " + std::to_string(bad_at);
    if (n == datetime_format_too_long) return "too long";
    return std::string(out, static_cast<std::size_t>(n));
}

TEST(DateTimeFormat, EveryCode) {
    const TimeZone berlin = database("Europe/Berlin");
    const double v = 1000000000.123456;  // 2001-09-09 03:46:40 CEST, a Sunday
    EXPECT_EQ(format(v, berlin, "%Y|%y|%m|%d|%e|%j|%H|%I|%p|%M|%S"), "2001|01|09|09| 9|252|03|03|AM|46|40");
    EXPECT_EQ(format(v, berlin, "%f|%1f|%3f|%9f"), "123456|1|123|123456001");
    EXPECT_EQ(format(v, berlin, "%A|%a|%B|%b|%u|%w|%Z|%z|%:z|%F|%T|%%"),
              "Sunday|Sun|September|Sep|7|0|CEST|+0200|+02:00|2001-09-09|03:46:40|%");
    // Sixty days on, standard time: an hour less on the clock.
    EXPECT_EQ(format(v + 12 * 3600 + 86400 * 60, berlin, "%I %p %Z %a"), "02 PM CET Thu");
    EXPECT_EQ(format(v + 86400 * 60 - 2 * 3600 - 2760 - 40, berlin, "%I:%M %p"), "12:00 AM");
    // Fractions round at the digits shown; the carry reaches the year.
    const TimeZone utc = database("UTC");
    const double last = 1767225599.9996;  // 2025-12-31 23:59:59.9996 UTC
    EXPECT_EQ(format(last, utc, "%F %T.%3f"), "2026-01-01 00:00:00.000");
    EXPECT_EQ(format(last, utc, "%F %T"), "2025-12-31 23:59:59");
    EXPECT_EQ(format(-0.25, utc, "%F %T.%2f"), "1969-12-31 23:59:59.75");
    EXPECT_EQ(format(-62198755200.0, utc, "%Y-%m-%d %A"), "-0001-01-01 Friday");
    // Faults: an unknown code, a "%" at the end, "%:" without z, too long a text.
    EXPECT_EQ(format(v, berlin, "ab%Q"), "bad code at 2");
    EXPECT_EQ(format(v, berlin, "%Y%"), "bad code at 2");
    EXPECT_EQ(format(v, berlin, "%:Z"), "bad code at 0");
    EXPECT_EQ(format(v, berlin, "%0f"), "bad code at 0");
    EXPECT_EQ(format(v, berlin, std::string(255, 'x')), std::string(255, 'x'));
    EXPECT_EQ(format(v, berlin, std::string(254, 'x') + "%d"), "too long");
}

TEST(DateTimeRules, RuleTextsAndFixedOffsets) {
    ZoneRule r;
    ASSERT_TRUE(parse_rule_text("<+0330>-3:30<+0430>,J79/24,J263/24", r));
    EXPECT_EQ(r.std_offset, 12600);
    EXPECT_EQ(r.dst_offset, 16200);
    EXPECT_EQ(r.std_abbr, "+0330");
    EXPECT_EQ(r.start.kind, RuleDate::julian_no_leap);
    EXPECT_EQ(r.start.time, 24 * 3600);
    ASSERT_TRUE(parse_rule_text("<-03>3<-02>,M3.5.0/-2,M10.5.0/-1", r));
    EXPECT_EQ(r.start.time, -7200);
    ASSERT_TRUE(parse_rule_text("EST5EDT,M3.2.0,M11.1.0", r));
    EXPECT_EQ(r.dst_offset, -4 * 3600);
    for (const char* bad : {"", "E5", "EST", "EST5EDT", "EST5EDT,M3.2.0", "EST5EDT,M13.1.0,M11.1.0",
                            "EST5EDT,M3.6.0,M11.1.0", "EST5EDT,J0,J365", "EST5EDT,M3.2.0,M11.1.0x", "<EST5"}) {
        EXPECT_FALSE(parse_rule_text(bad, r)) << bad;
    }
    struct Case {
        const char* text;
        std::int32_t seconds;
    };
    for (const Case& c : {Case{"UTC", 0}, Case{"utc+2", 7200}, Case{"UTC-03:30", -12600}, Case{"+0545", 20700},
                          Case{"-11", -39600}, Case{"+24:00", 86400}, Case{"UTC+14", 50400}}) {
        std::int32_t s = -1;
        EXPECT_TRUE(parse_fixed_offset(c.text, s)) << c.text;
        EXPECT_EQ(s, c.seconds) << c.text;
    }
    for (const char* bad : {"UTC+25", "+24:01", "+5:30", "+12:60", "Z", "+", "UTC+123", "GMT+1", "+05:3"}) {
        std::int32_t s = 0;
        EXPECT_FALSE(parse_fixed_offset(bad, s)) << bad;
    }
    EXPECT_EQ(offset_abbreviation(0), "UTC");
    EXPECT_EQ(offset_abbreviation(-34200), "-0930");
    EXPECT_EQ(offset_abbreviation(18000), "+05");
}

TEST(DateTimeRules, RulesFileGivesTheDatabasesOwnResults) {
    // New York's rules written as a rules file must agree with the database
    // for every hour of 2008..2037 (the rules in force since 2007).
    const char* text =
        "# US Eastern\n"
        "standard -05:00 EST\n"
        "DAYLIGHT -04:00 EDT   # capitals and comments are fine\n"
        "\n"
        "start second Sun Mar 2:00\r\n"
        "end first sunday november 02:00\n";
    ZoneRule rule;
    DstRulesFault fault;
    ASSERT_TRUE(parse_dst_rules(text, rule, fault)) << fault.line << " " << fault.what;
    TimeZone mine;
    zone_from_rule(rule, "dstrules.txt", mine);
    const TimeZone ny = database("America/New_York");
    for (std::int64_t t = 1199145600; t < 2145916800; t += 3607) {
        const ZonePeriod a = zone_period(mine, t);
        const ZonePeriod b = zone_period(ny, t);
        ASSERT_EQ(a.offset, b.offset) << t;
        ASSERT_STREQ(a.abbr, b.abbr) << t;
        ASSERT_EQ(local_to_utc(mine, t), local_to_utc(ny, t)) << t;
    }
    // A fixed date, and a rules file without daylight saving.
    ASSERT_TRUE(parse_dst_rules("standard +10:00\ndaylight +11:00 X\nstart 1 Oct 2:00\nend 1 apr 3:00\n", rule, fault));
    EXPECT_EQ(rule.std_abbr, "+10");
    EXPECT_EQ(rule.start.kind, RuleDate::julian_no_leap);
    EXPECT_EQ(rule.start.day, 274);
    ASSERT_TRUE(parse_dst_rules("standard -03:30", rule, fault));
    EXPECT_FALSE(rule.has_dst);
}

TEST(DateTimeRules, RulesFileFaultsNameTheirLine) {
    struct Case {
        const char* text;
        int line;
        const char* what;
    };
    const Case cases[] = {
        {"standard +01:00\nstandard +02:00\n", 2, "\"standard\" given twice"},
        {"standard 01:00\n", 1, "bad offset"},
        {"standard +25:00\n", 1, "bad offset"},
        {"standard +01:00 C*T\n", 1, "bad abbreviation"},
        {"standard +01:00 CET extra\n", 1, "expected: standard"},
        {"#\nstandard +1\ndaylight +2\nstart fifth Sunday March 2:00\nend last Sunday October 3:00\n", 4, "expected: start"},
        {"standard +1\ndaylight +2\nstart last Sundy March 2:00\n", 3, "unknown weekday"},
        {"standard +1\ndaylight +2\nstart last Sunday Mars 2:00\n", 3, "unknown month"},
        {"standard +1\ndaylight +2\nstart 29 Feb 2:00\n", 3, "no day 29 in Feb"},
        {"standard +1\ndaylight +2\nstart 1x Mar 2:00\n", 3, "bad day"},
        {"standard +1\ndaylight +2\nstart 1 Mar 2:60\n", 3, "bad time"},
        {"standard +1\ndaylight +2\nstart 1 Mar -2:00\n", 3, "bad time"},
        {"standard +1\nsummer +2\n", 2, "unknown word \"summer\""},
        {"", 0, "no \"standard\" line"},
        {"standard +1\ndaylight +2\nstart 1 Mar 2:00\n", 0, "needs a \"start\" and an \"end\""},
        {"standard +1\nend 1 Mar 2:00\n", 0, "need a \"daylight\" line"},
    };
    for (const Case& c : cases) {
        ZoneRule rule;
        rule.std_abbr = "unchanged";
        DstRulesFault fault;
        EXPECT_FALSE(parse_dst_rules(c.text, rule, fault)) << c.text;
        EXPECT_EQ(fault.line, c.line) << c.text;
        EXPECT_NE(fault.what.find(c.what), std::string::npos) << c.text << " -> " << fault.what;
        EXPECT_EQ(rule.std_abbr, "unchanged");
    }
}

TEST(DateTimeRules, GapsMoveForwardAndOverlapsTakeTheEarlierOffset) {
    // Zones from the database, from a rules text and from a rules file, north and south.
    ZoneRule southern;
    DstRulesFault fault;
    ASSERT_TRUE(parse_dst_rules("standard +10:00 AEST\ndaylight +11:00 AEDT\n"
                                "start first Sunday October 2:00\nend first Sunday April 3:00\n",
                                southern, fault));
    TimeZone file_zone;
    zone_from_rule(southern, "dstrules.txt", file_zone);
    struct Case {
        TimeZone zone;
        double local[6];
        const char* expect;
    };
    const Case cases[] = {
        {database("Europe/Berlin"), {2026, 3, 29, 2, 0, 0}, "2026-03-29 03:00:00 CEST"},
        {database("Europe/Berlin"), {2026, 3, 29, 2, 59, 59.5}, "2026-03-29 03:59:59 CEST"},
        {database("Europe/Berlin"), {2026, 10, 25, 2, 0, 0}, "2026-10-25 02:00:00 CEST"},
        {database("Europe/Berlin"), {2026, 10, 25, 3, 0, 0}, "2026-10-25 03:00:00 CET"},
        {database("Australia/Lord_Howe"), {2026, 10, 4, 2, 15, 0}, "2026-10-04 02:45:00 +11"},
        {database("Australia/Lord_Howe"), {2026, 4, 5, 1, 45, 0}, "2026-04-05 01:45:00 +11"},
        {database("America/New_York"), {2040, 3, 11, 2, 30, 0}, "2040-03-11 03:30:00 EDT"},
        {database("America/New_York"), {2040, 11, 4, 1, 30, 0}, "2040-11-04 01:30:00 EDT"},
        {file_zone, {2026, 10, 4, 2, 30, 0}, "2026-10-04 03:30:00 AEDT"},
        {file_zone, {2026, 4, 5, 2, 30, 0}, "2026-04-05 02:30:00 AEDT"},
        {database("Pacific/Apia"), {2011, 12, 30, 12, 0, 0}, "2011-12-31 12:00:00 +14"},
    };
    for (const Case& c : cases) {
        double v = 0;
        ASSERT_EQ(make_datetime_value(c.local, c.zone, v), -1) << c.expect;
        EXPECT_EQ(format(v, c.zone, "%F %T %Z"), c.expect);
    }
    // In an overlap the later occurrence is one hour after the value made.
    const TimeZone berlin = database("Europe/Berlin");
    const double fields[6] = {2026, 10, 25, 2, 30, 0};
    double v = 0;
    ASSERT_EQ(make_datetime_value(fields, berlin, v), -1);
    EXPECT_EQ(format(v + 3600, berlin, "%T %Z"), "02:30:00 CET");
}

TEST(DateTimeValue, FieldsAtFaultAndRandomRoundTrips) {
    const TimeZone z = database("America/Santiago");
    struct Bad {
        double f[6];
        int field;
    };
    for (const Bad& b : {Bad{{2026, 13, 1, 0, 0, 0}, 1}, Bad{{2026, 4, 31, 0, 0, 0}, 2},
                         Bad{{2024, 2, 30, 0, 0, 0}, 2}, Bad{{2026, 1, 1, 23.5, 0, 0}, 3},
                         Bad{{2026, 1, 1, 0, 0, 60}, 5}, Bad{{6e9, 1, 1, 0, 0, 0}, 0}, Bad{{-1e11, 1, 1, 0, 0, 0}, 0},
                         Bad{{2026, 1.5, 1, 0, 0, 0}, 1}}) {
        double v = 0;
        EXPECT_EQ(make_datetime_value(b.f, z, v), b.field) << b.f[0] << "-" << b.f[1] << "-" << b.f[2];
    }
    double v = 0;
    const double leap[6] = {2024, 2, 29, 23, 59, 59.75};
    EXPECT_EQ(make_datetime_value(leap, z, v), -1);
    // Values to fields and back: the same value, except a second occurrence in
    // an overlap, which comes back as the first (an exact number of hours before).
    std::mt19937_64 rng(2026);
    std::uniform_real_distribution<double> any(-1.5e11, 1.5e11);
    int later = 0;
    for (int i = 0; i < 100000; ++i) {
        const double t = std::floor(any(rng) * 4) / 4;
        const LocalFields f = split_datetime(t, z);
        const double fields[6] = {static_cast<double>(f.date.year), double(f.date.month), double(f.date.day),
                                  double(f.hour), double(f.minute), f.second + f.fraction};
        double back = 0;
        ASSERT_EQ(make_datetime_value(fields, z, back), -1) << t;
        if (back != t) {
            ASSERT_LT(back, t);
            ASSERT_EQ(std::fmod(t - back, 1800.0), 0.0) << t;
            ++later;
        }
    }
    EXPECT_LT(later, 1000);
}

class DateTimeAxis : public CoreTest {};

TEST_F(DateTimeAxis, LabelsFollowTheStepAndTheZoneInForce) {
    set_current_zone(database("Asia/Kolkata"));
    const double v = 1700000000.25;  // 2023-11-15 03:43:20.25 IST
    char out[64];
    struct Case {
        double step;
        const char* expect;
    };
    for (const Case& c : {Case{0, "2023-11-15 03:43:20.250"}, Case{86400 * 400.0, "2023"},
                          Case{86400 * 30.0, "2023-11"}, Case{86400, "2023-11-15"}, Case{600, "2023-11-15 03:43"},
                          Case{5, "2023-11-15 03:43:20"}, Case{0.5, "03:43:20.3"}, Case{0.25, "03:43:20.25"},
                          Case{0.002, "03:43:20.250"}, Case{1e-9, "03:43:20.250000"}}) {
        const std::size_t n = datetime_axis_text(v, c.step, out, sizeof out);
        EXPECT_EQ(std::string(out, n), c.expect) << c.step;
    }
    EXPECT_EQ(std::string(out, datetime_axis_text(datetime_limit, 86400 * 400.0, out, sizeof out)), "5049999980");
    EXPECT_EQ(std::string(out, datetime_axis_text(-datetime_limit * 2, 0, out, sizeof out)), "-3.18725e+17");
    EXPECT_EQ(datetime_axis_text(v, 0, out, 8), 0u);  // too small a buffer: empty, never cut
    EXPECT_STREQ(out, "");
}

}  // namespace
}  // namespace tl::test
