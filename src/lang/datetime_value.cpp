// datetime_value.cpp — splitting a date-time value into local fields and making one from them.
#include "lang/datetime_value.h"

#include <cmath>

namespace tl {

LocalFields split_datetime(double value, const TimeZone& zone) {
    const double whole = std::floor(value);
    const auto utc = static_cast<std::int64_t>(whole);
    const ZonePeriod p = zone_period(zone, utc);
    const std::int64_t local = utc + p.offset;
    const std::int64_t days = floor_div(local, 86400);
    const auto in_day = static_cast<int>(local - days * 86400);
    LocalFields f;
    f.date = civil_from_days(days);
    f.hour = in_day / 3600;
    f.minute = in_day / 60 % 60;
    f.second = in_day % 60;
    f.fraction = value - whole;
    f.weekday = weekday_from_days(days);
    f.yearday = day_of_year(f.date);
    f.offset = p.offset;
    f.dst = p.dst;
    f.abbr = p.abbr;
    return f;
}

int make_datetime_value(const double fields[6], const TimeZone& zone, double& out) {
    // Bounds that keep every sum below within int64 and the day count exact;
    // the result is checked against the limit afterwards.
    constexpr double year_bound = 1e10;
    const double limits[5][2] = {{-year_bound, year_bound}, {1, 12}, {1, 31}, {0, 23}, {0, 59}};
    for (int i = 0; i < 5; ++i) {
        const double v = fields[i];
        if (!(v >= limits[i][0] && v <= limits[i][1]) || v != std::trunc(v)) return i;
    }
    if (!(fields[5] >= 0.0 && fields[5] < 60.0)) return 5;
    const auto year = static_cast<std::int64_t>(fields[0]);
    const int month = static_cast<int>(fields[1]);
    const int day = static_cast<int>(fields[2]);
    if (day > days_in_month(year, month)) return 2;
    const double whole_second = std::floor(fields[5]);
    const std::int64_t local = days_from_civil(year, month, day) * 86400 +
                               static_cast<std::int64_t>(fields[3]) * 3600 +
                               static_cast<std::int64_t>(fields[4]) * 60 + static_cast<std::int64_t>(whole_second);
    if (!is_datetime_value(static_cast<double>(local))) return 0;
    const double value = static_cast<double>(local_to_utc(zone, local)) + (fields[5] - whole_second);
    if (!is_datetime_value(value)) return 0;
    out = value;
    return -1;
}

}  // namespace tl
