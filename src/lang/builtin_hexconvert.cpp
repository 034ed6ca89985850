// builtin_hexconvert.cpp — hexconvert(x): a number to hexadecimal text, and
// hexadecimal text to a number.
//
//   hexconvert(255)        "FF"          hexconvert("FF")      255
//   hexconvert(-2.5)       "-2.8"        hexconvert("-2.8")    -2.5
//
// Numbers: doubles below 2^64 in magnitude are converted exactly (a binary
// fraction always ends); long numbers up to 310 integer digits, their
// fraction to as many hex digits as the floating-point length carries. Text: an
// optional sign, an optional "&H" or "0x", hex digits with an optional point;
// up to 13 significant digits give a double, longer texts (and any text in
// the long-default mode) a long number. A whole string array is read as one
// text, piece after piece, as the LONG statement stores long results.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

#include "exec/exec_state.h"
#include "exec/long_text_buffers.h"
#include "exec/memory_areas.h"
#include "exec/string_space.h"
#include "lang/builtin_support.h"
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "lang/lang_state.h"
#include "lang/scan_state.h"
#include "lang/scanner.h"
#include "longmath/long_arith.h"
#include "longmath/long_convert.h"
#include "longmath/long_space.h"
#include "longmath/long_state.h"

namespace tl {
namespace {

constexpr char hex_digits[] = "0123456789ABCDEF";
/// Decimal integer digits above which no hex text can fit a string (10^310 > 16^257).
constexpr int max_integer_digits = 310;
/// Decimal fraction digits used: enough for the 255 hex digits a string can hold.
constexpr int max_fraction_digits = 320;
/// Significant hex digits that a double holds exactly.
constexpr int double_hex_digits = 13;

/// The hex text being built (at most 255 characters).
struct HexText {
    char text[max_string_length + 1];
    std::size_t length = 0;
    bool put(char c) {
        if (length >= max_string_length) return false;
        text[length++] = c;
        return true;
    }
};

/// Appends the digits of `value` (most significant first); false when they do not fit.
bool put_integer(HexText& out, std::uint64_t value) {
    char digits[16];
    int n = 0;
    do {
        digits[n++] = hex_digits[value % 16];
        value /= 16;
    } while (value != 0);
    while (n > 0) {
        if (!out.put(digits[--n])) return false;
    }
    return true;
}

/// Hex digits of a double's fraction: 52 bits past the 1074 that the
/// smallest double reaches, so 269 digits hold every fraction exactly.
constexpr int double_fraction_digits = 269;

int double_to_hex(const Item& p, double x) {
    HexText out;
    if (std::signbit(x) && x != 0.0) {
        out.put('-');
        x = -x;
    }
    if (!(x < 18446744073709551616.0)) return fail_at(err_number_too_large_convert_hex, p);  // also NaN
    const double whole = std::floor(x);
    put_integer(out, static_cast<std::uint64_t>(whole));
    // The fraction's digits, exactly: each step below is exact.
    unsigned char digits[double_fraction_digits];
    int count = 0;
    for (double fraction = x - whole; fraction > 0.0 && count < double_fraction_digits;) {
        fraction *= 16.0;
        const double digit = std::floor(fraction);
        digits[count++] = static_cast<unsigned char>(digit);
        fraction -= digit;
    }
    // Only a fraction below 16^-240 or so is longer than the text can hold
    // (its integer part is then 0): it is rounded to the last digit that
    // fits, half to even, and is 0 when nothing significant is left.
    const int room = static_cast<int>(max_string_length - out.length) - 1;
    if (count > room) {
        const int next = digits[room];
        bool beyond = false;
        for (int i = room + 1; i < count; ++i) beyond = beyond || digits[i] != 0;
        count = room;
        const bool up = next > 8 || (next == 8 && (beyond || (count > 0 && digits[count - 1] % 2 == 1)));
        for (int i = count - 1; up && i >= 0; --i) {
            if (++digits[i] < 16) break;
            digits[i] = 0;  // a carry past the point cannot happen: the leading digits are zeros
        }
        while (count > 0 && digits[count - 1] == 0) --count;
    }
    if (count > 0) {
        out.put('.');
        for (int i = 0; i < count; ++i) out.put(hex_digits[digits[i]]);
    } else if (whole == 0.0) {
        return text_result("0", 1);  // too small to show, whatever its sign
    }
    return text_result(out.text, out.length);
}

/// Digit `i` (0-based from the first significant digit) of `n`; 0 beyond `len`.
int long_digit(const LongNumber& n, int i) {
    static constexpr std::uint32_t powers[8] = {10000000, 1000000, 100000, 10000, 1000, 100, 10, 1};
    if (i < 0 || i >= n.len) return 0;
    return static_cast<int>(n.blocks[static_cast<std::size_t>(i / 8)] / powers[i % 8] % 10);
}

int long_to_hex(const Item& p, const LongNumber& n) {
    if (n.exp > max_integer_digits) return fail_at(err_number_too_large_convert_hex, p);
    HexText out;
    if (n.sgn == -1) out.put('-');
    // The integer part as decimal digits, divided by 16 again and again.
    unsigned char integer[max_integer_digits];
    const int int_digits = n.exp > 0 ? n.exp : 0;
    for (int i = 0; i < int_digits; ++i) integer[i] = static_cast<unsigned char>(long_digit(n, i));
    char reversed[max_integer_digits + 1];
    int hex_count = 0;
    int first = 0;
    while (first < int_digits && integer[first] == 0) ++first;
    while (first < int_digits) {
        int rest = 0;
        for (int i = first; i < int_digits; ++i) {
            const int v = rest * 10 + integer[i];
            integer[i] = static_cast<unsigned char>(v / 16);
            rest = v % 16;
        }
        reversed[hex_count++] = hex_digits[rest];
        while (first < int_digits && integer[first] == 0) ++first;
    }
    const int integer_hex = hex_count;  // significant digits of the integer part
    if (hex_count == 0) reversed[hex_count++] = '0';
    if (out.length + static_cast<std::size_t>(hex_count) > max_string_length)
        return fail_at(err_integer_part_hex_number_too, p);
    while (hex_count > 0) out.put(reversed[--hex_count]);
    // The fraction, multiplied by 16 again and again, to as many hex digits
    // as the floating-point length carries in decimal digits (log 10 / log 16
    // = 0.8305 hex digit per decimal digit), or until it ends.
    unsigned char fraction[max_fraction_digits];
    int frac_digits = n.len - int_digits;
    if (n.exp < 0) frac_digits = n.len - n.exp;  // leading zeros behind the point
    if (frac_digits > max_fraction_digits) frac_digits = max_fraction_digits;
    if (frac_digits <= 0) return text_result(out.text, out.length);
    for (int i = 0; i < frac_digits; ++i) {
        fraction[i] = static_cast<unsigned char>(n.exp < 0 ? long_digit(n, i + n.exp) : long_digit(n, int_digits + i));
    }
    // Significant hex digits are counted from the first non-zero one: the
    // zeros that lead a small fraction carry no precision.
    const int carried = std::max(n.len, long_state.mode.precision);
    int wanted = static_cast<int>(std::ceil(carried * 0.8305)) - integer_hex;
    int last = frac_digits - 1;
    const std::size_t point = out.length;
    if (!out.put('.')) return text_result(out.text, out.length);
    bool significant = integer_hex > 0;
    while (wanted > 0 && last >= 0) {
        int carry = 0;
        for (int i = last; i >= 0; --i) {
            const int v = fraction[i] * 16 + carry;
            fraction[i] = static_cast<unsigned char>(v % 10);
            carry = v / 10;
        }
        if (!out.put(hex_digits[carry])) break;
        significant = significant || carry != 0;
        if (significant) --wanted;
        while (last >= 0 && fraction[last] == 0) --last;
    }
    while (out.length > point + 1 && out.text[out.length - 1] == '0') --out.length;
    if (out.length == point + 1) out.length = point;  // nothing but zeros behind the point
    return text_result(out.text, out.length);
}

int hex_value(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

/// The parts of a hex text: sign, integer digits and fraction digits
/// (without leading zeros of the integer part and trailing zeros of the fraction).
struct HexParts {
    bool negative = false;
    std::string_view integer;
    std::string_view fraction;
};

bool parse_hex(std::string_view t, HexParts& parts) {
    std::size_t i = 0;
    while (i < t.size() && (t[i] == ' ' || t[i] == '\t')) ++i;
    if (i < t.size() && (t[i] == '-' || t[i] == '+')) parts.negative = t[i++] == '-';
    if (i + 1 < t.size() && ((t[i] == '&' && (t[i + 1] | 0x20) == 'h') || (t[i] == '0' && (t[i + 1] | 0x20) == 'x')))
        i += 2;
    const std::size_t int_start = i;
    while (i < t.size() && hex_value(t[i]) >= 0) ++i;
    std::size_t int_end = i;
    std::size_t frac_start = i;
    std::size_t frac_end = i;
    if (i < t.size() && t[i] == '.') {
        frac_start = ++i;
        while (i < t.size() && hex_value(t[i]) >= 0) ++i;
        frac_end = i;
    }
    if (int_end == int_start && frac_end == frac_start) return false;  // no digit
    while (i < t.size() && (t[i] == ' ' || t[i] == '\t')) ++i;
    if (i != t.size()) return false;
    std::size_t s = int_start;
    while (s < int_end && t[s] == '0') ++s;
    while (frac_end > frac_start && t[frac_end - 1] == '0') --frac_end;
    parts.integer = t.substr(s, int_end - s);
    parts.fraction = t.substr(frac_start, frac_end - frac_start);
    return true;
}

int hex_to_double(const HexParts& h) {
    double v = 0.0;
    for (char c : h.integer) v = v * 16.0 + hex_value(c);
    double scale = 1.0 / 16.0;
    for (char c : h.fraction) {
        v += hex_value(c) * scale;
        scale /= 16.0;
    }
    return double_result(h.negative && v != 0.0 ? -v : v);
}

/// value = value * 16^k + chunk, for up to 6 hex digits at a time.
int accumulate(std::string_view digits, LongNumber& value, LongNumber& scale, LongNumber& chunk, LongNumber& t) {
    long_set_zero(value);
    for (std::size_t i = 0; i < digits.size(); i += 6) {
        const std::size_t n = digits.size() - i < 6 ? digits.size() - i : 6;
        std::uint32_t c = 0;
        for (std::size_t k = 0; k < n; ++k) c = c * 16 + static_cast<std::uint32_t>(hex_value(digits[i + k]));
        int rc = long_from_double(static_cast<double>(1u << (4 * n)), scale, true);
        if (rc >= 0) rc = long_from_double(c, chunk, true);
        if (rc >= 0) rc = long_multiply(value, scale, t);
        if (rc >= 0) rc = long_add(t, chunk, value);
        if (rc < 0) return rc;
        long_normalise(value, normalise_round);
    }
    return 0;
}

int hex_to_long(const HexParts& h) {
    const std::uint32_t mark = temp_long_mark();
    LongNumber* r[5];
    for (LongNumber*& n : r) {
        const std::int64_t ref = new_temp_long();
        if (ref < 0) {
            release_temp_longs(mark);
            return static_cast<int>(ref);
        }
        n = &long_at(static_cast<std::uint32_t>(ref));
    }
    LongNumber& value = *r[0];
    int rc = accumulate(h.integer, value, *r[1], *r[2], *r[3]);
    if (rc >= 0 && !h.fraction.empty() && !long_state.mode.integer_mode) {
        // fraction = F / 16^m, with 16^m built as F is: one digit "1" and m zeros.
        LongNumber& f = *r[4];
        rc = accumulate(h.fraction, f, *r[1], *r[2], *r[3]);
        LongNumber& power = *r[2];
        if (rc >= 0) rc = long_from_double(1.0, power, true);
        if (rc >= 0) {
            for (std::size_t i = 0; rc >= 0 && i < h.fraction.size(); ++i) {
                rc = long_from_double(16.0, *r[1], true);
                if (rc >= 0) rc = long_multiply(power, *r[1], *r[3]);
                if (rc >= 0) long_copy(*r[3], power);
            }
        }
        if (rc >= 0) rc = long_divide(f, power, *r[3]);
        if (rc >= 0) {
            long_copy(value, *r[1]);
            rc = long_add(*r[1], *r[3], value);
        }
    }
    if (rc >= 0) {
        value.nrm = 0;
        long_normalise(value, normalise_round);
        if (h.negative && !(value.blks == 1 && value.blocks[0] == 0)) value.sgn = -1;
        long_copy(value, long_state.work);
    }
    release_temp_longs(mark);
    return rc < 0 ? rc : long_result();
}

/// The text of a string array: its pieces from the first element to the first empty one.
int array_hex_text(const Item& p, std::vector<char>& text, std::string_view& out) {
    const ArrayEntry& a = *p.array;
    text.clear();
    const std::size_t count = a.element_count();
    for (std::size_t i = 0; i < count; ++i) {
        const char* piece = string_at(a.words()[i]);
        if (*piece == 0) break;
        text.insert(text.end(), piece, piece + std::strlen(piece));
    }
    out = std::string_view(text.data(), text.size());
    return 0;
}

}  // namespace

int fn_hexconvert_handler(Item* p, int) {
    Item& x = p[0];
    std::string_view text;
    switch (x.kind) {
        case kind_string: text = item_text(x); break;
        case kind_string_array: array_hex_text(x, long_text_buffers.operand, text); break;
        case kind_double:
        case kind_numeric_text:
        case kind_long: {
            const int k = numeric_parameter(x);
            if (k < 0) return k;
            if (k == kind_double) return double_to_hex(x, x.number);
            return long_to_hex(x, long_at(x.word));
        }
        default: return fail_at(err_invalid_source_variable_type, x);
    }
    HexParts h;
    if (!parse_hex(text, h)) return fail_at(err_invalid_character_hex_string, x);
    lang.reporter.error_column = x.column;
    const bool fits_double = h.integer.size() + h.fraction.size() <= double_hex_digits;
    if (fits_double && !areas.long_default && x.kind == kind_string) return hex_to_double(h);
    return hex_to_long(h);
}

}  // namespace tl
