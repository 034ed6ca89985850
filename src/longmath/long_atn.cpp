// long_atn.cpp — arctangent and arc cotangent: the argument adjustment by the
// exact tangents of k * arctan(1/10), and the piece-splitting core.
#include <algorithm>

#include "lang/error_table.h"
#include "longmath/long_arith.h"
#include "longmath/long_blocks.h"
#include "longmath/long_constants_cache.h"
#include "longmath/long_convert.h"
#include "longmath/long_cores.h"
#include "longmath/long_fixed.h"
#include "longmath/long_functions.h"
#include "exec/named_variables.h"
#include "longmath/long_state.h"
#include "longmath/long_support.h"
#include "longmath/long_timing.h"
#include "longmath/long_trig.h"

namespace tl {
namespace {

constexpr int atn_pieces = 6;

/// tan(k * arctan(1/10)) = p(k) / q(k), and its first 8 digits as a block.
struct AdjustStep {
    std::uint32_t p;
    std::uint32_t q;
    std::uint32_t block;
};
constexpr AdjustStep adjust_steps[8] = {
    {0, 1, 0},
    {1, 10, 10000000u},
    {20, 99, 20202020u},
    {299, 970, 30824742u},
    {3960, 9401, 42123178u},
    {49001, 90050, 54415324u},
    {580060, 851499, 68122217u},
    {6652099, 7934930, 83833115u},
};

int sum_into(LongNumber& acc, const LongNumber& b, LongNumber& spare, bool subtract) {
    const int rc = subtract ? long_subtract(acc, b, spare) : long_add(acc, b, spare);
    if (rc < 0) return rc;
    long_normalise(spare, normalise_round);
    long_exchange(acc, spare);
    return 0;
}

/// arctan of x (radians) at the current precision; `offset` receives the
/// part that the reductions took off (pi/2 - ..., k arctan(1/10)).
int arctangent(const LongNumber& x, LongNumber& result) {
    const LongPrecisionGuard guard;
    LongMode& mode = long_state.mode;
    const int target = mode.precision;
    const int working = target + 8;
    long_set_precision(working);
    LongWorkFrame frame;
    LongNumber& a = frame.take(working + 16);
    LongNumber& base = frame.take(working + 16);
    LongNumber& t = frame.take(working + 16);
    LongNumber& u = frame.take(working + 16);
    LongNumber& one = frame.take(8);
    long_set_int(one, 1);
    long_copy(x, a);
    a.nrm = 0;
    long_normalise(a, normalise_round);
    const bool negative = a.sgn == -1;
    a.sgn = 0;
    long_set_zero(base);
    bool complement = false;
    int rc = 0;
    if (long_is_zero(a)) {
        long_set_zero(result);
        return 0;
    }
    if (a.exp >= 1) {
        if (long_compare(a, one) == 0) {
            // arctan 1 = pi / 4.
            rc = cached_pi(t);
            if (rc == 0) rc = long_half(t, u);
            if (rc == 0) rc = long_half(u, result);
            if (rc < 0) return rc;
            if (negative) long_flip_sign(result);
            long_round_at(result, target);
            return 0;
        }
        // arctan x = pi/2 - arctan(1/x).
        long_copy(one, t);
        rc = long_divide(t, a, u);
        if (rc < 0) return rc;
        long_exchange(a, u);
        complement = true;
    }
    if (a.exp == 0 && named_double("atnskipadjust") == 0.0) {
        int k = 7;
        while (k > 0 && a.blocks[0] <= adjust_steps[k].block) --k;
        if (k > 0) {
            // a' = (q a - p) / (q + p a), and k arctan(1/10) is added back.
            const AdjustStep& step = adjust_steps[k];
            LongNumber& num = frame.take(working + 16);
            LongNumber& den = frame.take(working + 16);
            LongNumber& small = frame.take(16);
            long_multiply_small(a, step.q, t);
            long_set_int(small, step.p);
            rc = long_subtract(t, small, num);
            if (rc < 0) return rc;
            long_normalise(num, normalise_round);
            long_multiply_small(a, step.p, t);
            long_set_int(small, step.q);
            rc = long_add(t, small, den);
            if (rc < 0) return rc;
            long_normalise(den, normalise_round);
            rc = long_divide(num, den, a);
            if (rc < 0) return rc;
            if (a.sgn == -1) long_set_zero(a);  // a rounding residue of an exact tangent
            rc = cached_arctan_tenth(t);
            if (rc < 0) return rc;
            long_multiply_small(t, static_cast<std::uint32_t>(k), base);
        }
    }
    rc = long_atan_core(a, u);
    if (rc < 0) return rc;
    rc = sum_into(base, u, t, false);
    if (rc < 0) return rc;
    if (complement) {
        rc = cached_pi(t);
        if (rc == 0) rc = long_half(t, u);
        if (rc == 0) rc = sum_into(u, base, t, true);
        if (rc < 0) return rc;
        long_exchange(base, u);
    }
    if (negative) long_flip_sign(base);
    long_set_precision(target);
    long_copy(base, result);
    result.nrm = 0;
    long_normalise(result, normalise_round);
    return 0;
}

}  // namespace

int long_atan_core(const LongNumber& x, LongNumber& out) {
    const auto total_start = long_timer_start();
    const LongPrecisionGuard guard;
    LongMode& mode = long_state.mode;
    if (long_is_zero(x)) {
        long_set_zero(out);
        return 0;
    }
    if (x.exp < 0) long_set_precision(mode.precision - x.exp);
    const int target = mode.precision;
    const int working = target + 18;
    const int W = (working + 7) / 8 + 1;
    LongWorkFrame frame;
    std::uint32_t* arg = frame.take(W * 8).blocks.data();
    std::uint32_t* piece = frame.take(W * 8).blocks.data();
    std::uint32_t* square = frame.take(W * 8).blocks.data();
    LongNumber& r = frame.take(working + 16);
    LongNumber& p = frame.take(working + 16);
    LongNumber& ak = frame.take(working + 16);
    LongNumber& num = frame.take(working + 16);
    LongNumber& den = frame.take(working + 16);
    LongNumber& spare = frame.take(working + 16);
    LongNumber& one = frame.take(8);
    long_set_int(one, 1);
    const int defaults[5] = {8, 24, 96, 400, working};
    int bounds[atn_pieces + 1];
    bounds[0] = 0;
    long_read_crossovers("atncrossover", 5, defaults, bounds + 1);
    bounds[atn_pieces] = std::max(working, bounds[atn_pieces - 1] + 8);

    long_set_precision(working);
    long_copy(x, r);
    long_set_zero(out);
    for (int k = 0; k < atn_pieces; ++k) {
        // The residual r is below 10^-b(k): its piece is everything above
        // digit b(k+1); what lies below is carried into the next residual.
        fixed_from_long(r, arg, W);
        fixed_debug_dump("x1", arg, W, r.sgn);
        const int arg_end = fixed_last_nonzero(arg, 0, W - 1) + 1;
        if (arg_end == 0) break;
        const bool last = k == atn_pieces - 1;
        const int to = last ? W : std::min(1 + bounds[k + 1] / 8, W);
        std::fill(piece, piece + W, 0u);
        std::copy(arg, arg + std::min(to, arg_end), piece);
        const int pf = fixed_first_nonzero(piece, 0, W);
        if (pf < W) {
            const int pl = fixed_last_nonzero(piece, pf, W - 1);
            const int sf = fixed_multiply(piece, pf, piece, pf, pl, square, W);
            const int sl = fixed_last_nonzero(square, sf, W - 1);
            int rc = fixed_series(series_atan, piece, pf, pl, square, sf, sl, false, W, ak);
            if (rc < 0) return rc;
            rc = sum_into(out, ak, spare, false);
            if (rc < 0) return rc;
        }
        if (last || arg_end <= to) break;
        // r' = (r - p) / (1 + r p): arctan r = arctan p + arctan r'.
        fixed_to_long(piece, W, 0, p);
        long_normalise(p, normalise_strip);
        int rc = long_subtract(r, p, num);
        if (rc < 0) return rc;
        long_normalise(num, normalise_round);
        if (long_is_zero(p)) {
            long_exchange(r, num);
            continue;
        }
        rc = long_multiply(r, p, spare);
        if (rc == 0) rc = long_add(spare, one, den);
        if (rc < 0) return rc;
        long_normalise(den, normalise_round);
        rc = long_divide(num, den, r);
        if (rc < 0) return rc;
        if (r.sgn == -1) long_set_zero(r);
    }
    long_store_time("atntotaltime", long_timer_stop(total_start));
    return 0;
}

int long_atn(const LongNumber& x, bool degrees, LongNumber& result) {
    int rc = long_require_floating();
    if (rc < 0) return rc;
    const auto start = long_timer_start();
    const LongPrecisionGuard guard;
    const int target = long_state.mode.precision;
    long_set_precision(target + 8);
    rc = arctangent(x, result);
    if (rc == 0) rc = long_angle_out(result, degrees);
    if (rc < 0) return rc;
    long_round_at(result, target);
    long_timer_report("ATN Calc. Time: ", start);
    return 0;
}

int long_acot(const LongNumber& x, bool degrees, LongNumber& result) {
    // arccot x = pi/2 - arctan x, between 0 and pi.
    int rc = long_require_floating();
    if (rc < 0) return rc;
    const auto start = long_timer_start();
    const LongPrecisionGuard guard;
    const int target = long_state.mode.precision;
    long_set_precision(target + 8);
    LongWorkFrame frame;
    LongNumber& angle = frame.take(target + 32);
    LongNumber& pi = frame.take(target + 32);
    LongNumber& quarter = frame.take(target + 32);
    rc = arctangent(x, angle);
    if (rc == 0) rc = cached_pi(pi);
    if (rc == 0) rc = long_half(pi, quarter);
    if (rc == 0) rc = long_subtract(quarter, angle, result);
    if (rc < 0) return rc;
    long_normalise(result, normalise_round);
    rc = long_angle_out(result, degrees);
    if (rc < 0) return rc;
    long_round_at(result, target);
    long_timer_report("ATN Calc. Time: ", start);
    return 0;
}

}  // namespace tl
