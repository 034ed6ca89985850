// long_tan.cpp — tangent and cotangent as quotients of the sine and cosine.
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "longmath/long_arith.h"
#include "longmath/long_blocks.h"
#include "longmath/long_convert.h"
#include "longmath/long_functions.h"
#include "longmath/long_state.h"
#include "longmath/long_support.h"
#include "longmath/long_trig.h"

namespace tl {
namespace {

/// tan x (or cot x when `cotangent`): sine and cosine with 16 guard digits,
/// then one division. A zero divisor (an exact odd multiple of the quarter
/// turn in degrees) is "Invalid argument.".
int quotient(const LongNumber& x, bool degrees, bool cotangent, LongNumber& result) {
    int rc = long_require_floating();
    if (rc < 0) return rc;
    const LongPrecisionGuard guard;
    const int target = long_state.mode.precision;
    LongWorkFrame frame;
    LongNumber& s = frame.take(target + 32);
    LongNumber& c = frame.take(target + 32);
    long_set_precision(target + 8);
    rc = long_sin_cos(x, degrees, 8, &s, &c);
    if (rc < 0) return rc;
    LongNumber& dividend = cotangent ? c : s;
    LongNumber& divisor = cotangent ? s : c;
    if (long_is_zero(divisor)) return report_error(err_invalid_argument);
    rc = long_divide(dividend, divisor, result);
    if (rc < 0) return rc;
    long_round_at(result, target);
    return 0;
}

}  // namespace

int long_tan(const LongNumber& x, bool degrees, LongNumber& result) { return quotient(x, degrees, false, result); }

int long_cot(const LongNumber& x, bool degrees, LongNumber& result) { return quotient(x, degrees, true, result); }

}  // namespace tl
