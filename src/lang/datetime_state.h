// datetime_state.h — the time zone in force for the date-time functions and statements.
#pragma once

#include "lang/time_zone.h"

namespace tl {

struct DateTimeState {
    TimeZone zone;
    /// False until the zone is first needed or set: the system's zone is
    /// then read (reading it at start-up would slow every start).
    bool zone_ready = false;
};

extern DateTimeState datetime_state;

/// The zone in force: the one set by SETTIMEZONE or SETDSTRULES, else the system's.
[[nodiscard]] const TimeZone& current_zone();

/// The system's zone: $TZ (a database name, a zone file's path or a rule
/// text), else /etc/localtime, else UTC. Never fails.
void system_zone(TimeZone& out);

/// Makes `zone` the zone in force.
void set_current_zone(TimeZone&& zone);

/// The date-time value of this moment (with fractions of a second).
[[nodiscard]] double datetime_now();

/// The value that stands for no date: the predefined defaultzerodatetime.
[[nodiscard]] double no_date_value();

/// Back to the start-up state (the system's zone, read when next needed).
void reset_datetime_state();

}  // namespace tl
