// datetime_statements.h — the date and time statements. Each is called with
// the scan position behind its keyword and returns 0 or a negated error.
#pragma once

namespace tl {

/// Most targets of EXPANDDATETIME: year, month, day, hour, minute, second,
/// weekday (1 Monday .. 7 Sunday), day of the year.
inline constexpr int expanddatetime_targets = 8;

/// UPDATEDATETIME [value]: date$ ("mm-dd-yyyy"), time$ ("hh:mm:ss") and
/// dayofweek$ of the value, or of now, in the zone in force.
[[nodiscard]] int do_updatedatetime();

/// SETTIMEZONE [name]: a database zone, a fixed offset, or (no name) the system's zone.
[[nodiscard]] int do_settimezone();

/// SETDSTRULES [file]: the rules of "dstrules.txt" (or of the file named)
/// become the zone in force; a bad line is shown with its number.
[[nodiscard]] int do_setdstrules();

/// EXPANDDATETIME value, year [, month [, day [, hour [, minute [, second
/// [, weekday [, yearday]]]]]]]: the local fields of the value into double variables.
[[nodiscard]] int do_expanddatetime();

}  // namespace tl
