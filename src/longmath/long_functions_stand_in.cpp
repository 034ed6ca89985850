// long_functions_stand_in.cpp — TEMPORARY stand-in for the long elementary
// functions, computed in doubles (about 16 digits) so that the builtin
// functions link and can be tried. It is deleted when the real long_functions
// implementation is merged; nothing may depend on its digits.
#include <cmath>
#include <numbers>

#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "longmath/long_convert.h"
#include "longmath/long_functions.h"

namespace tl {
namespace {

int through_double(const LongNumber& x, LongNumber& result, double (*f)(double)) {
    double d = 0.0;
    const int r = long_to_double(x, d, true);
    if (r < 0) return r;
    const double y = f(d);
    if (!std::isfinite(y)) return report_error(err_invalid_function_call);
    return long_from_double(y, result, true);
}

double radians(double x, bool degrees) { return degrees ? x * std::numbers::pi / 180.0 : x; }
double angle(double x, bool degrees) { return degrees ? x * 180.0 / std::numbers::pi : x; }

enum Trig { trig_sin, trig_cos, trig_tan, trig_cot, trig_atn, trig_acot };

int trig(const LongNumber& x, bool degrees, LongNumber& result, Trig which) {
    double d = 0.0;
    const int r = long_to_double(x, d, true);
    if (r < 0) return r;
    double y = 0.0;
    switch (which) {
        case trig_sin: y = std::sin(radians(d, degrees)); break;
        case trig_cos: y = std::cos(radians(d, degrees)); break;
        case trig_tan: y = std::tan(radians(d, degrees)); break;
        case trig_cot: y = 1.0 / std::tan(radians(d, degrees)); break;
        case trig_atn: y = angle(std::atan(d), degrees); break;
        case trig_acot: y = angle(std::numbers::pi / 2.0 - std::atan(d), degrees); break;
    }
    if (!std::isfinite(y)) return report_error(err_invalid_function_call);
    return long_from_double(y, result, true);
}
}  // namespace

int long_sqrt(const LongNumber& x, LongNumber& result) {
    if (x.sgn == -1 && x.blocks[0] != 0) return report_error(err_cannot_take_square_root_negative);
    return through_double(x, result, [](double d) { return std::sqrt(d); });
}
int long_exp(const LongNumber& x, LongNumber& result) { return through_double(x, result, [](double d) { return std::exp(d); }); }
int long_exp10(const LongNumber& x, LongNumber& result) {
    return through_double(x, result, [](double d) { return std::pow(10.0, d); });
}
int long_log(const LongNumber& x, LongNumber& result) { return through_double(x, result, [](double d) { return std::log(d); }); }
int long_log10(const LongNumber& x, LongNumber& result) {
    return through_double(x, result, [](double d) { return std::log10(d); });
}
int long_sin(const LongNumber& x, bool degrees, LongNumber& result) { return trig(x, degrees, result, trig_sin); }
int long_cos(const LongNumber& x, bool degrees, LongNumber& result) { return trig(x, degrees, result, trig_cos); }
int long_tan(const LongNumber& x, bool degrees, LongNumber& result) { return trig(x, degrees, result, trig_tan); }
int long_cot(const LongNumber& x, bool degrees, LongNumber& result) { return trig(x, degrees, result, trig_cot); }
int long_atn(const LongNumber& x, bool degrees, LongNumber& result) { return trig(x, degrees, result, trig_atn); }
int long_acot(const LongNumber& x, bool degrees, LongNumber& result) { return trig(x, degrees, result, trig_acot); }
int long_pi(LongNumber& result) { return long_from_double(std::numbers::pi, result, true); }
int long_e(LongNumber& result) { return long_from_double(std::numbers::e, result, true); }
int long_factorial(const LongNumber& n, LongNumber& result) {
    double d = 0.0;
    const int r = long_to_double(n, d, true);
    if (r < 0) return r;
    d = std::trunc(d);
    if (d < 1.0) return report_error(err_factorial_number_out_range);
    if (d > 20.0) return report_error(err_invalid_function_call);  // exact digits need the real one
    double product = 1.0;
    for (double i = 2.0; i <= d; i += 1.0) product *= i;
    return long_from_double(product, result, true);
}
int long_power(const LongNumber& x, const LongNumber& y, LongNumber& result) {
    double a = 0.0;
    double b = 0.0;
    int r = long_to_double(x, a, true);
    if (r >= 0) r = long_to_double(y, b, true);
    if (r < 0) return r;
    const double p = std::pow(a, b);
    if (!std::isfinite(p)) return report_error(err_power_root_error_result);
    return long_from_double(p, result, true);
}
int long_root(const LongNumber& x, const LongNumber& n, LongNumber& result) {
    double a = 0.0;
    double b = 0.0;
    int r = long_to_double(x, a, true);
    if (r >= 0) r = long_to_double(n, b, true);
    if (r < 0) return r;
    const double p = b == 0.0 ? NAN : std::pow(a, 1.0 / b);
    if (!std::isfinite(p)) return report_error(err_power_root_error_result);
    return long_from_double(p, result, true);
}
int long_half(const LongNumber& x, LongNumber& result) { return through_double(x, result, [](double d) { return d / 2.0; }); }
void clear_long_constants() {}

}  // namespace tl
