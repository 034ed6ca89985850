// long_format.cpp — formatted output of a long number for a "w", "w.d" spec.
#include <algorithm>
#include <cassert>
#include <cstdio>
#include <cstring>

#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "longmath/long_blocks.h"
#include "longmath/long_convert.h"
#include "longmath/long_state.h"

namespace tl {
namespace {

int fail(int error, bool report) { return report ? report_error(error) : -error; }

struct FormatSpec {
    int width = 0;
    int decimals = 0;
    bool point = false;
    bool separators = false;
};

bool parse_spec(std::string_view text, FormatSpec& spec) {
    std::size_t i = 0;
    auto number = [&](int& value) {
        const std::size_t start = i;
        while (i < text.size() && text[i] >= '0' && text[i] <= '9' && i - start < 6) {
            value = value * 10 + (text[i] - '0');
            ++i;
        }
        return i > start;
    };
    if (!number(spec.width)) return false;
    if (i < text.size() && text[i] == '.') {
        spec.point = true;
        ++i;
        number(spec.decimals);
    }
    if (i < text.size() && (text[i] == 'C' || text[i] == 'c')) {
        spec.separators = true;
        ++i;
    }
    return i == text.size() && spec.width >= 12 && spec.width < 256 && spec.decimals <= spec.width - 3;
}

/// `n` rounded to `digits` significant digits under the current rounding rule.
void round_copy(const LongNumber& n, int digits, LongNumber& out) {
    long_copy(n, out);
    if (digits <= 0) {
        long_set_zero(out);
        return;
    }
    LongMode& mode = long_state.mode;
    const int saved = mode.precision;
    mode.precision = digits;
    out.nrm = 0;
    long_normalise(out, normalise_round);
    mode.precision = saved;
}

/// Appends to a fixed buffer of long_format_size characters.
struct FormatText {
    char* data;
    std::size_t length;
    FormatText& operator+=(char c) {
        assert(length + 1 < long_format_size);
        data[length++] = c;
        return *this;
    }
    std::size_t size() const { return length; }
};

char digit_at(const LongNumber& n, int position) {
    if (position < 0 || position >= n.len) return '0';
    char c;
    long_write_digits(n, position, 1, &c);
    return c;
}

}  // namespace

int long_format(const LongNumber& n, std::string_view spec_text, char* buffer, std::size_t size, bool report) {
    FormatSpec spec;
    if (!parse_spec(spec_text, spec)) return fail(err_invalid_format_string_print_using, report);
    const int integer_field = spec.point ? spec.width - spec.decimals - 2 : spec.width - 1;
    const int decimals = spec.decimals;

    LongNumber value;
    if (long_is_zero(n)) {
        long_set_zero(value);
    } else {
        // A number below the last shown decimal becomes 0; one with more
        // integer digits than the field holds goes to the exponent form below.
        const long digits = std::clamp(static_cast<long>(decimals) + n.exp, 0L, static_cast<long>(long_format_size));
        round_copy(n, static_cast<int>(digits), value);
    }
    const bool negative = value.sgn == -1 && !long_is_zero(value);

    // The text is at most the field plus an exponent suffix (long_format_size).
    char text_buffer[long_format_size];
    FormatText text{text_buffer, 0};
    text += negative ? '-' : ' ';
    const int integer_digits = value.exp > 0 ? value.exp : 0;
    const int separators = spec.separators && integer_digits > 0 ? (integer_digits - 1) / 3 : 0;
    if (integer_digits + separators <= integer_field) {
        for (int k = 0; k < integer_digits; ++k) {
            if (k > 0 && spec.separators && (integer_digits - k) % 3 == 0) text += ',';
            text += digit_at(value, k);
        }
        if (spec.point) {
            text += '.';
            for (int k = 0; k < decimals; ++k) text += digit_at(value, value.exp + k);
        }
    } else {
        // Exponent form with as many digits as the field allows.
        const int digits = integer_field + decimals - 9;
        round_copy(n, digits, value);
        text += digit_at(value, 0);
        text += '.';
        for (int k = 1; k < digits; ++k) text += digit_at(value, k);
        char suffix[16];
        std::snprintf(suffix, sizeof suffix, "e%+ld", static_cast<long>(value.exp) - 1);
        for (const char* c = suffix; *c != 0; ++c) text += *c;
    }

    const std::size_t width = static_cast<std::size_t>(spec.width);
    const std::size_t pad = text.size() < width ? width - text.size() : 0;
    if (pad + text.size() + 1 > size) return fail(err_long_output_buffer_too_small, report);
    std::memset(buffer, ' ', pad);
    std::memcpy(buffer + pad, text.data, text.size());
    buffer[pad + text.size()] = '\0';
    return static_cast<int>(pad + text.size());
}

}  // namespace tl
