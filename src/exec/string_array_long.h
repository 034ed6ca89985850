// string_array_long.h — a long number kept as text across the elements of a
// one-dimensional string array (255 characters an element, as the LONG
// statement stores a result that is too long for one string).
#pragma once

#include <string_view>

#include "exec/memory_areas.h"
#include "longmath/long_number.h"

namespace tl {

/// The text of `a` from its first element on, up to the first empty element,
/// in long_text_buffers.operand (NUL-terminated). Reports 185 "LONGMATH -
/// Input string too long." (at `column`) for a text longer than a long number can be.
[[nodiscard]] int string_array_text(const ArrayEntry& a, int column, std::string_view& out);

/// `text` as a long number in the current mode, into `dest`. Reports 184
/// "Invalid Long Number length." for an integer-mode text with too many digits
/// and 182 "Invalid Number String." for text that is not a number (at `column`).
[[nodiscard]] int long_from_operand_text(std::string_view text, int column, LongNumber& dest);

/// The long number held by the string array `a`, into `dest`.
[[nodiscard]] int long_from_string_array(const ArrayEntry& a, int column, LongNumber& dest);

}  // namespace tl
