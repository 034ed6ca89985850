// long_text.cpp — number strings into long numbers.
#include <algorithm>

#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "longmath/long_blocks.h"
#include "longmath/long_convert.h"
#include "longmath/long_state.h"
#include "longmath/long_text.h"

namespace tl {
namespace {

constexpr int max_written_exponent = 1000000;

int fail(int error, bool report) { return report ? report_error(error) : -error; }

bool is_digit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

int long_parse_text(std::string_view text, ParsedLongText& out, bool report) {
    ParsedLongText p;
    std::size_t pos = 0;
    const std::size_t end = std::min(text.size(), text.find('\0'));
    while (pos < end && text[pos] == ' ') ++pos;
    if (pos < end && text[pos] == '-') {
        p.sign = -1;
        ++pos;
    } else if (pos < end && text[pos] == '+') {
        ++pos;
    }

    // Mantissa: digits with at most one point.
    int all_digits = 0;
    int fraction_digits = 0;
    bool seen_point = false;
    std::size_t first_nonzero = std::string_view::npos;
    std::size_t last_nonzero = std::string_view::npos;
    int leading_zeros = 0;
    for (; pos < end; ++pos) {
        const char c = text[pos];
        if (is_digit(c)) {
            ++all_digits;
            if (seen_point) ++fraction_digits;
            if (c != '0') {
                if (first_nonzero == std::string_view::npos) first_nonzero = pos;
                last_nonzero = pos;
            } else if (first_nonzero == std::string_view::npos) {
                ++leading_zeros;
            }
        } else if (c == '.') {
            if (seen_point) return fail(err_more_than_one_decimal_point, report);
            seen_point = true;
            p.point = pos;
        } else {
            break;
        }
    }

    const std::size_t mantissa_end = pos;

    // Exponent part, then the end of the text.
    long written_exponent = 0;
    if (pos < end && (text[pos] == 'e' || text[pos] == 'E')) {
        if (all_digits == 0) return fail(err_number_string_contained_no_digits, report);
        ++pos;
        bool negative = false;
        if (pos < end && (text[pos] == '+' || text[pos] == '-')) negative = text[pos++] == '-';
        // At least one digit, as in a number constant: "1e" and "1e+" are no numbers.
        if (pos >= end) return fail(err_invalid_character_number_string, report);
        for (; pos < end; ++pos) {
            if (!is_digit(text[pos])) return fail(err_invalid_character_number_string, report);
            written_exponent = written_exponent * 10 + (text[pos] - '0');
            if (written_exponent > max_written_exponent) return fail(err_exponent_out_range, report);
        }
        if (negative) written_exponent = -written_exponent;
    }
    if (pos < end) return fail(err_invalid_character_number_string, report);
    if (all_digits == 0) return fail(err_number_string_contained_no_digits, report);

    if (first_nonzero == std::string_view::npos) {
        // Only zeros: the value 0.
        p.digits = 0;
        p.exponent = 0;
        out = p;
        return 0;
    }

    // Significant digits: from the first non-zero digit to the last one.
    int significant = all_digits - leading_zeros;
    p.exponent = static_cast<std::int32_t>(written_exponent - fraction_digits + significant);
    int trailing = 0;
    for (std::size_t i = last_nonzero + 1; i < mantissa_end; ++i) {
        if (is_digit(text[i])) ++trailing;
    }
    const int digits = significant - trailing;
    p.first = first_nonzero;
    p.last = last_nonzero;
    p.digits = digits;

    // Which digits are kept, and the first dropped one.
    const LongMode& mode = long_state.mode;
    auto digit_after = [&](int kept) {
        // The kept+1-th significant digit (kept < digits + trailing), skipping a point.
        std::size_t i = first_nonzero;
        int n = 0;
        for (;; ++i) {
            if (!is_digit(text[i])) continue;
            if (n == kept) return text[i];
            ++n;
        }
    };
    if (!mode.integer_mode) {
        if (digits > mode.precision + 1) {
            p.dropped = digit_after(mode.precision);
            p.digits = mode.precision;
        }
    } else if (p.exponent < digits) {
        if (p.exponent <= 0) {
            p.dropped = p.exponent == 0 ? digit_after(0) : '0';
            p.digits = 0;
            p.exponent = 0;
        } else {
            p.dropped = digit_after(p.exponent);
            p.digits = p.exponent;
        }
    } else {
        p.implied_zeros = p.exponent - digits;
    }
    out = p;
    return 0;
}

int long_from_text(std::string_view text, LongNumber& dest, bool report) {
    ParsedLongText p;
    const int rc = long_parse_text(text, p, report);
    if (rc < 0) return rc;
    const LongMode& mode = long_state.mode;

    int digits = p.digits;
    const bool round_up = mode.rounding && p.dropped >= '5';
    // The dropped digit is kept so that normalisation can round on it; in
    // integer mode nothing rounds it away, so it stays as a fraction digit.
    if (round_up) ++digits;
    if (!mode.integer_mode) digits = std::min(digits, mode.precision + 2);
    if (digits <= 0) {
        long_set_zero(dest);
        return 0;
    }

    const int blks = long_blocks_for(digits);
    long_reserve(dest, blks * 8);
    std::uint32_t* b = dest.blocks.data();
    std::size_t i = p.first;
    for (int k = 0; k < blks; ++k) {
        std::uint32_t v = 0;
        for (int j = 0; j < 8; ++j) {
            const int index = k * 8 + j;
            v *= 10;
            if (index < digits) {
                while (!is_digit(text[i])) ++i;
                v += static_cast<std::uint32_t>(text[i] - '0');
                ++i;
            }
        }
        b[k] = v;
    }
    dest.blks = blks;
    dest.len = digits;
    dest.sgn = p.sign;
    dest.exp = p.exponent;
    dest.nrm = 0;
    long_normalise(dest, !mode.integer_mode && round_up ? normalise_round : normalise_strip);
    return 0;
}

}  // namespace tl
