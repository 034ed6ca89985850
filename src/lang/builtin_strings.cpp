// builtin_strings.cpp — the string builtin functions written so far:
// chr$, left$, right$, mid$, len, asc and val.
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "exec/memory_areas.h"
#include "exec/string_space.h"
#include "lang/builtin_support.h"
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "lang/lang_state.h"
#include "lang/number_text.h"
#include "lang/numeric_operands.h"
#include "lang/scanner.h"

namespace tl {
namespace {

/// A count or position parameter, truncated toward zero.
int whole_parameter(Item& p, double& out) {
    const int r = double_parameter(p, out);
    if (r < 0) return r;
    out = std::trunc(out);
    return 0;
}

}  // namespace

int fn_chr_handler(Item* p, int) {
    double code = 0.0;
    const int r = whole_parameter(p[0], code);
    if (r < 0) return r;
    if (code < 0.0 || code > 255.0) return fail_at(err_parameter_out_range, p[0]);
    const char c = static_cast<char>(static_cast<unsigned char>(code));
    return text_result(&c, 1);
}

int fn_left_handler(Item* p, int) {
    const char* s = nullptr;
    double n = 0.0;
    int r = string_parameter(p[0], s);
    if (r >= 0) r = whole_parameter(p[1], n);
    if (r < 0) return r;
    if (n < 0.0) return fail_at(err_lefts_rights_length_cannot_negative, p[1]);
    const std::size_t length = std::strlen(s);
    return text_result(s, n < static_cast<double>(length) ? static_cast<std::size_t>(n) : length);
}

int fn_right_handler(Item* p, int) {
    const char* s = nullptr;
    double n = 0.0;
    int r = string_parameter(p[0], s);
    if (r >= 0) r = whole_parameter(p[1], n);
    if (r < 0) return r;
    if (n < 0.0) return fail_at(err_lefts_rights_length_cannot_negative, p[1]);
    const std::size_t length = std::strlen(s);
    const std::size_t take = n < static_cast<double>(length) ? static_cast<std::size_t>(n) : length;
    return text_result(s + (length - take), take);
}

int fn_mid_handler(Item* p, int count) {
    const char* s = nullptr;
    double start = 0.0;
    double n = static_cast<double>(max_string_length);
    int r = string_parameter(p[0], s);
    if (r >= 0) r = whole_parameter(p[1], start);
    if (r >= 0 && count == 3) r = whole_parameter(p[2], n);
    if (r < 0) return r;
    if (start < 1.0) return fail_at(err_mids_invalid_start_position, p[1]);
    if (n < 0.0) return fail_at(err_mids_invalid_length, p[2]);
    const std::size_t length = std::strlen(s);
    if (start > static_cast<double>(length)) return text_result("", 0);
    const auto from = static_cast<std::size_t>(start) - 1;
    const std::size_t rest = length - from;
    return text_result(s + from, n < static_cast<double>(rest) ? static_cast<std::size_t>(n) : rest);
}

int fn_len_handler(Item* p, int) {
    if (p[0].kind == kind_string_array && p[0].array != nullptr) {
        // A text spread over the elements of a string array (255 characters an element).
        const ArrayEntry& a = *p[0].array;
        const std::size_t n = a.element_count();
        double total = 0.0;
        for (std::size_t i = 0; i < n; ++i) total += static_cast<double>(std::strlen(string_at(a.words()[i])));
        return double_result(total);
    }
    const char* s = nullptr;
    const int r = string_parameter(p[0], s);
    return r < 0 ? r : double_result(static_cast<double>(std::strlen(s)));
}

int fn_asc_handler(Item* p, int) {
    const char* s = nullptr;
    const int r = string_parameter(p[0], s);
    if (r < 0) return r;
    if (s[0] == 0) return fail_at(err_parameter_out_range, p[0]);
    return double_result(static_cast<double>(static_cast<unsigned char>(s[0])));
}

int fn_val_handler(Item* p, int) {
    const char* s = nullptr;
    const int r = string_parameter(p[0], s);
    if (r < 0) return r;
    const char* q = s;
    while (*q == ' ' || *q == '\t') ++q;
    const bool negative = *q == '-';
    if (*q == '-' || *q == '+') ++q;
    if (!((*q >= '0' && *q <= '9') || *q == '.')) return double_result(0.0);
    char text[max_number_text + 2];
    text[0] = '-';
    const NumberText n = read_number_text(q, q + std::strlen(q), text + 1);
    if (n.error != 0) return fail_at(n.error, p[0]);
    const char* number = negative ? text : text + 1;
    const double x = std::strtod(number, nullptr);
    if (n.digits < long_text_digits && std::isfinite(x)) return double_result(x);
    (void)text_result(number, std::strlen(number));  // too many digits for a double: the long-number form
    return kind_numeric_text;
}

}  // namespace tl
