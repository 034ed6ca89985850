// long_convert.h — normalisation and conversions between long numbers, text and doubles.
//
// Every routine returns 0 (or a length) on success and a negated error number
// on failure; `report` chooses whether the error is also reported.
#pragma once

#include <cstddef>
#include <string_view>

#include "longmath/long_number.h"

namespace tl {

struct Item;

enum RoundFlag : int {
    normalise_cut = -1,   ///< cut to the precision without rounding
    normalise_strip = 0,  ///< only strip leading and trailing zeros
    normalise_round = 1,  ///< round (when rounding is on, floating-point mode) and cut
};

/// Brings `n` (nrm 0) into canonical form; does nothing when nrm is 1.
void long_normalise(LongNumber& n, int round_flag);

/// Makes `dest` canonical zero.
void long_set_zero(LongNumber& dest);

/// Copies value and digits (not the owner words).
void long_copy(const LongNumber& src, LongNumber& dest);

/// Makes sure `n` can hold `digits` digits (blocks are added, never removed).
void long_reserve(LongNumber& n, int digits);

/// Parses a number string into `dest` under the current mode (errors 148-151).
[[nodiscard]] int long_from_text(std::string_view text, LongNumber& dest, bool report);

/// Converts a finite double through 24 correctly rounded digits (error 99).
[[nodiscard]] int long_from_double(double x, LongNumber& dest, bool report);

/// Double to long into the conversion scratch number; returns the long
/// item kind (14) or a negated error.
[[nodiscard]] int long_double_to_scratch(double x, bool report);

/// Converts to the nearest double (error 164 when too large).
[[nodiscard]] int long_to_double(const LongNumber& n, double& out, bool report);

/// The buffer size (with the NUL) that long_to_string needs for `n` under
/// the current mode: the length of its text, not of its digits and exponent.
[[nodiscard]] std::size_t long_text_size(const LongNumber& n);

/// Plain text of `n` into `buffer` of `size` bytes; returns the length or
/// -147 (reported when `report`).
[[nodiscard]] int long_to_string(const LongNumber& n, char* buffer, std::size_t size, bool report);

/// A buffer of this size holds every formatted text long_format writes: the
/// field is below 256 characters, and the exponent form can pass it by the
/// length of its suffix.
inline constexpr std::size_t long_format_size = 288;

/// Formatted text for a spec "w", "w.d", optionally followed by "C"/"c";
/// returns the length or a negated error (73).
[[nodiscard]] int long_format(const LongNumber& n, std::string_view spec, char* buffer, std::size_t size,
                              bool report);

/// Makes a long number from an evaluated Item: kind 14 is copied, kind 2
/// converted from the double, kinds 3 and 16 parsed from their text.
[[nodiscard]] int long_convert_in(const Item& item, LongNumber& dest, bool report);

/// The debug dump (only while the long-number debug display is on).
void long_debug_dump(const char* label, const LongNumber& n, int mode);

/// The short form used by the variable display; returns its length.
int long_short_form(const LongNumber& n, char* buffer, std::size_t size);

/// Publishes the internals of `n` into the numeric peek variables
/// (peekbcdlength, peekbcdsign, ...) while peek values are switched on.
void long_peek_values(const LongNumber& n);

}  // namespace tl
