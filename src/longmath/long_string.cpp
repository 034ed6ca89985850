// long_string.cpp — the plain text of a long number.
#include <cstdio>
#include <cstring>

#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "longmath/long_blocks.h"
#include "longmath/long_convert.h"
#include "longmath/long_state.h"

namespace tl {

void long_write_digits(const LongNumber& n, int from, int count, char* out) {
    for (int k = 0; k < count; ++k) {
        const int index = from + k;
        if (index >= 8 * n.blks) {
            out[k] = '0';
            continue;
        }
        const std::uint32_t block = n.blocks[static_cast<std::size_t>(index / 8)];
        out[k] = static_cast<char>('0' + block / long_pow10[7 - index % 8] % 10);
    }
}

int long_to_string(const LongNumber& n, char* buffer, std::size_t size, bool report) {
    const LongMode& mode = long_state.mode;
    const bool floating = !mode.integer_mode;
    const int digits = n.len;
    const int exp = n.exp;
    auto too_small = [&]() { return report ? report_error(err_long_output_buffer_too_small) : -err_long_output_buffer_too_small; };

    if (floating) {
        if (static_cast<std::size_t>(digits) + 12 > size) return too_small();
    } else {
        const long integer_digits = exp > 0 ? exp : 1;
        if (static_cast<std::size_t>(integer_digits) + 2 > size) return too_small();
    }
    if (n.blocks[0] == 0) {
        if (size < 2) return too_small();
        std::memcpy(buffer, "0", 2);
        return 1;
    }

    // The layout: [-] integer digits, [. fraction] or exponent form.
    enum class Layout { fraction_only, plain, exponent } layout;
    if (exp <= 0) {
        layout = exp == 0 || -exp <= mode.precision - digits ? Layout::fraction_only : Layout::exponent;
    } else {
        layout = floating && exp > mode.precision ? Layout::exponent : Layout::plain;
    }
    if (!floating && exp <= 0) {
        // No integer digits: an integer-mode number below 1 shows as 0.
        std::memcpy(buffer, "0", 2);
        return 1;
    }

    char exponent_text[16] = "";
    std::size_t need = n.sgn == -1 ? 1 : 0;
    switch (layout) {
        case Layout::fraction_only: need += 1 + static_cast<std::size_t>(-exp) + static_cast<std::size_t>(digits); break;
        case Layout::plain:
            if (exp >= digits) {
                need += static_cast<std::size_t>(exp) + (floating ? 1 : 0);
            } else {
                need += static_cast<std::size_t>(floating ? digits + 1 : exp);
            }
            break;
        case Layout::exponent:
            std::snprintf(exponent_text, sizeof exponent_text, "e%+d", exp - 1);
            need += static_cast<std::size_t>(digits) + 1 + std::strlen(exponent_text);
            break;
    }
    if (need + 1 > size) return too_small();

    char* out = buffer;
    if (n.sgn == -1) *out++ = '-';
    switch (layout) {
        case Layout::fraction_only:
            *out++ = '.';
            std::memset(out, '0', static_cast<std::size_t>(-exp));
            out += -exp;
            long_write_digits(n, 0, digits, out);
            out += digits;
            break;
        case Layout::plain:
            if (exp >= digits) {
                long_write_digits(n, 0, digits, out);
                out += digits;
                std::memset(out, '0', static_cast<std::size_t>(exp - digits));
                out += exp - digits;
                if (floating) *out++ = '.';
            } else {
                long_write_digits(n, 0, exp, out);
                out += exp;
                if (floating) {
                    *out++ = '.';
                    long_write_digits(n, exp, digits - exp, out);
                    out += digits - exp;
                }
            }
            break;
        case Layout::exponent:
            long_write_digits(n, 0, 1, out++);
            *out++ = '.';
            long_write_digits(n, 1, digits - 1, out);
            out += digits - 1;
            std::memcpy(out, exponent_text, std::strlen(exponent_text));
            out += std::strlen(exponent_text);
            break;
    }
    *out = '\0';
    return static_cast<int>(out - buffer);
}

}  // namespace tl
