// civil_calendar.h — the proleptic Gregorian calendar counted in whole days since 1970-01-01.
#pragma once

#include <cstdint>

namespace tl {

/// A calendar date. Years are astronomical: year 0 is 1 BC, -1 is 2 BC.
struct CivilDate {
    std::int64_t year = 1970;
    int month = 1;  ///< 1..12
    int day = 1;    ///< 1..31
};

/// Floor division and its remainder (the remainder has the sign of `b`).
constexpr std::int64_t floor_div(std::int64_t a, std::int64_t b) {
    const std::int64_t q = a / b;
    return (a % b != 0 && ((a < 0) != (b < 0))) ? q - 1 : q;
}
constexpr std::int64_t floor_mod(std::int64_t a, std::int64_t b) { return a - floor_div(a, b) * b; }

constexpr bool is_leap_year(std::int64_t y) { return y % 4 == 0 && (y % 100 != 0 || y % 400 == 0); }

/// Days of month `m` (1..12) in year `y`.
constexpr int days_in_month(std::int64_t y, int m) {
    constexpr int days[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return m == 2 && is_leap_year(y) ? 29 : days[m - 1];
}

/// Days since 1970-01-01 of a valid date; exact for |year| up to about 2.5e16.
/// Counts 400-year eras of 146097 days, years starting on 1 March so that
/// the leap day falls at the end of a year.
constexpr std::int64_t days_from_civil(std::int64_t y, int m, int d) {
    y -= m <= 2 ? 1 : 0;
    const std::int64_t era = floor_div(y, 400);
    const std::int64_t yoe = y - era * 400;                                         // 0..399
    const std::int64_t doy = (153 * (m > 2 ? m - 3 : m + 9) + 2) / 5 + d - 1;     // 0..365
    const std::int64_t doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;                 // 0..146096
    return era * 146097 + doe - 719468;
}

/// The date of day `z` since 1970-01-01 (the inverse of days_from_civil).
constexpr CivilDate civil_from_days(std::int64_t z) {
    z += 719468;
    const std::int64_t era = floor_div(z, 146097);
    const std::int64_t doe = z - era * 146097;                                      // 0..146096
    const std::int64_t yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365; // 0..399
    const std::int64_t doy = doe - (365 * yoe + yoe / 4 - yoe / 100);               // 0..365
    const std::int64_t mp = (5 * doy + 2) / 153;                                    // 0..11
    CivilDate c;
    c.day = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
    c.month = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
    c.year = yoe + era * 400 + (c.month <= 2 ? 1 : 0);
    return c;
}

/// Day of the week of day `z`: 0 Sunday .. 6 Saturday (1970-01-01 was a Thursday).
constexpr int weekday_from_days(std::int64_t z) { return static_cast<int>(floor_mod(z + 4, 7)); }

/// Day of the year, 1..366.
constexpr int day_of_year(const CivilDate& c) {
    return static_cast<int>(days_from_civil(c.year, c.month, c.day) - days_from_civil(c.year, 1, 1)) + 1;
}

static_assert(days_from_civil(1970, 1, 1) == 0);
static_assert(days_from_civil(2000, 3, 1) == 11017);
static_assert(civil_from_days(-1).year == 1969 && civil_from_days(-1).day == 31);
static_assert(weekday_from_days(0) == 4);

}  // namespace tl
