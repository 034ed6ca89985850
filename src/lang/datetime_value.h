// datetime_value.h — the date-time value (seconds since 1970-01-01 00:00:00
// UTC, a double) and its local calendar fields in a time zone.
#pragma once

#include <cstdint>

#include "lang/civil_calendar.h"
#include "lang/time_zone.h"

namespace tl {

/// Every date-time value lies within ±datetime_limit seconds (about five
/// billion years either side of 1970): the range of a datetime axis.
inline constexpr double datetime_limit = 1.593625448111377e17;

/// A value as its zone's clock and calendar show it.
struct LocalFields {
    CivilDate date;
    int hour = 0;
    int minute = 0;
    int second = 0;
    double fraction = 0.0;  ///< 0 <= fraction < 1
    int weekday = 0;        ///< 0 Sunday .. 6 Saturday
    int yearday = 1;        ///< 1..366
    std::int32_t offset = 0;  ///< seconds east of UTC
    bool dst = false;
    const char* abbr = "";  ///< the zone's abbreviation (points into the zone)
};

/// True when `value` is a date-time value (finite, within the limit).
[[nodiscard]] inline bool is_datetime_value(double value) {
    return value >= -datetime_limit && value <= datetime_limit;
}

/// The local fields of `value` (which must satisfy is_datetime_value) in `zone`.
[[nodiscard]] LocalFields split_datetime(double value, const TimeZone& zone);

/// Why a local date and time is not a value: the field at fault (0 year,
/// 1 month, 2 day, 3 hour, 4 minute, 5 second), or -1 when it is one.
/// On success `out` is the value, with gaps and overlaps resolved as
/// local_to_utc does. Fields must be whole numbers except the second.
[[nodiscard]] int make_datetime_value(const double fields[6], const TimeZone& zone, double& out);

}  // namespace tl
