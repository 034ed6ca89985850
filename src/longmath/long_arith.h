// long_arith.h — add, subtract, multiply, divide and remainder of long numbers.
//
// All return 0 or a negated error number (already reported). Results are
// written into a caller-supplied record, which must not be an operand unless
// stated. Add and subtract leave the result unnormalised.
#pragma once

#include <cstdint>

#include "longmath/long_number.h"

namespace tl {

/// The decimal exponents a long number may have: |exp| <= this (values from
/// 10^-1000000001 up to below 10^1000000000). The limit leaves room in 32
/// bits for the sum or difference of two exponents and a few blocks.
inline constexpr std::int32_t long_exponent_limit = 1000000000;

/// 0 when the exponent of `n` (normalised) lies within the limit, else
/// error 151 "Exponent out of range." (reported when `report`), negated.
[[nodiscard]] int long_check_exponent(const LongNumber& n, bool report);

/// The test before a product or quotient is formed from `exp`, the sum or
/// difference of the operands' exponents (wider than 32 bits): normalising
/// moves it by at most one, so only beyond the limit + 1 is the result surely
/// out of range (the exact test follows on the normalised result).
[[nodiscard]] int long_check_exponent_sum(std::int64_t exp, bool report);

[[nodiscard]] int long_add(const LongNumber& a, const LongNumber& b, LongNumber& result);
[[nodiscard]] int long_subtract(const LongNumber& a, const LongNumber& b, LongNumber& result);
/// Rounded to the precision except in integer mode (the result is normalised).
/// Multiply and divide give error 151 for a result outside the exponent range.
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
