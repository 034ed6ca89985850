// number_text.cpp — reading and checking decimal number texts.
#include "lang/number_text.h"

#include "lang/error_table.h"

namespace tl {
namespace {

bool is_digit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

NumberText read_number_text(const char* p, const char* end, char* out) {
    NumberText r;
    const char* q = p;
    bool point = false;
    auto fail = [&](int error, const char* at) {
        r.error = error;
        r.error_offset = static_cast<std::size_t>(at - p);
        r.length = static_cast<std::size_t>(q - p);
        out[r.length < max_number_text ? r.length : max_number_text] = 0;
        return r;
    };
    auto put = [&](char c) -> bool {
        const auto n = static_cast<std::size_t>(q - p);
        if (n >= max_number_text) return false;
        out[n] = c;
        ++q;
        return true;
    };
    while (q < end && (is_digit(*q) || *q == '.')) {
        if (*q == '.') {
            if (point) return fail(err_more_than_one_decimal_point, q);
            point = true;
        } else {
            ++r.digits;
        }
        if (!put(*q)) return fail(err_number_too_many_characters, q);
    }
    if (r.digits > 0 && q < end && (*q == 'e' || *q == 'E')) {
        if (!put(*q)) return fail(err_number_too_many_characters, q);
        if (q < end && (*q == '+' || *q == '-')) {
            if (!put(*q)) return fail(err_number_too_many_characters, q);
        }
        if (q >= end || !is_digit(*q)) return fail(err_invalid_number_format, q);
        while (q < end && is_digit(*q)) {
            if (!put(*q)) return fail(err_number_too_many_characters, q);
        }
    }
    if (r.digits == 0) return fail(err_number_only_decimal_point, p);
    r.length = static_cast<std::size_t>(q - p);
    out[r.length] = 0;
    return r;
}

bool is_decimal_number(const char* text, int& digits) {
    const char* q = text;
    digits = 0;
    while (*q == ' ' || *q == '\t') ++q;
    if (*q == '+' || *q == '-') ++q;
    bool point = false;
    for (; is_digit(*q) || *q == '.'; ++q) {
        if (*q == '.') {
            if (point) return false;
            point = true;
        } else {
            ++digits;
        }
    }
    if (digits == 0) return false;
    if (*q == 'e' || *q == 'E') {
        ++q;
        if (*q == '+' || *q == '-') ++q;
        if (!is_digit(*q)) return false;
        while (is_digit(*q)) ++q;
    }
    return *q == 0;
}

}  // namespace tl
