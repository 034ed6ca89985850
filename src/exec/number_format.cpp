// number_format.cpp — engineering, C-conversion and picture formats for doubles.
#include "exec/number_format.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "lang/error_table.h"

namespace tl {

namespace {

/// Bounded text builder over a caller's buffer; text that does not fit is cut.
struct TextOut {
    char* data;
    std::size_t size;  ///< capacity including the NUL
    std::size_t length = 0;

    void put(char c) {
        if (length + 1 < size) data[length++] = c;
        data[length] = 0;
    }
    void put(std::string_view text) {
        for (char c : text) put(c);
    }
};

bool starts_with_eng(const char* format) {
    return (format[0] | 0x20) == 'e' && (format[1] | 0x20) == 'n' && (format[2] | 0x20) == 'g';
}

// ---- engineering notation ---------------------------------------------------

inline constexpr std::size_t max_unit_length = 10;
inline constexpr int min_eng_exponent = -12;
inline constexpr int max_eng_exponent = 14;

// ORDER: one prefix per group of three exponents, from 10^-12 to 10^12. The
// micro sign is written in UTF-8 (U+00B5), the encoding of the console and
// the log file.
constexpr const char* eng_prefixes[] = {"p", "n", "\xC2\xB5", "m", " ", "K", "M", "G", "T"};
constexpr int eng_blank_prefix = 4;
static_assert(sizeof eng_prefixes / sizeof eng_prefixes[0] == (max_eng_exponent - min_eng_exponent + 3) / 3);

/// Floor division by 3 for negative exponents too.
int exponent_group(int e) { return e >= 0 ? e / 3 : -((-e + 2) / 3); }

int format_engineering(const char* unit_source, double x, TextOut& out) {
    char unit[max_unit_length + 4] = {};
    std::size_t unit_length = strnlen(unit_source, max_unit_length);
    std::memcpy(unit, unit_source, unit_length);
    if (unit_length < 3) {
        std::memcpy(unit + unit_length, "   ", 3);
        unit_length += 3;
    }
    const std::string_view unit_text(unit, unit_length);

    // "% 4.2e" gives a sign or blank, d.dd, "e" and the exponent; infinities
    // and NaN have no "e" and are written as they are.
    char scientific[40];
    std::snprintf(scientific, sizeof scientific, "% 4.2e", x);
    const char* e_mark = std::strchr(scientific, 'e');
    long e = 0;
    if (e_mark != nullptr) e = std::strtol(e_mark + 1, nullptr, 10);
    if (e_mark == nullptr || e < min_eng_exponent || e > max_eng_exponent) {
        out.put(scientific);
        out.put(unit_text);
        return static_cast<int>(out.length);
    }

    const int exponent = static_cast<int>(e);
    const int group = exponent_group(exponent);
    const int integer_digits = exponent - 3 * group + 1;  // 1 to 3
    const char digits[3] = {scientific[1], scientific[3], scientific[4]};
    for (int i = integer_digits; i < 3; ++i) out.put(' ');  // keeps the point in one column
    out.put(scientific[0]);                                  // "-" or a blank
    for (int i = 0; i < integer_digits; ++i) out.put(digits[i]);
    out.put('.');
    for (int i = integer_digits; i < 3; ++i) out.put(digits[i]);
    out.put(' ');
    const int prefix = group - min_eng_exponent / 3;
    out.put(eng_prefixes[prefix]);
    out.put(prefix == eng_blank_prefix ? ' ' : '-');
    out.put(unit_text);
    return static_cast<int>(out.length);
}

// ---- picture formats ------------------------------------------------------------

inline constexpr std::size_t max_picture_length = 255;
inline constexpr char picture_overflow_fill = '*';

/// Lays the digits of `body` (digits and at most one point) and the sign
/// `sign` (0 for none) into `picture` from the right. Returns false when the
/// picture has too few digit positions.
bool lay_into_picture(const char* picture, std::size_t width, std::size_t point, bool cents, bool forced_sign,
                      std::string_view body, char sign, char* field) {
    std::ptrdiff_t next = static_cast<std::ptrdiff_t>(body.size()) - 1;
    for (std::size_t i = width; i-- > 0;) {
        const char p = picture[i];
        const bool digit_position = p == '#' || (i == 0 && forced_sign) || (cents && i > point);
        if (i == point && next >= 0 && body[static_cast<std::size_t>(next)] == '.') {
            field[i] = '.';
            --next;
        } else if (digit_position && next >= 0) {
            field[i] = body[static_cast<std::size_t>(next--)];
        } else if (!digit_position && next >= 0) {
            field[i] = p;  // a separator between digits
        } else if (sign != 0) {
            field[i] = sign;  // the sign goes just before the first digit
            sign = 0;
        } else {
            field[i] = ' ';
        }
    }
    return next < 0 && sign == 0;
}

int format_picture(const char* picture, double x, TextOut& out) {
    std::size_t width = strnlen(picture, max_picture_length);
    if (width > out.size - 1) width = out.size - 1;
    const char* point_at = static_cast<const char*>(std::memchr(picture, '.', width));
    const std::size_t point = point_at != nullptr ? static_cast<std::size_t>(point_at - picture) : width;
    const int decimals = point_at != nullptr ? static_cast<int>(width - point - 1) : 0;
    // ".cc": the value counts hundredths; it is rounded to a whole number and
    // its last two digits become the decimals.
    const bool cents = decimals == 2 && picture[point + 1] == 'c' && picture[point + 2] == 'c';
    const bool forced_sign = picture[0] == '+';

    char number[400];
    int n;
    if (cents)
        n = std::snprintf(number, sizeof number, forced_sign ? "%+.0f" : "%.0f", x);
    else
        n = std::snprintf(number, sizeof number, forced_sign ? "%+*.*f" : "%*.*f", static_cast<int>(width), decimals,
                          x);

    char field[max_picture_length + 1] = {};
    bool fits = n >= 0 && static_cast<std::size_t>(n) < sizeof number;
    if (!std::isfinite(x)) {
        // "inf" and "nan" are shown right-aligned in the field when they fit.
        fits = fits && static_cast<std::size_t>(n) <= width;
        if (fits) {
            std::memset(field, ' ', width);
            std::memcpy(field + width - static_cast<std::size_t>(n), number, static_cast<std::size_t>(n));
        } else {
            std::memset(field, picture_overflow_fill, width);
        }
        out.put(std::string_view(field, width));
        return static_cast<int>(out.length);
    }
    char sign = 0;
    char body[sizeof number + 4];
    std::size_t body_length = 0;
    if (fits) {
        std::size_t digit_count = 0;
        for (int i = 0; i < n; ++i) {
            const char c = number[i];
            if (c == '-' || c == '+') sign = c;
            else if (c != ' ') body[body_length++] = c, digit_count += c != '.';
        }
        if (cents) {
            // Leading zeros up to "0.0d", then the point before the last two digits.
            const std::size_t zeros = digit_count < 3 ? 3 - digit_count : 0;
            std::memmove(body + zeros, body, body_length);
            std::memset(body, '0', zeros);
            body_length += zeros;
            body[body_length] = body[body_length - 1];
            body[body_length - 1] = body[body_length - 2];
            body[body_length - 2] = '.';
            ++body_length;
        }
        fits = lay_into_picture(picture, width, point, cents, forced_sign, std::string_view(body, body_length), sign,
                                field);
    }
    if (!fits) std::memset(field, picture_overflow_fill, width);
    out.put(std::string_view(field, width));
    return static_cast<int>(out.length);
}

// ---- C conversions -----------------------------------------------------------------

bool is_digit(char c) { return c >= '0' && c <= '9'; }

/// Reads up to three digits at `p[i]`; false when the value exceeds the limit.
bool read_field(const char* p, std::size_t& i) {
    int value = 0;
    int count = 0;
    while (is_digit(p[i])) {
        if (++count > 3) return false;
        value = value * 10 + (p[i++] - '0');
    }
    return value <= max_format_field;
}

}  // namespace

bool is_valid_c_number_format(const char* format) {
    int conversions = 0;
    std::size_t i = 0;
    while (format[i] != 0) {
        if (format[i++] != '%') continue;
        if (format[i] == '%') {
            ++i;
            continue;
        }
        while (format[i] != 0 && std::strchr("-+ #0", format[i]) != nullptr) ++i;
        if (!read_field(format, i)) return false;
        if (format[i] == '.') {
            ++i;
            if (!read_field(format, i)) return false;
        }
        if (format[i] == 'l') ++i;
        if (format[i] == 0 || std::strchr("eEfFgGaA", format[i]) == nullptr) return false;
        ++i;
        ++conversions;
    }
    return conversions == 1;
}

int format_number(const char* format, double x, char* out, std::size_t size) {
    TextOut text{out, size};
    out[0] = 0;
    if (starts_with_eng(format)) return format_engineering(format + 3, x, text);
    if (format[0] != '%') return format_picture(format, x, text);
    if (!is_valid_c_number_format(format)) return -err_invalid_format_string_print_using;
    // The format was checked above: one conversion that reads one double.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    const int n = std::snprintf(out, size, format, x);
#pragma GCC diagnostic pop
    if (n < 0) {
        out[0] = 0;
        return 0;
    }
    return static_cast<std::size_t>(n) < size ? n : static_cast<int>(size - 1);
}

}  // namespace tl
