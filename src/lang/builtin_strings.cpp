// builtin_strings.cpp — the string builtin functions: chr$, left$, right$,
// mid$, len, asc, val, str$, string$, space$, instr, tolower$ and toupper$.
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "exec/memory_areas.h"
#include "exec/number_format.h"
#include "exec/string_space.h"
#include "lang/builtin_support.h"
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "lang/lang_state.h"
#include "lang/number_text.h"
#include "lang/numeric_operands.h"
#include "lang/scanner.h"
#include "longmath/long_convert.h"
#include "longmath/long_space.h"

namespace tl {
namespace {

/// A count or position parameter, truncated toward zero. A NaN or an
/// infinity lies outside every range: error `out_of_range` at the parameter.
int whole_parameter(Item& p, double& out, int out_of_range) {
    const int r = double_parameter(p, out);
    if (r < 0) return r;
    if (!std::isfinite(out)) return fail_at(out_of_range, p);
    out = std::trunc(out);
    return 0;
}

/// A count or character code that must lie in 0..255 (68 otherwise).
int byte_parameter(Item& p, double& out) {
    const int r = whole_parameter(p, out, err_parameter_out_range);
    if (r < 0) return r;
    if (!(out >= 0.0 && out <= 255.0)) return fail_at(err_parameter_out_range, p);
    return 0;
}

int fill_result(char c, double count) {
    char text[max_string_length];
    const auto n = static_cast<std::size_t>(count);
    std::memset(text, c, n);
    return text_result(text, n);
}

bool is_max_format(const char* format) {
    const char* max = "max";
    for (; *format != 0 && *max != 0; ++format, ++max) {
        char c = *format;
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
        if (c != *max) return false;
    }
    return *format == 0 && *max == 0;
}

/// A long number under an explicit format: "w", "w.d" (or the same written
/// as a C conversion, "%w.df") go to the long formatter.
int long_text_result(const LongNumber& n, const char* format, const Item& at) {
    char text[1024];
    lang.reporter.error_column = at.column;
    int length = 0;
    if (format == nullptr) {
        length = long_to_string(n, text, sizeof text, false);
        if (length < 0) return fail_at(err_long_output_too_long_string, at);
    } else {
        char spec[32];
        const char* f = format[0] == '%' ? format + 1 : format;
        copy_text(spec, sizeof spec, f);
        const std::size_t sl = std::strlen(spec);
        if (sl > 0 && (spec[sl - 1] == 'f' || spec[sl - 1] == 'F' || spec[sl - 1] == 'g' || spec[sl - 1] == 'G'))
            spec[sl - 1] = 0;
        length = long_format(n, spec, text, sizeof text, true);
        if (length < 0) return length;
    }
    if (static_cast<std::size_t>(length) > max_string_length) return fail_at(err_long_output_too_long_string, at);
    return text_result(text, static_cast<std::size_t>(length));
}

}  // namespace

int fn_chr_handler(Item* p, int) {
    double code = 0.0;
    const int r = whole_parameter(p[0], code, err_parameter_out_range);
    if (r < 0) return r;
    if (!(code >= 0.0 && code <= 255.0)) return fail_at(err_parameter_out_range, p[0]);
    const char c = static_cast<char>(static_cast<unsigned char>(code));
    return text_result(&c, 1);
}

/// left$ and right$: the first or last n characters (n >= 0, at most the length).
int left_or_right(Item* p, bool from_right) {
    const char* s = nullptr;
    double n = 0.0;
    int r = string_parameter(p[0], s);
    if (r >= 0) r = whole_parameter(p[1], n, err_lefts_rights_length_cannot_negative);
    if (r < 0) return r;
    if (!(n >= 0.0)) return fail_at(err_lefts_rights_length_cannot_negative, p[1]);
    const std::size_t length = std::strlen(s);
    const std::size_t take = n < static_cast<double>(length) ? static_cast<std::size_t>(n) : length;
    return text_result(from_right ? s + (length - take) : s, take);
}

int fn_left_handler(Item* p, int) { return left_or_right(p, false); }

int fn_right_handler(Item* p, int) { return left_or_right(p, true); }

int fn_mid_handler(Item* p, int count) {
    const char* s = nullptr;
    double start = 0.0;
    double n = static_cast<double>(max_string_length);
    int r = string_parameter(p[0], s);
    if (r >= 0) r = whole_parameter(p[1], start, err_mids_invalid_start_position);
    if (r >= 0 && count == 3) r = whole_parameter(p[2], n, err_mids_invalid_length);
    if (r < 0) return r;
    if (!(start >= 1.0)) return fail_at(err_mids_invalid_start_position, p[1]);
    if (!(n >= 0.0)) return fail_at(err_mids_invalid_length, p[2]);
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

int fn_str_handler(Item* p, int count) {
    const int k = numeric_parameter(p[0]);
    if (k < 0) return k;
    const char* format = nullptr;
    if (count == 2) {
        const int r = string_parameter(p[1], format);
        if (r < 0) return r;
        if (is_max_format(format)) format = "%23.18g";
    }
    if (k == kind_long) return long_text_result(long_at(p[0].word), format, p[0]);
    if (format == nullptr) format = lang.predefined[pre_defaultprintformat].text.data();
    char text[number_text_size];
    const int n = format_number(format, p[0].number, text, sizeof text);
    if (n < 0) return fail_at(err_invalid_format_string_print_using, count == 2 ? p[1] : p[0]);
    return text_result(text, static_cast<std::size_t>(n));
}

int fn_string_handler(Item* p, int) {
    double count = 0.0;
    int r = byte_parameter(p[0], count);
    if (r < 0) return r;
    if (p[1].kind == kind_string) {
        const char* s = item_text(p[1]);
        if (s[0] == 0) return fail_at(err_parameter_out_range, p[1]);
        return fill_result(s[0], count);
    }
    double code = 0.0;
    r = byte_parameter(p[1], code);
    if (r < 0) return r;
    return fill_result(static_cast<char>(static_cast<unsigned char>(code)), count);
}

int fn_space_handler(Item* p, int) {
    double count = 0.0;
    const int r = byte_parameter(p[0], count);
    return r < 0 ? r : fill_result(' ', count);
}

int fn_instr_handler(Item* p, int count) {
    double start = 1.0;
    int r = 0;
    if (count == 3) r = whole_parameter(p[0], start, err_parameter_out_range);
    const char* s = nullptr;
    const char* t = nullptr;
    if (r >= 0) r = string_parameter(p[count - 2], s);
    if (r >= 0) r = string_parameter(p[count - 1], t);
    if (r < 0) return r;
    const std::size_t ls = std::strlen(s);
    const std::size_t lt = std::strlen(t);
    if (start < 1.0 || start > static_cast<double>(ls) || ls == 0) return double_result(0.0);
    const auto from = static_cast<std::size_t>(start) - 1;
    if (lt > ls - from) return double_result(0.0);
    for (std::size_t i = from; i + lt <= ls; ++i) {
        if (std::memcmp(s + i, t, lt) == 0) return double_result(static_cast<double>(i + 1));
    }
    return double_result(0.0);
}

namespace {

int change_case(Item& p, char from, char to) {
    const char* s = nullptr;
    const int r = string_parameter(p, s);
    if (r < 0) return r;
    const std::size_t n = std::strlen(s);
    char text[max_string_length + 1];
    for (std::size_t i = 0; i < n && i < max_string_length; ++i) {
        const char c = s[i];
        text[i] = c >= from && c <= static_cast<char>(from + 25) ? static_cast<char>(c - from + to) : c;
    }
    return text_result(text, n < max_string_length ? n : max_string_length);
}

}  // namespace

int fn_tolower_handler(Item* p, int) { return change_case(p[0], 'A', 'a'); }
int fn_toupper_handler(Item* p, int) { return change_case(p[0], 'a', 'A'); }

}  // namespace tl
