// axis_ticks.h — where an axis gets its ticks and what its numbers say.
//
// Linear axes step by 1, 2 or 5 times a power of ten, chosen so that the
// numbers come about a given distance apart without crowding their labels
// (and by 2.5 times one where a short axis needs it); every number on an axis has
// the same form (the same decimals, or scientific form for very large or
// very small values). Log axes put a number at every decade (or every 2nd,
// 5th, 10th... when decades are close) with minor ticks at 2..9 times each
// decade; a log axis showing less than a decade or two is numbered as a
// linear one. Values are on the axis's own scale (decimal logarithms on a
// log axis).
#pragma once

namespace tl {

inline constexpr int max_axis_ticks = 64;
inline constexpr int max_minor_ticks = 512;
inline constexpr int tick_label_size = 64;

struct AxisTicks {
    int count = 0;
    double value[max_axis_ticks] = {};
    /// UTF-8 text of each number (a minus is U+2212), one or two lines. With
    /// `power_labels` the text is the exponent, to be shown as a power of ten.
    char label[max_axis_ticks][tick_label_size] = {};
    bool power_labels = false;
    int minor_count = 0;
    double minor[max_minor_ticks] = {};
};

/// Ticks of a linear axis showing lo..hi over `length` pixels: the step whose
/// numbers come nearest to `spacing` pixels apart, but never closer than
/// `least` pixels (room for the labels). When that step leaves fewer than
/// `fewest` numbers on the axis, finer steps (1, 2, 2.5 or 5 times a power
/// of ten) are taken, the largest that gives that many, or as many as there
/// can be, with numbers at least `closest` pixels apart (a short axis then
/// still reads as a scale).
void linear_ticks(double lo, double hi, double length, double spacing, AxisTicks& out, double least = 0.0,
                  int fewest = 0, double closest = 0.0);

/// Ticks of a log axis showing the decades lo..hi over `length` pixels.
void log_ticks(double lo, double hi, double length, double spacing, AxisTicks& out);

/// Ticks of a datetime axis (values in seconds since 1970 UTC) showing lo..hi:
/// calendar steps from fractions of a second through seconds, minutes,
/// hours, days, weeks and months to years, placed on the local clock and
/// calendar of the zone in force and labelled with what changes from tick to
/// tick. Ticks less than a day apart show the time of day, with the date on
/// a second line (after "\n") at the first tick and wherever the day
/// changes. Outside the range of date-time values the axis is numbered as a
/// linear one.
void datetime_ticks(double lo, double hi, double length, double spacing, AxisTicks& out);

/// The text of `value` on an axis whose numbers step by `step` and reach
/// `largest` in magnitude.
void format_tick(double value, double step, double largest, char (&out)[tick_label_size]);

}  // namespace tl
