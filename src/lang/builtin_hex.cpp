// builtin_hex.cpp — hex$ (numbers as hexadecimal text in four fill modes)
// and hexconvert (hexadecimal text to a number and back, any size).
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "lang/builtin_support.h"
#include "lang/error_table.h"
#include "lang/lang_state.h"
#include "lang/scanner.h"
#include "longmath/long_blocks.h"
#include "longmath/long_convert.h"
#include "longmath/long_space.h"
#include "longmath/long_state.h"

namespace tl {
namespace {

/// Hexadecimal digits hexconvert handles: a 255-character string.
constexpr int max_hex_digits = 255;
/// Decimal digits of the largest such number (16^255 < 10^308).
constexpr int max_decimal_digits = 310;
/// Hex digits that always fit the 53-bit mantissa of a double.
constexpr int double_hex_digits = 13;

int hex_value(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

/// Hexadecimal text to a number: a double for up to 13 digits, otherwise a
/// long number (converted through its exact decimal digits).
int hex_text_to_number(const Item& p) {
    const char* s = item_text(p);
    const bool negative = *s == '-';
    if (*s == '-' || *s == '+') ++s;
    const std::size_t n = std::strlen(s);
    if (n == 0) return fail_at(err_invalid_character_hex_string, p);
    for (std::size_t i = 0; i < n; ++i) {
        if (hex_value(s[i]) < 0) return fail_at(err_invalid_character_hex_string, p);
    }
    while (*s == '0' && s[1] != 0) ++s;
    const int digits = static_cast<int>(std::strlen(s));
    if (digits <= double_hex_digits) {
        double x = 0.0;
        for (int i = 0; i < digits; ++i) x = x * 16.0 + hex_value(s[i]);
        return double_result(negative ? -x : x);
    }
    // Decimal digits, least significant first: d = d * 16 + digit.
    unsigned char decimal[max_decimal_digits] = {};
    int used = 1;
    for (int i = 0; i < digits; ++i) {
        int carry = hex_value(s[i]);
        for (int k = 0; k < used; ++k) {
            const int v = decimal[k] * 16 + carry;
            decimal[k] = static_cast<unsigned char>(v % 10);
            carry = v / 10;
        }
        while (carry > 0) {
            decimal[used++] = static_cast<unsigned char>(carry % 10);
            carry /= 10;
        }
    }
    char text[max_decimal_digits + 2];
    int t = 0;
    if (negative) text[t++] = '-';
    for (int k = used - 1; k >= 0; --k) text[t++] = static_cast<char>('0' + decimal[k]);
    lang.reporter.error_column = p.column;
    const int r = long_from_text(std::string_view(text, static_cast<std::size_t>(t)), long_state.work, true);
    return r < 0 ? r : long_result();
}

/// The integer part of a number, given as decimal digits (most significant
/// first), to hexadecimal text.
int decimal_digits_to_hex(unsigned char* decimal, int count, bool negative, const Item& at) {
    char hex[max_hex_digits + 2];
    int h = 0;
    int start = 0;
    while (start < count && decimal[start] == 0) ++start;
    if (start == count) return text_result("0", 1);
    while (start < count) {  // divide by 16, the remainder is the next hex digit
        int rest = 0;
        for (int k = start; k < count; ++k) {
            const int v = rest * 10 + decimal[k];
            decimal[k] = static_cast<unsigned char>(v / 16);
            rest = v % 16;
        }
        if (h == max_hex_digits) return fail_at(err_integer_part_hex_number_too, at);
        hex[h++] = "0123456789ABCDEF"[rest];
        while (start < count && decimal[start] == 0) ++start;
    }
    if (negative) {
        if (h == max_hex_digits) return fail_at(err_integer_part_hex_number_too, at);
        hex[h++] = '-';
    }
    for (int i = 0, j = h - 1; i < j; ++i, --j) {
        const char c = hex[i];
        hex[i] = hex[j];
        hex[j] = c;
    }
    return text_result(hex, static_cast<std::size_t>(h));
}

int number_to_hex_text(Item& p) {
    const int k = numeric_parameter(p);
    if (k < 0) return k;
    unsigned char decimal[max_decimal_digits];
    if (k == kind_double) {
        const double x = std::trunc(std::fabs(p.number));
        if (!std::isfinite(x)) return fail_at(err_number_too_large_convert_hex, p);
        char text[400];
        const int n = std::snprintf(text, sizeof text, "%.0f", x);
        for (int i = 0; i < n; ++i) decimal[i] = static_cast<unsigned char>(text[i] - '0');
        return decimal_digits_to_hex(decimal, n, p.number <= -1.0, p);
    }
    const LongNumber& x = long_at(p.word);
    if (x.exp <= 0 || long_is_zero(x)) return text_result("0", 1);
    if (x.exp > max_decimal_digits) return fail_at(err_integer_part_hex_number_too, p);
    char text[max_decimal_digits];
    long_write_digits(x, 0, x.exp, text);
    for (int i = 0; i < x.exp; ++i) decimal[i] = static_cast<unsigned char>(text[i] - '0');
    return decimal_digits_to_hex(decimal, x.exp, x.sgn == -1, p);
}

}  // namespace

int fn_hex_handler(Item* p, int count) {
    double n = 0.0;
    double fill = -1.0;
    int r = double_parameter(p[0], n);
    if (r >= 0 && count == 2) r = double_parameter(p[1], fill);
    if (r < 0) return r;
    if (fill != -1.0 && fill != 0.0 && fill != 1.0 && fill != 2.0) return fail_at(err_hexs_invalid_fill_value, p[1]);
    char text[32];
    if (fill == 2.0) {  // the bits of the double itself
        std::uint64_t bits = 0;
        std::memcpy(&bits, &n, sizeof bits);
        std::snprintf(text, sizeof text, "%04X%04X%04X%04X", static_cast<unsigned>(bits >> 48),
                      static_cast<unsigned>((bits >> 32) & 0xFFFF), static_cast<unsigned>((bits >> 16) & 0xFFFF),
                      static_cast<unsigned>(bits & 0xFFFF));
        return text_result(text, std::strlen(text));
    }
    if (!(n >= -2147483648.0 && n <= 4294967295.0)) return fail_at(err_hexs_number_out_range_integers, p[0]);
    if (n < 0.0) n += 4294967296.0;  // two's complement
    const auto v = static_cast<std::uint32_t>(n);
    const unsigned high = v >> 16;
    const unsigned low = v & 0xFFFF;
    if (fill == -1.0) {
        std::snprintf(text, sizeof text, "%X", v);
    } else if (fill == 0.0) {
        std::snprintf(text, sizeof text, "%04X%04X", high, low);
    } else if (v < 65536) {
        std::snprintf(text, sizeof text, "    %4X", low);
    } else {
        std::snprintf(text, sizeof text, "%4X%04X", high, low);
    }
    return text_result(text, std::strlen(text));
}

int fn_hexconvert_handler(Item* p, int) {
    if (p[0].kind == kind_string) return hex_text_to_number(p[0]);
    return number_to_hex_text(p[0]);
}

}  // namespace tl
