// long_text.h — the parsed form of a number string.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tl {

/// What parsing a number string finds (positions are offsets into the text).
struct ParsedLongText {
    std::size_t first = 0;              ///< first significant digit
    std::size_t last = 0;               ///< last significant digit
    std::size_t point = std::string_view::npos;  ///< the decimal point, if any
    int digits = 0;                     ///< significant digits kept
    std::int32_t exponent = 0;          ///< value = 0.d1d2... * 10^exponent
    std::int32_t sign = 0;              ///< -1 for a leading "-"
    int implied_zeros = 0;              ///< integer mode: zeros implied after the digits
    char dropped = '0';                 ///< first digit not kept, for rounding
};

/// Parses `text` under the current mode (errors 148 to 151; reported when
/// `report`, else returned negated silently). Returns 0 on success.
[[nodiscard]] int long_parse_text(std::string_view text, ParsedLongText& out, bool report);

}  // namespace tl
