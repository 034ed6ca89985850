// datetime_text.h — date-time values as text: the format codes of
// FORMATDATETIME$ and the labels of a datetime axis.
#pragma once

#include <cstddef>
#include <string_view>

#include "lang/time_zone.h"

namespace tl {

/// The layout used when no format is given.
inline constexpr std::string_view default_datetime_format = "%Y-%m-%d %H:%M:%S";

/// Results of format_datetime other than a length.
inline constexpr int datetime_format_bad_code = -1;  ///< `bad_at` is the offset of the "%"
inline constexpr int datetime_format_too_long = -2;  ///< the text would not fit in `size` - 1

/// Writes `value` (a date-time value, see datetime_value.h) as the clock and
/// calendar of `zone` show it, under `format` (codes in docs/datetime.md),
/// into `out` with a NUL. Fractions of a second are rounded to the digits a
/// %f code shows; without one the seconds are cut as a clock shows them.
/// Returns the length, or one of the negative results above. No allocation.
[[nodiscard]] int format_datetime(double value, const TimeZone& zone, std::string_view format, char* out,
                                  std::size_t size, std::size_t& bad_at);

/// The text of `value` on a datetime axis, in the zone in force.
///
/// `step` is the distance between tick marks in seconds; the text shows what
/// changes from tick to tick and leaves out smaller units:
///   step >= 365 days "2026",  >= 28 days "2026-11",  >= 1 day "2026-11-24",
///   >= 60 s "2026-11-24 09:15",  >= 1 s "2026-11-24 09:15:30",
///   below 1 s "09:15:30.25" with the decimals of the step (0.5 one, 0.25 two; up to 6).
/// `step` <= 0 (the pointer read-out) gives "2026-11-24 09:15:30.250".
/// A value outside ±datetime_limit (or not a number) is written as "%.6g".
/// `size` should be at least 64. Returns the length.
std::size_t datetime_axis_text(double value, double step, char* out, std::size_t size);

}  // namespace tl
