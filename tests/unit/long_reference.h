// long_reference.h — exact reference values (GMP rationals) for the long-number tests.
#pragma once

#include <cstdint>
#include <ostream>
#include <random>
#include <string>

#include "exact_values.h"
#include "longmath/long_convert.h"
#include "longmath/long_number.h"

namespace tl::exact {

/// Shown by GoogleTest in failure messages.
inline void PrintTo(const Rational& r, std::ostream* os) { *os << r.str(); }

}  // namespace tl::exact

namespace tl::test {

using exact::decimal_magnitude;
using exact::pow10q;
using exact::Rational;
using exact::round_sig;
using exact::trunc_int;
using exact::trunc_to;
using exact::value_of;

/// The exact value of a decimal text "[-]ddd[.ddd][e[+-]ddd]" (a test fails
/// for any other text).
Rational decimal_value(const std::string& text);

/// The plain text of a long number (a large buffer).
std::string text_of(const LongNumber& n);

/// A long number parsed from `text` under the current mode (asserts success).
LongNumber make_long(const std::string& text);

/// A random number text: 1..max_digits significant digits, random sign,
/// point position and exponent in [-max_exp, max_exp].
std::string random_number_text(std::mt19937_64& rng, int max_digits, int max_exp);

/// A random integer text with 1..max_digits digits and a random sign.
std::string random_integer_text(std::mt19937_64& rng, int max_digits);

}  // namespace tl::test
