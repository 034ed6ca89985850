// number_text.h — the rule that reads a number constant as numeric text.
#pragma once

#include <cstddef>

namespace tl {

/// Longest number text the rule accepts (longer is error 98).
inline constexpr std::size_t max_number_text = 254;

struct NumberText {
    std::size_t length = 0;   ///< characters taken from the input (= length of `out`)
    int digits = 0;           ///< digits before any exponent
    /// On failure: the error number (148, 205, 98, 179) and the offset of the
    /// offending character in the input.
    int error = 0;
    std::size_t error_offset = 0;
};

/// Reads a number from [p, end) starting at a digit or ".": digits and "."
/// (a second "." is error 148), then — only after at least one digit — an
/// optional exponent "e"/"E", optional sign and one or more digits (error 205
/// when none follows). More than 254 characters is 98; no digit at all 179.
/// The text goes to `out` (at least max_number_text + 1 bytes) exactly as
/// written. Nothing is reported.
NumberText read_number_text(const char* p, const char* end, char* out);

/// True when `text` is a complete decimal number: leading blanks, optional sign, digits with
/// at most one ".", at least one digit, optional exponent with digits. No
/// trailing blanks, no hexadecimal, no "inf"/"nan". `digits` gets the mantissa digit count.
[[nodiscard]] bool is_decimal_number(const char* text, int& digits);

}  // namespace tl
