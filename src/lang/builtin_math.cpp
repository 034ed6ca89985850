// builtin_math.cpp — the transcendental builtin functions and the other
// numeric functions beyond the plain conversions: atn, cos, exp, log, sin,
// cot, tan, acot, log10, exp10, root, half, factorial, exponent, rnd, mod and
// setcolor.
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <numbers>

#include "exec/memory_areas.h"
#include "lang/builtin_support.h"
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "lang/lang_state.h"
#include "lang/numeric_operands.h"
#include "lang/random_numbers.h"
#include "lang/scanner.h"
#include "longmath/long_arith.h"
#include "longmath/long_convert.h"
#include "longmath/long_functions.h"
#include "longmath/long_space.h"
#include "longmath/long_state.h"
#include "longmath/long_timing.h"

namespace tl {
namespace {

constexpr double pi = std::numbers::pi;

using LongUnary = int (*)(const LongNumber&, LongNumber&);
using LongAngular = int (*)(const LongNumber&, bool, LongNumber&);

/// The long forms of the transcendental functions need floating-point mode.
int require_floating_mode(const Item& p) {
    if (long_state.mode.integer_mode) return fail_at(err_long_operation_only_valid_floating, p);
    lang.reporter.error_column = p.column;
    return 0;
}

int long_unary(const Item& p, LongUnary f) {
    int r = require_floating_mode(p);
    if (r >= 0) r = f(long_at(p.word), long_state.work);
    return r < 0 ? r : long_result();
}

int long_angular(const Item& p, LongAngular f) {
    int r = require_floating_mode(p);
    if (r >= 0) r = f(long_at(p.word), lang.degrees, long_state.work);
    return r < 0 ? r : long_result();
}

/// A double result that must be finite (log, log10, cot, tan, exp10).
int finite_result(double x, const Item& at) {
    if (!std::isfinite(x)) return fail_at(err_result_was_infinite, at);
    return double_result(x);
}

/// An angle in radians given in the current unit.
double to_unit(double radians) { return lang.degrees ? radians * 180.0 / pi : radians; }

/// The logarithm's domain: 210 for zero, 209 for a negative number.
int logarithm_domain(double x, const Item& at) {
    if (x == 0.0) return fail_at(err_cannot_take_logarithm_zero, at);
    if (x < 0.0) return fail_at(err_cannot_take_logarithm_negative_number, at);
    return 0;
}

int long_logarithm_domain(const LongNumber& x, const Item& at) {
    if (long_is_zero(x)) return fail_at(err_cannot_take_logarithm_zero, at);
    if (x.sgn == -1) return fail_at(err_cannot_take_logarithm_negative_number, at);
    return 0;
}

/// Runs a long operation and prints its "Calc. Time" line while timing is on.
template <typename Operation>
int timed(const char* label, Operation operation) {
    const auto start = long_timer_start();
    const int r = operation();
    if (r >= 0) long_timer_report(label, start);
    return r < 0 ? r : long_result();
}

}  // namespace

/// Sine and cosine of `x` in the current angle unit. In degrees the angle is
/// reduced to [0, 360) first, so that multiples of 90 give exact results.
void sine_cosine(double x, double& s, double& c) {
    if (!lang.degrees) {
        s = std::sin(x);
        c = std::cos(x);
        return;
    }
    double r = std::fmod(x, 360.0);
    if (r < 0.0) r += 360.0;
    if (r == 0.0) {
        s = 0.0, c = 1.0;
    } else if (r == 90.0) {
        s = 1.0, c = 0.0;
    } else if (r == 180.0) {
        s = 0.0, c = -1.0;
    } else if (r == 270.0) {
        s = -1.0, c = 0.0;
    } else {
        s = std::sin(r * pi / 180.0);
        c = std::cos(r * pi / 180.0);
    }
}

int fn_atn_handler(Item* p, int) {
    const int k = numeric_parameter(p[0]);
    if (k < 0) return k;
    if (k == kind_long) return long_angular(p[0], long_atn);
    return double_result(p[0].number == 0.0 ? 0.0 : to_unit(std::atan(p[0].number)));
}

int fn_acot_handler(Item* p, int) {
    const int k = numeric_parameter(p[0]);
    if (k < 0) return k;
    if (k == kind_long) return long_angular(p[0], long_acot);
    return double_result(to_unit(pi / 2.0 - std::atan(p[0].number)));
}

int fn_sin_handler(Item* p, int) {
    const int k = numeric_parameter(p[0]);
    if (k < 0) return k;
    if (k == kind_long) {
        long_copy(long_at(p[0].word), long_state.last_sine_argument);
        lang.last_sine_long = true;
        return long_angular(p[0], long_sin);
    }
    lang.last_sine_argument = p[0].number;
    lang.last_sine_long = false;
    double s = 0.0;
    double c = 0.0;
    sine_cosine(p[0].number, s, c);
    return double_result(s);
}

int fn_cos_handler(Item* p, int) {
    const int k = numeric_parameter(p[0]);
    if (k < 0) return k;
    if (k == kind_long) return long_angular(p[0], long_cos);
    double s = 0.0;
    double c = 0.0;
    sine_cosine(p[0].number, s, c);
    return double_result(c);
}

int fn_tan_handler(Item* p, int) {
    const int k = numeric_parameter(p[0]);
    if (k < 0) return k;
    if (k == kind_long) return long_angular(p[0], long_tan);
    if (!lang.degrees) return finite_result(std::tan(p[0].number), p[0]);
    double s = 0.0;
    double c = 0.0;
    sine_cosine(p[0].number, s, c);
    return finite_result(s / c, p[0]);
}

int fn_cot_handler(Item* p, int) {
    const int k = numeric_parameter(p[0]);
    if (k < 0) return k;
    if (k == kind_long) return long_angular(p[0], long_cot);
    if (!lang.degrees) return finite_result(1.0 / std::tan(p[0].number), p[0]);
    double s = 0.0;
    double c = 0.0;
    sine_cosine(p[0].number, s, c);
    return finite_result(c / s, p[0]);
}

int fn_exp_handler(Item* p, int) {
    const int k = numeric_parameter(p[0]);
    if (k < 0) return k;
    if (k == kind_long) return long_unary(p[0], long_exp);
    return double_result(std::exp(p[0].number));
}

int fn_exp10_handler(Item* p, int) {
    const int k = numeric_parameter(p[0]);
    if (k < 0) return k;
    if (k == kind_long) return long_unary(p[0], long_exp10);
    return finite_result(std::pow(10.0, p[0].number), p[0]);
}

int fn_log_handler(Item* p, int) {
    const int k = numeric_parameter(p[0]);
    if (k < 0) return k;
    if (k == kind_long) {
        const int r = long_logarithm_domain(long_at(p[0].word), p[0]);
        return r < 0 ? r : long_unary(p[0], long_log);
    }
    const int r = logarithm_domain(p[0].number, p[0]);
    return r < 0 ? r : finite_result(std::log(p[0].number), p[0]);
}

int fn_log10_handler(Item* p, int) {
    const int k = numeric_parameter(p[0]);
    if (k < 0) return k;
    if (k == kind_long) {
        const int r = long_logarithm_domain(long_at(p[0].word), p[0]);
        return r < 0 ? r : long_unary(p[0], long_log10);
    }
    const int r = logarithm_domain(p[0].number, p[0]);
    return r < 0 ? r : finite_result(std::log10(p[0].number), p[0]);
}


int fn_root_handler(Item* p, int) {
    const int k = common_numeric_type(p[0], p[1]);
    if (k < 0) return k;
    if (k == kind_long) {
        int r = require_floating_mode(p[0]);
        if (r < 0) return r;
        return timed(root_time_label, [&] { return long_root(long_at(p[0].word), long_at(p[1].word), long_state.work); });
    }
    const double x = p[0].number;
    const double n = p[1].number;
    double y = NAN;
    if (n != 0.0) {
        if (x >= 0.0) {
            y = std::pow(x, 1.0 / n);
        } else if (n == std::trunc(n) && std::fmod(n, 2.0) != 0.0) {
            y = -std::pow(-x, 1.0 / n);  // an odd root of a negative number
        }
    }
    if (!std::isfinite(y)) return fail_at(err_power_root_error_result, p[0]);
    return double_result(y);
}

int fn_half_handler(Item* p, int) {
    const int k = numeric_parameter(p[0]);
    if (k < 0) return k;
    if (k == kind_double) return double_result(p[0].number / 2.0);
    lang.reporter.error_column = p[0].column;
    return timed(half_time_label, [&] { return long_half(long_at(p[0].word), long_state.work); });
}

int fn_factorial_handler(Item* p, int) {
    int k = numeric_parameter(p[0]);
    if (k < 0) return k;
    if (k == kind_double && areas.long_default) {
        k = make_long(p[0]);
        if (k < 0) return k;
    }
    if (k == kind_long) {
        lang.reporter.error_column = p[0].column;
        return timed(factorial_time_label,
                     [&] { return long_factorial(long_at(p[0].word), long_state.work); });
    }
    const double n = std::trunc(p[0].number);
    if (!(n >= 1.0 && n < 171.0)) return fail_at(err_factorial_number_out_range, p[0]);
    double product = 1.0;
    for (double i = 2.0; i <= n; i += 1.0) product *= i;
    return double_result(product);
}

int fn_exponent_handler(Item* p, int) {
    const int k = numeric_parameter(p[0]);
    if (k < 0) return k;
    if (k == kind_long) return double_result(static_cast<double>(long_at(p[0].word).exp - 1));
    char text[64];
    std::snprintf(text, sizeof text, "% 4.2e", p[0].number);
    const char* e = std::strchr(text, 'e');
    int exponent = 0;
    if (e == nullptr || std::sscanf(e + 1, "%d", &exponent) != 1) exponent = 0;  // inf and nan
    return double_result(static_cast<double>(exponent));
}

int fn_rnd_handler(Item* p, int) {
    double x = 0.0;
    const int r = double_parameter(p[0], x);
    if (r < 0) return r;
    if (x < 0.0) {
        std::uint32_t seed = 0;
        if (!random_seed_of(x, seed)) return fail_at(err_randomize_number_out_range, p[0]);
        seed_random(seed);
    } else if (x == 0.0) {
        return double_result(lang.random.previous);
    }
    return double_result(next_random());
}

int fn_mod_handler(Item* p, int) {
    const int k = common_numeric_type(p[0], p[1]);
    if (k < 0) return k;
    if (k == kind_double) {
        if (p[1].number == 0.0) return fail_at(err_attempt_divide_by_zero, p[1]);
        return double_result(std::fmod(p[0].number, p[1].number));
    }
    if (long_is_zero(long_at(p[1].word))) return fail_at(err_attempt_divide_by_zero, p[1]);
    lang.reporter.error_column = p[0].column;
    const int r = long_mod(long_at(p[0].word), long_at(p[1].word), long_state.work);
    return r < 0 ? r : long_result();
}

int fn_setcolor_handler(Item* p, int) {
    double colour = 0.0;
    double scale = 1.0;
    for (int i = 0; i < 3; ++i) {
        double c = 0.0;
        const int r = double_parameter(p[i], c);
        if (r < 0) return r;
        c = std::trunc(c);
        if (!(c >= 0.0 && c <= 255.0)) return fail_at(err_parameter_out_range, p[i]);
        colour += c * scale;  // red in the low byte
        scale *= 256.0;
    }
    return double_result(colour);
}

}  // namespace tl
