// numeric_operands.h — the common numeric type of operands and parameters.
//
// A text operand (numeric text, or a string holding a number) becomes a
// double when it has fewer than 17 digits before any exponent and converts as
// a double, and a long number otherwise. If either operand ends up long, the
// other follows; in the long-default mode both are long.
#pragma once

#include "lang/item.h"
#include "longmath/long_number.h"

namespace tl {

/// Mantissa digits from which a number text is always taken as a long number.
inline constexpr int long_text_digits = 17;

/// Converts a kind 3 or 16 Item in place to kind 2, or to kind 14 in a new
/// temporary long number. Kinds 2 and 14 stay. Reports 99 when the text is
/// no number and 144 for any other kind (column at the Item). Returns the
/// new kind or a negated error.
[[nodiscard]] int make_numeric(Item& item);

/// Converts a kind 2, 3 or 16 Item in place to kind 14 in a new temporary
/// (143 on failure, 144 for other kinds). Returns 14 or a negated error.
[[nodiscard]] int make_long(Item& item);

/// Both operands as doubles (returns 2) or as long numbers (returns 14); or a
/// negated error (99, 143, 144, 172), already reported.
[[nodiscard]] int common_numeric_type(Item& a, Item& b);

/// Truth of a value: a string is true when not empty, a number when not
/// zero; numeric text is converted first. Other kinds report 39.
/// Returns 0 or a negated error.
[[nodiscard]] int truth_value(Item& item, bool& truth);

[[nodiscard]] bool long_is_zero(const LongNumber& n);

}  // namespace tl
