// evaluator.h — evaluate_expression: one expression of a statement to one value.
#pragma once

#include "lang/item.h"

namespace tl {

/// Items an expression may hold (per level of parentheses). The table has one
/// slot more; the 50th Item is refused with error 13.
inline constexpr int max_expression_items = 49;

/// Evaluates the expression at the scan position. `mode` goes to get_item:
/// 0 at statement level (a statement keyword such as THEN or TO ends the
/// expression and is left unscanned), scan_in_parentheses for a parenthesised
/// sub-expression, scan_in_parentheses | scan_separators for parameter and
/// subscript lists.
///
/// Returns the kind of the result, 0 for an empty expression, or a negated
/// error number (already reported). Results:
///   2  (double)        lang.scan.result
///   3  (string)        lang.scan.buffer
///   16 (numeric text)  lang.scan.buffer
///   14 (long number)   long_state.work, rounded to the precision in floating-point mode
///   13, 20 (a whole string or double array) the array in lang.scan.sole_reference.array
/// When the expression was one string variable (or element) or one array
/// name, lang.scan.sole_reference names it so that the caller can write back;
/// otherwise it is empty. Temporaries taken stay until the caller releases them.
[[nodiscard]] int evaluate_expression(int mode);

}  // namespace tl
