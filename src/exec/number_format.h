// number_format.h — the text of a double under a PRINT number format.
//
// A format is one of three kinds, told apart by its start:
//   "eng<unit>"  engineering notation with a metric prefix and a unit text;
//   "%..."       a C conversion for one double (checked before use);
//   anything else a picture such as "##,###.##" or "+###.cc".
#pragma once

#include <cstddef>

namespace tl {

/// Size of the buffer that every caller of format_number uses; a language
/// string holds at most 255 characters.
inline constexpr std::size_t number_text_size = 256;

/// Largest width or precision accepted in a "%" format.
inline constexpr int max_format_field = 255;

/// True when `format` (which starts with "%") may be handed to snprintf with
/// one double: exactly one conversion e, E, f, F, g, G, a or A, optionally
/// with the flags "-+ #0", a width and a precision of at most 255 and the
/// length modifier "l"; "%%" may appear anywhere. A "*" width, a position
/// ("%1$f"), any other length modifier or conversion, or a second conversion
/// makes it invalid.
[[nodiscard]] bool is_valid_c_number_format(const char* format);

/// Formats `x` under `format` into `out` (`size` >= 1 bytes, NUL-terminated,
/// cut to fit). Returns the length written, or -73 (invalid format) without
/// reporting when a "%" format fails is_valid_c_number_format; `out` is then
/// the empty text. Never allocates.
[[nodiscard]] int format_number(const char* format, double x, char* out, std::size_t size);

}  // namespace tl
