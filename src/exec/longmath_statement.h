// longmath_statement.h — the LONGMATH statements INTEGER, FLOAT and LONG, the
// DEBUG statement, and the store of a long result's text into BASIC strings.
#pragma once

#include <string_view>

#include "lang/item.h"

namespace tl {

/// Largest floating-point length (FLOAT n) and the most digits a long
/// number may have in integer mode.
inline constexpr int max_long_digits = 1000000;
/// Smallest accepted floating-point length.
inline constexpr int min_floating_length = 11;

/// INTEGER: long numbers switch to integer mode.
[[nodiscard]] int do_integer();
/// FLOAT [n]: floating-point mode, with the length n (11..1000000, else 154)
/// or the last length given.
[[nodiscard]] int do_float();
/// LONG: declarations, the long-default mode, and the named long operations.
[[nodiscard]] int do_long();
/// DEBUG option [off] [, option ...].
[[nodiscard]] int do_debug();

/// True at the end of the statement or in front of an ELSE (which ends the
/// THEN part of a one-line IF).
[[nodiscard]] bool at_clause_end();

/// Makes `digits` the precision and the saved precision, and publishes it in
/// the predefined variable floatingptlength.
void set_floating_length(int digits);

/// Stores the text of a long result into the destination Item: a string
/// variable or string array element (kind 3, at most 255 characters, else
/// 157), a one-dimensional string array (kind 13, in 255-character pieces
/// from the first element, the rest emptied; 176, 158) or a function argument
/// (kind 19: the text becomes the string result in lang.scan.buffer).
/// `single_string` refuses texts of 256 characters or more (157) for every
/// destination. Any other Item is 155. Returns the string kind (3) or a
/// reported, negated error; elements written before a failure stay written.
[[nodiscard]] int store_long_text(const Item& dest, std::string_view text, bool single_string);

}  // namespace tl
