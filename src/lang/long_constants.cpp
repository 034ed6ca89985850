// long_constants.cpp — pi and e to 110 digits as number text.
#include "lang/long_constants.h"

#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "longmath/long_convert.h"
#include "longmath/long_functions.h"
#include "longmath/long_state.h"

namespace tl {
namespace {

constexpr const char* pi_text =
    "3.1415926535897932384626433832795028841971693993751058209749445923078164062862089986280348253421170679821480865132";
constexpr const char* e_text =
    "2.7182818284590452353602874713526624977572470936999595749669676277240766303535475945713821785251664274274663919320";

}  // namespace

int long_constant(LongConstant which, LongNumber& dest) {
    // Longer than the text: computed (and cached) by the long elementary functions.
    if (long_state.mode.precision > long_constant_text_digits && !long_state.mode.integer_mode)
        return which == long_constant_pi ? long_pi(dest) : long_e(dest);
    return long_from_text(which == long_constant_pi ? pi_text : e_text, dest, true);
}

}  // namespace tl
