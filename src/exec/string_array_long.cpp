// string_array_long.cpp — reading a long number kept across a string array's elements.
#include "exec/string_array_long.h"

#include <cstdlib>
#include <cstring>
#include <vector>

#include "exec/commands.h"
#include "exec/long_text_buffers.h"
#include "exec/longmath_statement.h"
#include "exec/string_space.h"
#include "lang/error_table.h"
#include "lang/lang_state.h"
#include "longmath/long_convert.h"
#include "longmath/long_state.h"

namespace tl {
namespace {

/// Characters an operand text may have: the digits, a sign, a point and an exponent.
constexpr std::size_t max_operand_text = static_cast<std::size_t>(max_long_digits) + 12;

/// Digits a number text would keep in integer mode: those before the point
/// plus a written exponent (an estimate that errs on the high side).
bool too_many_integer_digits(std::string_view text) {
    if (!long_state.mode.integer_mode) return false;
    std::size_t digits = 0;
    long exponent = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '.') break;
        if (c == 'e' || c == 'E') {
            exponent = std::strtol(text.data() + i + 1, nullptr, 10);
            break;
        }
        if (c >= '0' && c <= '9') ++digits;
    }
    // strtol gives LONG_MAX for an exponent too long to read: compare without adding.
    return exponent > static_cast<long>(max_long_digits) - static_cast<long>(digits);
}

}  // namespace

int string_array_text(const ArrayEntry& a, int column, std::string_view& out) {
    std::vector<char>& text = long_text_buffers.operand;
    std::size_t length = 0;
    const std::size_t count = a.element_count();
    for (std::size_t i = 0; i < count; ++i) {
        const char* piece = string_at(a.words()[i]);
        const std::size_t n = std::strlen(piece);
        if (n == 0) break;
        if (length + n > max_operand_text) return error_at_column(err_long_input_string_too_long, column);
        if (text.size() < length + n + 1) text.resize(length + n + 1);
        std::memcpy(text.data() + length, piece, n);
        length += n;
    }
    if (text.empty()) text.resize(1);
    text[length] = 0;
    out = std::string_view(text.data(), length);
    return 0;
}

int long_from_operand_text(std::string_view text, int column, LongNumber& dest) {
    lang.reporter.error_column = column;
    if (too_many_integer_digits(text)) return error_at_column(err_invalid_long_number_length, column);
    if (long_from_text(text, dest, false) < 0) return error_at_column(err_invalid_number_string, column);
    return 0;
}

int long_from_string_array(const ArrayEntry& a, int column, LongNumber& dest) {
    std::string_view text;
    if (const int rc = string_array_text(a, column, text); rc < 0) return rc;
    return long_from_operand_text(text, column, dest);
}

}  // namespace tl
