// datetime_text.cpp — the format codes of date-time values and the axis labels.
#include "lang/datetime_text.h"

#include <cmath>
#include <cstdio>
#include <cstring>

#include "lang/datetime_state.h"
#include "lang/datetime_value.h"

namespace tl {
namespace {

constexpr const char* weekday_names[7] = {"Sunday", "Monday", "Tuesday", "Wednesday",
                                          "Thursday", "Friday", "Saturday"};
constexpr const char* month_names[12] = {"January", "February", "March",     "April",   "May",      "June",
                                         "July",    "August",   "September", "October", "November", "December"};

struct Output {
    char* out;
    std::size_t size;
    std::size_t length = 0;
    bool overflow = false;
    void put(const char* text, std::size_t n) {
        if (length + n >= size) {
            overflow = true;
            return;
        }
        std::memcpy(out + length, text, n);
        length += n;
    }
    void put(const char* text) { put(text, std::strlen(text)); }
    void number(long long v, int width, char fill = '0') {
        char text[32];
        const int n = fill == '0' ? std::snprintf(text, sizeof text, "%0*lld", width, v)
                                  : std::snprintf(text, sizeof text, "%*lld", width, v);
        put(text, static_cast<std::size_t>(n));
    }
};

/// The digits of the "%Nf" at `format[i]` ("%f" is 6), or 0 when it is no fraction code.
int fraction_digits(std::string_view format, std::size_t i) {
    if (i + 1 < format.size() && format[i + 1] == 'f') return 6;
    if (i + 2 < format.size() && format[i + 1] >= '1' && format[i + 1] <= '9' && format[i + 2] == 'f')
        return format[i + 1] - '0';
    return 0;
}

void put_offset(Output& o, std::int32_t offset, bool colon) {
    const std::int32_t a = std::abs(offset);
    char text[16];
    const int n = std::snprintf(text, sizeof text, colon ? "%c%02d:%02d" : "%c%02d%02d", offset < 0 ? '-' : '+',
                                a / 3600, a % 3600 / 60);
    o.put(text, static_cast<std::size_t>(n));
}

void put_year(Output& o, std::int64_t year) {
    if (year < 0) {
        o.put("-", 1);
        o.number(-year, 4);
    } else {
        o.number(year, 4);
    }
}

}  // namespace

int format_datetime(double value, const TimeZone& zone, std::string_view format, char* out, std::size_t size,
                    std::size_t& bad_at) {
    // The finest fraction shown decides the rounding of the value.
    int digits = 0;
    for (std::size_t i = 0; i < format.size(); ++i) {
        if (format[i] != '%') continue;
        const int d = fraction_digits(format, i);
        if (d > digits) digits = d;
        if (i + 1 < format.size() && format[i + 1] == '%') ++i;
    }
    if (digits > 0) {
        const double scale = std::pow(10.0, digits);
        const double whole = std::floor(value);
        const double rounded = whole + std::round((value - whole) * scale) / scale;
        if (is_datetime_value(rounded)) value = rounded;
    }
    const LocalFields f = split_datetime(value, zone);
    Output o{out, size};
    for (std::size_t i = 0; i < format.size() && !o.overflow; ++i) {
        const char c = format[i];
        if (c != '%') {
            o.put(&c, 1);
            continue;
        }
        if (i + 1 >= format.size()) {
            bad_at = i;
            return datetime_format_bad_code;
        }
        const std::size_t at = i;
        const char code = format[++i];
        switch (code) {
            case 'Y': put_year(o, f.date.year); break;
            case 'y': o.number(floor_mod(f.date.year, 100), 2); break;
            case 'm': o.number(f.date.month, 2); break;
            case 'd': o.number(f.date.day, 2); break;
            case 'e': o.number(f.date.day, 2, ' '); break;
            case 'j': o.number(f.yearday, 3); break;
            case 'H': o.number(f.hour, 2); break;
            case 'I': o.number(f.hour % 12 == 0 ? 12 : f.hour % 12, 2); break;
            case 'p': o.put(f.hour < 12 ? "AM" : "PM", 2); break;
            case 'M': o.number(f.minute, 2); break;
            case 'S': o.number(f.second, 2); break;
            case 'A': o.put(weekday_names[f.weekday]); break;
            case 'a': o.put(weekday_names[f.weekday], 3); break;
            case 'B': o.put(month_names[f.date.month - 1]); break;
            case 'b': o.put(month_names[f.date.month - 1], 3); break;
            case 'u': o.number(f.weekday == 0 ? 7 : f.weekday, 1); break;
            case 'w': o.number(f.weekday, 1); break;
            case 'Z': o.put(f.abbr); break;
            case 'z': put_offset(o, f.offset, false); break;
            case 'F':
                put_year(o, f.date.year);
                o.put("-", 1);
                o.number(f.date.month, 2);
                o.put("-", 1);
                o.number(f.date.day, 2);
                break;
            case 'T':
                o.number(f.hour, 2);
                o.put(":", 1);
                o.number(f.minute, 2);
                o.put(":", 1);
                o.number(f.second, 2);
                break;
            case '%': o.put("%", 1); break;
            case ':':
                if (i + 1 < format.size() && format[i + 1] == 'z') {
                    ++i;
                    put_offset(o, f.offset, true);
                    break;
                }
                bad_at = at;
                return datetime_format_bad_code;
            default: {
                const int d = fraction_digits(format, at);
                if (d == 0) {
                    bad_at = at;
                    return datetime_format_bad_code;
                }
                if (code != 'f') ++i;  // "%Nf"
                const auto scaled = static_cast<long long>(std::floor(f.fraction * std::pow(10.0, d) + 0.5));
                o.number(scaled >= static_cast<long long>(std::pow(10.0, d)) ? 0 : scaled, d);
                break;
            }
        }
    }
    if (o.overflow) return datetime_format_too_long;
    out[o.length] = 0;
    return static_cast<int>(o.length);
}

std::size_t datetime_axis_text(double value, double step, char* out, std::size_t size) {
    if (size == 0) return 0;
    if (!is_datetime_value(value)) {
        const int n = std::snprintf(out, size, "%.6g", value);
        return n < 0 ? 0 : std::strlen(out);
    }
    constexpr double day = 86400.0;
    char layout[32] = "%Y-%m-%d %H:%M:%S.%3f";
    if (step >= 365 * day) {
        std::strcpy(layout, "%Y");
    } else if (step >= 28 * day) {
        std::strcpy(layout, "%Y-%m");
    } else if (step >= day) {
        std::strcpy(layout, "%Y-%m-%d");
    } else if (step >= 60) {
        std::strcpy(layout, "%Y-%m-%d %H:%M");
    } else if (step >= 1) {
        std::strcpy(layout, "%Y-%m-%d %H:%M:%S");
    } else if (step > 0) {
        // As many decimals as the step has (0.25 needs two), at most six.
        int digits = 1;
        for (; digits < 6; ++digits) {
            const double x = step * std::pow(10.0, digits);
            if (x >= 0.999 && std::fabs(x - std::round(x)) < 1e-6 * x) break;
        }
        std::snprintf(layout, sizeof layout, "%%H:%%M:%%S.%%%df", digits);
    }
    std::size_t bad_at = 0;
    const int n = format_datetime(value, current_zone(), layout, out, size, bad_at);
    if (n < 0) {
        out[0] = 0;
        return 0;
    }
    return static_cast<std::size_t>(n);
}

}  // namespace tl
