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

namespace {

enum class Layout { zero, fraction_only, plain, exponent };

/// How the plain text of `n` is laid out, and its length without the NUL.
struct TextPlan {
    Layout layout = Layout::zero;
    char exponent_text[16] = "";
    std::size_t length = 1;
};

TextPlan plan_text(const LongNumber& n) {
    const LongMode& mode = long_state.mode;
    const bool floating = !mode.integer_mode;
    const int digits = n.len;
    const int exp = n.exp;
    TextPlan plan;
    // An integer-mode number below 1 has no integer digits and shows as 0.
    if (n.blocks[0] == 0 || (!floating && exp <= 0)) return plan;
    if (exp <= 0) {
        plan.layout = exp == 0 || -static_cast<long>(exp) <= mode.precision - digits ? Layout::fraction_only
                                                                                     : Layout::exponent;
    } else {
        plan.layout = floating && exp > mode.precision ? Layout::exponent : Layout::plain;
    }
    std::size_t need = n.sgn == -1 ? 1 : 0;
    switch (plan.layout) {
        case Layout::zero: break;
        case Layout::fraction_only:
            need += 1 + static_cast<std::size_t>(-static_cast<long>(exp)) + static_cast<std::size_t>(digits);
            break;
        case Layout::plain:
            if (exp >= digits) {
                need += static_cast<std::size_t>(exp) + (floating ? 1 : 0);
            } else {
                need += static_cast<std::size_t>(floating ? digits + 1 : exp);
            }
            break;
        case Layout::exponent:
            std::snprintf(plan.exponent_text, sizeof plan.exponent_text, "e%+ld", static_cast<long>(exp) - 1);
            need += static_cast<std::size_t>(digits) + 1 + std::strlen(plan.exponent_text);
            break;
    }
    plan.length = need;
    return plan;
}

/// The buffer size long_to_string insists on before it looks at the layout.
std::size_t minimum_size(const LongNumber& n) {
    if (!long_state.mode.integer_mode) return static_cast<std::size_t>(n.len) + 12;
    return static_cast<std::size_t>(n.exp > 0 ? n.exp : 1) + 2;
}

}  // namespace

std::size_t long_text_size(const LongNumber& n) {
    const std::size_t need = plan_text(n).length + 1;
    const std::size_t minimum = minimum_size(n);
    return need > minimum ? need : minimum;
}

int long_to_string(const LongNumber& n, char* buffer, std::size_t size, bool report) {
    const bool floating = !long_state.mode.integer_mode;
    const int digits = n.len;
    const int exp = n.exp;
    auto too_small = [&]() { return report ? report_error(err_long_output_buffer_too_small) : -err_long_output_buffer_too_small; };

    if (minimum_size(n) > size) return too_small();
    const TextPlan plan = plan_text(n);
    if (plan.layout == Layout::zero) {
        if (size < 2) return too_small();
        std::memcpy(buffer, "0", 2);
        return 1;
    }
    const std::size_t need = plan.length;
    const Layout layout = plan.layout;
    const char* const exponent_text = plan.exponent_text;
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
        case Layout::zero: break;
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
