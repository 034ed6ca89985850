// long_functions_stand_in.cpp — STAND-IN for the long elementary functions.
//
// The real definitions of long_functions.h are being written on their own
// branch; until they are merged these answer "Invalid function call." (295)
// so that everything links. Delete this file when the real ones arrive.
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "longmath/long_functions.h"

namespace tl {
namespace {

int not_available() { return report_error(err_invalid_function_call); }

}  // namespace

int long_sqrt(const LongNumber&, LongNumber&) { return not_available(); }
int long_exp(const LongNumber&, LongNumber&) { return not_available(); }
int long_exp10(const LongNumber&, LongNumber&) { return not_available(); }
int long_log(const LongNumber&, LongNumber&) { return not_available(); }
int long_log10(const LongNumber&, LongNumber&) { return not_available(); }
int long_sin(const LongNumber&, bool, LongNumber&) { return not_available(); }
int long_cos(const LongNumber&, bool, LongNumber&) { return not_available(); }
int long_tan(const LongNumber&, bool, LongNumber&) { return not_available(); }
int long_cot(const LongNumber&, bool, LongNumber&) { return not_available(); }
int long_atn(const LongNumber&, bool, LongNumber&) { return not_available(); }
int long_acot(const LongNumber&, bool, LongNumber&) { return not_available(); }
int long_pi(LongNumber&) { return not_available(); }
int long_e(LongNumber&) { return not_available(); }
int long_factorial(const LongNumber&, LongNumber&) { return not_available(); }
int long_power(const LongNumber&, const LongNumber&, LongNumber&) { return not_available(); }
int long_root(const LongNumber&, const LongNumber&, LongNumber&) { return not_available(); }
int long_half(const LongNumber&, LongNumber&) { return not_available(); }
void clear_long_constants() {}

}  // namespace tl
