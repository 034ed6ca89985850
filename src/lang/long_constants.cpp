// long_constants.cpp — pi and e as long numbers for "pi" and "euler".
#include "lang/long_constants.h"

#include "longmath/long_convert.h"
#include "longmath/long_functions.h"
#include "longmath/long_state.h"

namespace tl {

int long_constant(LongConstant which, LongNumber& dest) {
    if (long_state.mode.integer_mode) {
        // Integer mode keeps only the integer part (as any number text would give it).
        return long_from_text(which == long_constant_pi ? "3.14159" : "2.71828", dest, true);
    }
    return which == long_constant_pi ? long_pi(dest) : long_e(dest);
}

}  // namespace tl
