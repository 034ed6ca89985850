// axis_ticks.cpp — tick positions and readable numbers for linear and log axes.
#include "graph/axis_ticks.h"

#include <cmath>
#include <cstdio>
#include <cstdint>
#include <cstring>

#include "lang/civil_calendar.h"
#include "lang/datetime_state.h"
#include "lang/datetime_text.h"
#include "lang/datetime_value.h"

namespace tl {
namespace {

/// 1, 2 or 5 times a power of ten, the smallest such not below `raw`.
double nice_step(double raw) {
    const double magnitude = std::pow(10.0, std::floor(std::log10(raw)));
    const double m = raw / magnitude;
    const double f = m <= 1.0 ? 1.0 : m <= 2.0 ? 2.0 : m <= 5.0 ? 5.0 : 10.0;
    return f * magnitude;
}

/// The 1-2-5 step next below `step` (itself a 1-2-5 step).
double smaller_step(double step) {
    const double magnitude = std::pow(10.0, std::floor(std::log10(step) + 1e-9));
    const double m = step / magnitude;
    return m < 1.5 ? 0.5 * magnitude : m < 3.5 ? magnitude : 2.0 * magnitude;
}

/// The step next below `step` among 1, 2, 2.5 and 5 times a power of ten.
double finer_step(double step) {
    const double magnitude = std::pow(10.0, std::floor(std::log10(step) + 1e-9));
    const double m = step / magnitude;
    return m < 1.5 ? 0.5 * magnitude : m < 2.25 ? magnitude : m < 3.5 ? 2.0 * magnitude : 2.5 * magnitude;
}

/// True for a step of 2.5 times a power of ten (its numbers need a digit more).
bool quarter_step(double step) {
    const double m = step / std::pow(10.0, std::floor(std::log10(step) + 1e-9));
    return m > 2.25 && m < 2.75;
}

/// How many multiples of `step` lie in lo..hi (a hair outside counts).
double multiples_within(double lo, double hi, double step) {
    return std::floor(hi / step + 1e-9) - std::ceil(lo / step - 1e-9) + 1.0;
}

/// A step finer than `step`, at least `closest` units, for an axis that
/// shows fewer than `fewest` multiples of it: the largest 1-2-5 step that
/// shows that many, else the largest 2.5 step that does, else the largest
/// step that shows the most.
double finer_for_count(double lo, double hi, double step, int fewest, double closest) {
    double quarter = 0.0;
    double most = step;
    // Three decades finer hold many more than a few numbers.
    double finer = finer_step(step);
    for (int k = 0; k < 12 && finer >= closest; ++k, finer = finer_step(finer)) {
        const double n = multiples_within(lo, hi, finer);
        if (n >= fewest) {
            if (!quarter_step(finer)) return finer;
            if (quarter == 0.0) quarter = finer;
        }
        if (n > multiples_within(lo, hi, most)) most = finer;
    }
    return quarter > 0.0 ? quarter : most;
}

/// The 1-2-5 step whose ticks come nearest to `wished` units apart (by ratio),
/// but at least `least` units apart.
double chosen_step(double wished, double least) {
    double step = nice_step(wished);
    const double below = smaller_step(step);
    if (wished / below < step / wished) step = below;
    if (least > 0.0 && step < least) step = nice_step(least);
    return step;
}

/// Replaces a leading "-" by the minus sign U+2212.
void use_minus_sign(char (&text)[tick_label_size]) {
    if (text[0] != '-') return;
    const std::size_t n = std::strlen(text);
    if (n + 2 >= tick_label_size) return;
    std::memmove(text + 3, text + 1, n);  // the NUL moves along
    text[0] = static_cast<char>(0xE2);
    text[1] = static_cast<char>(0x88);
    text[2] = static_cast<char>(0x92);
}

/// "1.5e+07" -> "1.5e7", "2e-05" -> "2e\u22125" (the minus sign, as in front).
void tidy_exponent(char (&text)[tick_label_size]) {
    char* e = std::strchr(text, 'e');
    if (e == nullptr) return;
    char* src = e + 1;
    if (*src == '+') ++src;
    const bool negative = *src == '-';
    if (negative) ++src;
    while (*src == '0' && src[1] != 0) ++src;
    char digits[tick_label_size];
    std::snprintf(digits, sizeof digits, "%s", src);
    std::snprintf(e + 1, sizeof text - static_cast<std::size_t>(e + 1 - text), "%s%s", negative ? "\u2212" : "",
                  digits);
}

}  // namespace

void format_tick(double value, double step, double largest, char (&out)[tick_label_size]) {
    if (std::fabs(value) < step * 1e-9) value = 0.0;
    const bool scientific = largest >= 1e6 || (largest > 0.0 && largest < 1e-4);
    if (scientific) {
        // Enough mantissa digits to tell neighbouring numbers apart.
        const int spread = static_cast<int>(std::floor(std::log10(largest)) - std::floor(std::log10(step) + 1e-9)) +
                           (quarter_step(step) ? 1 : 0);
        const int digits = spread < 0 ? 0 : spread > 15 ? 15 : spread;
        std::snprintf(out, sizeof out, "%.*e", digits, value);
        if (value == 0.0) std::snprintf(out, sizeof out, "0");
        tidy_exponent(out);
    } else {
        const int decimals = static_cast<int>(-std::floor(std::log10(step) + 1e-9)) + (quarter_step(step) ? 1 : 0);
        std::snprintf(out, sizeof out, "%.*f", decimals < 0 ? 0 : decimals > 15 ? 15 : decimals, value);
    }
    use_minus_sign(out);
}

void linear_ticks(double lo, double hi, double length, double spacing, AxisTicks& out, double least, int fewest,
                  double closest) {
    out.count = 0;
    out.minor_count = 0;
    out.power_labels = false;
    if (!(hi > lo) || !(length > 0.0) || !std::isfinite(hi - lo)) return;
    const double units_per_pixel = (hi - lo) / length;
    double step = chosen_step(units_per_pixel * spacing, units_per_pixel * least);
    if (!(step > 0.0) || !std::isfinite(step)) return;
    if (multiples_within(lo, hi, step) < fewest) step = finer_for_count(lo, hi, step, fewest, units_per_pixel * closest);
    // Steps too small for doubles to tell apart near lo give no ticks.
    if (std::fabs(lo) / step > 1e15 || std::fabs(hi) / step > 1e15) return;
    // A tick a hair outside the range (rounding) is still shown.
    const double first = std::ceil(lo / step - 1e-9);
    const double last = std::floor(hi / step + 1e-9);
    if (last - first + 1 > max_axis_ticks) return;
    const double largest = std::fmax(std::fabs(first * step), std::fabs(last * step));
    for (double k = first; k <= last && out.count < max_axis_ticks; ++k) {
        double v = k * step;
        if (std::fabs(v) < step * 1e-9) v = 0.0;
        out.value[out.count] = v;
        format_tick(v, step, largest, out.label[out.count]);
        ++out.count;
    }
}

void log_ticks(double lo, double hi, double length, double spacing, AxisTicks& out) {
    out.count = 0;
    out.minor_count = 0;
    out.power_labels = false;
    if (!(hi > lo) || !(length > 0.0)) return;
    const double per_decade = length / (hi - lo);
    const double first = std::ceil(lo - 1e-9);
    const double last = std::floor(hi + 1e-9);
    if (last - first < 1.0) {
        // Less than two decades numbered: number it as a linear axis of the
        // values, with the ticks placed at their logarithms.
        AxisTicks linear;
        const double a = std::pow(10.0, lo);
        const double b = std::pow(10.0, hi);
        linear_ticks(a, b, length, spacing * 1.5, linear, spacing * 1.5);
        for (int i = 0; i < linear.count; ++i) {
            if (!(linear.value[i] > 0.0)) continue;
            out.value[out.count] = std::log10(linear.value[i]);
            std::memcpy(out.label[out.count], linear.label[i], tick_label_size);
            ++out.count;
        }
        return;
    }
    double step = 1.0;
    if (per_decade < spacing) step = nice_step(spacing / per_decade);
    const double from = std::ceil(first / step) * step + 0.0;  // (+ 0.0: never minus zero)
    const bool plain = from >= -3.0 && last <= 4.0;  // 0.001 .. 10000 read well as they are
    out.power_labels = !plain;
    for (double d = from; d <= last && out.count < max_axis_ticks; d += step) {
        out.value[out.count] = d;
        char(&text)[tick_label_size] = out.label[out.count];
        if (plain) {
            const int decimals = d < 0 ? static_cast<int>(-d) : 0;
            std::snprintf(text, sizeof text, "%.*f", decimals, std::pow(10.0, d));
        } else {
            std::snprintf(text, sizeof text, "%.0f", d);
            use_minus_sign(text);
        }
        ++out.count;
    }
    // Minor ticks at 2..9 times each decade when they have room.
    if (step == 1.0 && per_decade >= 4.0 * 8.0) {
        for (double d = std::floor(lo); d <= hi && out.minor_count + 8 <= max_minor_ticks; d += 1.0) {
            for (int m = 2; m <= 9; ++m) {
                const double v = d + std::log10(static_cast<double>(m));
                if (v >= lo && v <= hi) out.minor[out.minor_count++] = v;
            }
        }
    }
}

}  // namespace tl

// ---------------------------------------------------------------------------
// Datetime axes

namespace tl {
namespace {

constexpr double day_seconds = 86400.0;
constexpr double year_seconds = 365.2425 * day_seconds;

/// The value of a local date at midnight in the zone in force.
bool local_midnight(std::int64_t year, int month, int day, double& out) {
    const double fields[6] = {static_cast<double>(year), static_cast<double>(month), static_cast<double>(day), 0, 0, 0};
    return make_datetime_value(fields, current_zone(), out) < 0;
}

void add_datetime_tick(AxisTicks& out, double v, double lo, double hi, double step) {
    if (v < lo || v > hi || out.count >= max_axis_ticks) return;
    out.value[out.count] = v;
    datetime_axis_text(v, step, out.label[out.count], tick_label_size);
    ++out.count;
}

/// Ticks less than a day apart: each label is the time of day, and the
/// first tick and every tick on a new day carry the date on a second line.
void time_of_day_labels(AxisTicks& out, double step) {
    char previous[tick_label_size / 2 - 1] = {};
    for (int i = 0; i < out.count; ++i) {
        // Both fit a label together with the line break (a date of the
        // farthest years has 16 characters, a time with decimals 15).
        char date[tick_label_size / 2 - 1] = {};
        char time[tick_label_size / 2 - 1] = {};
        std::size_t bad_at = 0;
        const double v = out.value[i];
        if (format_datetime(v, current_zone(), "%Y-%m-%d", date, sizeof date, bad_at) < 0) return;
        if (step < 1.0) {
            datetime_axis_text(v, step, time, sizeof time);  // the time with its decimals
        } else if (format_datetime(v, current_zone(), step >= 60.0 ? "%H:%M" : "%H:%M:%S", time, sizeof time,
                                   bad_at) < 0) {
            return;
        }
        char(&label)[tick_label_size] = out.label[i];
        if (std::strcmp(date, previous) != 0) {
            std::snprintf(label, sizeof label, "%s\n%s", time, date);
            std::memcpy(previous, date, sizeof previous);
        } else {
            std::snprintf(label, sizeof label, "%s", time);
        }
    }
}

}  // namespace

void datetime_ticks(double lo, double hi, double length, double spacing, AxisTicks& out) {
    out.count = 0;
    out.minor_count = 0;
    out.power_labels = false;
    if (!(hi > lo) || !(length > 0.0)) return;
    if (!is_datetime_value(lo) || !is_datetime_value(hi)) {
        linear_ticks(lo, hi, length, spacing, out);
        return;
    }
    const double raw = (hi - lo) * spacing / length;
    if (raw < 1.0) {
        const double step = nice_step(raw);
        if (std::fabs(lo) / step > 1e15) return;
        for (double k = std::ceil(lo / step - 1e-9); k * step <= hi + step * 1e-9 && out.count < max_axis_ticks; ++k)
            add_datetime_tick(out, k * step, lo - step * 1e-9, hi + step * 1e-9, step);
        time_of_day_labels(out, step);
        return;
    }
    constexpr double clock_steps[] = {1, 2, 5, 10, 15, 30, 60, 120, 300, 600, 900, 1800, 3600, 7200, 10800, 21600, 43200};
    for (double step : clock_steps) {
        if (step < raw) continue;
        // Multiples of the step on the local clock (the offset at the start).
        const double offset = split_datetime(lo, current_zone()).offset;
        for (double t = std::ceil((lo + offset) / step) * step - offset; t <= hi && out.count < max_axis_ticks; t += step)
            add_datetime_tick(out, t, lo, hi, step);
        time_of_day_labels(out, step);
        return;
    }
    const LocalFields start = split_datetime(lo, current_zone());
    const std::int64_t first_day = days_from_civil(start.date.year, start.date.month, start.date.day);
    for (int days : {1, 2, 7}) {
        if (days * day_seconds < raw) continue;
        // Weeks start on Mondays; other steps count from 1970-01-01.
        const std::int64_t anchor = days == 7 ? 4 : 0;
        std::int64_t z = first_day - floor_mod(first_day - anchor, days);
        for (; out.count < max_axis_ticks; z += days) {
            const CivilDate d = civil_from_days(z);
            double v = 0.0;
            if (!local_midnight(d.year, d.month, d.day, v)) return;
            if (v > hi) return;
            add_datetime_tick(out, v, lo, hi, days * day_seconds);
        }
        return;
    }
    for (int months : {1, 2, 3, 6}) {
        if (months * 30.44 * day_seconds < raw) continue;
        std::int64_t m = start.date.year * 12 + (start.date.month - 1);
        m -= floor_mod(m, months);
        for (; out.count < max_axis_ticks; m += months) {
            double v = 0.0;
            if (!local_midnight(floor_div(m, 12), static_cast<int>(floor_mod(m, 12)) + 1, 1, v)) return;
            if (v > hi) return;
            add_datetime_tick(out, v, lo, hi, 31 * day_seconds);
        }
        return;
    }
    const double years = std::max(1.0, nice_step(raw / year_seconds));
    if (std::fabs(static_cast<double>(start.date.year)) / years > 1e15) return;
    for (double y = std::floor(static_cast<double>(start.date.year) / years) * years; out.count < max_axis_ticks; y += years) {
        double v = 0.0;
        if (!local_midnight(static_cast<std::int64_t>(y), 1, 1, v)) return;
        if (v > hi) return;
        add_datetime_tick(out, v, lo, hi, 366 * day_seconds);
    }
}

}  // namespace tl
