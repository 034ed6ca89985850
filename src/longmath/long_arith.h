// long_arith.h — add, subtract, multiply, divide and remainder of long numbers.
//
// All return 0 or a negated error number (already reported). Results are
// written into a caller-supplied record, which must not be an operand unless
// stated. Add and subtract leave the result unnormalised.
#pragma once

#include "longmath/long_number.h"

namespace tl {

[[nodiscard]] int long_add(const LongNumber& a, const LongNumber& b, LongNumber& result);
[[nodiscard]] int long_subtract(const LongNumber& a, const LongNumber& b, LongNumber& result);
/// Rounded to the precision except in integer mode (the result is normalised).
[[nodiscard]] int long_multiply(const LongNumber& a, const LongNumber& b, LongNumber& result);
/// The product as formed, before normalisation (the caller normalises).
[[nodiscard]] int long_multiply_unnormalised(const LongNumber& a, const LongNumber& b, LongNumber& result);
/// Quotient (normalised); the operands may be changed (normalised, or cut to
/// their integer part in integer mode). The quotient may be an operand. In integer mode the
/// remainder is left in the global remainder number. Error 166 for a zero divisor.
[[nodiscard]] int long_divide(LongNumber& dividend, LongNumber& divisor, LongNumber& quotient);
/// Remainder of a / b: in integer mode the division remainder, in floating-point
/// mode a - int(a / b) * b.
[[nodiscard]] int long_mod(const LongNumber& a, const LongNumber& b, LongNumber& result);

/// -1, 0 or 1 as a < b, a == b, a > b (both normalised).
[[nodiscard]] int long_compare(const LongNumber& a, const LongNumber& b);

/// The interruption check that long loops call every fixed amount of work:
/// returns 0 to go on or a negative code to abort. Installed by the run loop;
/// null means "never interrupt".
using LongInterruptCheck = int (*)();
void set_long_interrupt_check(LongInterruptCheck check);

}  // namespace tl
