// long_sincos.cpp — sine and cosine: the piece-splitting core and the driver
// that reduces the argument by the full turn and folds it below an eighth turn.
#include <algorithm>
#include <cstring>
#include <utility>

#include "longmath/long_arith.h"
#include "longmath/long_blocks.h"
#include "longmath/long_constants_cache.h"
#include "longmath/long_convert.h"
#include "longmath/long_fixed.h"
#include "longmath/long_functions.h"
#include "longmath/long_state.h"
#include "longmath/long_support.h"
#include "longmath/long_timing.h"
#include "longmath/long_trig.h"

namespace tl {
namespace {

constexpr int sin_pieces = 5;
constexpr int sin_crossover_defaults[4] = {8, 48, 304, 2000};

/// out = a * b at the precision that keeps the product's absolute error
/// below 10^-digits (a and b at most about 1 in magnitude).
int product_to(const LongNumber& a, const LongNumber& b, int digits, LongNumber& out) {
    if (long_is_zero(a) || long_is_zero(b)) {
        long_set_zero(out);
        return 0;
    }
    const LongPrecisionGuard guard;
    long_set_precision(digits + std::min(a.exp, 0) + std::min(b.exp, 0) + 2);
    return long_multiply(a, b, out);
}

/// out = a + b (or a - b), normalised with rounding at the current precision.
int sum_to(const LongNumber& a, const LongNumber& b, bool subtract, LongNumber& out) {
    const int rc = subtract ? long_subtract(a, b, out) : long_add(a, b, out);
    long_normalise(out, normalise_round);
    return rc;
}

}  // namespace

int long_sin_cos_core(const LongNumber& x, LongNumber& s, LongNumber& c) {
    const auto total_start = long_timer_start();
    const LongPrecisionGuard guard;
    LongMode& mode = long_state.mode;
    if (long_is_zero(x)) {
        long_set_zero(s);
        long_set_int(c, 1);
        return 0;
    }
    if (x.exp < -(mode.precision / 2)) {
        // sin x = x and cos x = 1 to the precision.
        long_copy(x, s);
        s.nrm = 0;
        long_normalise(s, normalise_round);
        long_set_int(c, 1);
        return 0;
    }
    if (x.exp < 0) long_set_precision(mode.precision - x.exp);
    const int working = mode.precision + 18;
    const int W = (working + 7) / 8 + 1;  // the integer block and the fraction

    LongWorkFrame frame;
    std::uint32_t* arg = frame.take(W * 8).blocks.data();
    std::uint32_t* piece = frame.take(W * 8).blocks.data();
    std::uint32_t* square = frame.take(W * 8).blocks.data();
    LongNumber& sk = frame.take(working + 16);
    LongNumber& ck = frame.take(working + 16);
    LongNumber& dk = frame.take(working + 16);
    LongNumber& p1 = frame.take(working + 16);
    LongNumber& p2 = frame.take(working + 16);
    LongNumber& mix = frame.take(working + 16);
    LongNumber& next = frame.take(working + 16);
    LongNumber& one = frame.take(8);
    long_set_int(one, 1);
    long_set_zero(s);
    long_set_int(c, 1);

    fixed_from_long(x, arg, W);
    fixed_debug_dump("x1", arg, W, 0);
    const int arg_end = fixed_last_nonzero(arg, 0, W - 1) + 1;  // blocks in use
    int bounds[sin_pieces + 1];
    bounds[0] = 0;
    long_read_crossovers("sincrossover", 4, sin_crossover_defaults, bounds + 1);
    bounds[sin_pieces] = std::max(working, bounds[sin_pieces - 1] + 8);

    long_set_precision(working);
    bool first_piece = true;
    for (int k = 0; k < sin_pieces; ++k) {
        // Fraction digits b(k) .. b(k+1) are blocks 1 + b(k)/8 .. of the array;
        // the first piece also takes the integer block (zero here).
        const int from = k == 0 ? 0 : 1 + bounds[k] / 8;
        if (from >= arg_end) break;
        const int to = k == sin_pieces - 1 ? W : std::min(1 + bounds[k + 1] / 8, W);
        std::fill(piece, piece + W, 0u);
        std::copy(arg + from, arg + to, piece + from);
        const int pf = fixed_first_nonzero(piece, from, to);
        if (pf >= to) continue;
        const int pl = fixed_last_nonzero(piece, pf, to - 1);
        const int sf = fixed_multiply(piece, pf, piece, pf, pl, square, W);
        const int sl = fixed_last_nonzero(square, sf, W - 1);

        auto t = long_timer_start();
        int rc = fixed_series(series_sin, piece, pf, pl, square, sf, sl, false, W, sk);
        if (rc < 0) return rc;
        long_store_time("sincalctime", k, long_timer_stop(t));
        t = long_timer_start();
        rc = fixed_series(series_cos, piece, pf, pl, square, sf, sl, false, W, ck);
        if (rc < 0) return rc;
        long_store_time("coscalctime", k, long_timer_stop(t));

        t = long_timer_start();
        if (first_piece) {
            long_copy(sk, s);
            long_copy(ck, c);
            first_piece = false;
        } else {
            // With d = 1 - cos b:  sin(a+b) = sin a + (cos a sin b - sin a d),
            //                      cos(a+b) = cos a - (cos a d + sin a sin b).
            // The corrections are small, so their products need fewer digits.
            long_debug_dump("sin1", s, 0);
            long_debug_dump("cos1", c, 0);
            long_debug_dump("sin2", sk, 0);
            long_debug_dump("cos2", ck, 0);
            rc = sum_to(one, ck, true, dk);
            if (rc == 0) rc = product_to(c, sk, working, p1);
            if (rc == 0) rc = product_to(s, dk, working, p2);
            if (rc == 0) rc = sum_to(p1, p2, true, mix);
            if (rc == 0) rc = sum_to(s, mix, false, next);
            if (rc < 0) return rc;
            if (mode.debug_display) {
                // The products of the addition theorems, for the display only.
                if (product_to(s, ck, working, mix) == 0) long_debug_dump("s1c2", mix, 0);
                long_debug_dump("c1s2", p1, 0);
                long_debug_dump("sa+b", next, 0);
                if (product_to(c, ck, working, mix) == 0) long_debug_dump("c1c2", mix, 0);
            }
            rc = product_to(c, dk, working, p1);
            if (rc == 0) rc = product_to(s, sk, working, p2);
            if (rc < 0) return rc;
            long_debug_dump("s1s2", p2, 0);
            long_exchange(s, next);
            rc = sum_to(p1, p2, false, mix);
            if (rc == 0) rc = sum_to(c, mix, true, next);
            if (rc < 0) return rc;
            long_exchange(c, next);
            long_debug_dump("ca+b", c, 0);
        }
        long_store_time("recalctime", k, long_timer_stop(t));
    }
    long_debug_dump("sine", s, 0);
    long_store_time("sintotaltime", long_timer_stop(total_start));
    return 0;
}

int long_angle_out(LongNumber& angle, bool degrees) {
    if (!degrees || long_is_zero(angle)) return 0;
    LongWorkFrame frame;
    LongNumber& pi = frame.take(long_state.mode.precision + 16);
    LongNumber& scaled = frame.take(long_state.mode.precision + 16);
    int rc = cached_pi(pi);
    if (rc < 0) return rc;
    long_multiply_small(angle, 180, scaled);
    return long_divide(scaled, pi, angle);
}

int long_sin_cos(const LongNumber& x, bool degrees, int guard, LongNumber* s_out, LongNumber* c_out) {
    int rc = long_require_floating();
    if (rc < 0) return rc;
    const auto start = long_timer_start();
    const LongPrecisionGuard precision_guard;
    LongMode& mode = long_state.mode;
    const int target = mode.precision;
    const int working = target + guard;
    LongWorkFrame frame;
    LongNumber& a = frame.take(working + 16);
    LongNumber& full = frame.take(working + 16);
    LongNumber& quarter = frame.take(working + 16);
    LongNumber& eighth = frame.take(working + 16);
    LongNumber& q = frame.take(working + 16);
    LongNumber& t = frame.take(working + 16);
    LongNumber& sa = frame.take(working + 16);
    LongNumber& ca = frame.take(working + 16);
    long_copy(x, a);
    a.nrm = 0;
    long_normalise(a, normalise_strip);
    const bool negative = a.sgn == -1;
    a.sgn = 0;

    int quadrant = 0;
    bool complement = false;
    const bool small = !degrees && (a.exp < 0 || (a.exp == 0 && a.blocks[0] < 78539818u));
    if (!long_is_zero(a) && !small) {
        LongNumber& original = frame.take(working + 16);
        long_copy(a, original);
        // Reduction by the full turn and the quarter turns; `extra` digits
        // make up for the leading digits that cancel near a multiple of the
        // quarter turn (radians only: in degrees the reduction is exact).
        auto reduce = [&](int extra) -> int {
            long_copy(original, a);
            quadrant = 0;
            complement = false;
            // A large argument needs its integer digits on top of the working digits.
            long_set_precision(working + std::max(a.exp, 0) + extra);
            if (degrees) {
                long_set_int(full, 360);
                long_set_int(quarter, 90);
                long_set_int(eighth, 45);
            } else {
                int r = cached_pi(t);
                if (r < 0) return r;
                long_multiply_small(t, 2, full);
                r = long_half(t, quarter);
                if (r == 0) r = long_half(quarter, eighth);
                if (r < 0) return r;
            }
            if (long_compare(a, full) >= 0) {
                // a -= int(a / full) * full, each step cut (not rounded).
                long_copy(a, sa);
                long_copy(full, ca);
                int r = long_divide(sa, ca, q);
                if (r < 0) return r;
                long_cut_to_integer(q);
                r = long_multiply_unnormalised(q, full, t);
                if (r < 0) return r;
                long_normalise(t, normalise_cut);
                (void)long_subtract(a, t, sa);
                long_normalise(sa, normalise_cut);
                long_exchange(a, sa);
                if (a.sgn == -1 && !long_is_zero(a)) {
                    (void)long_add(a, full, sa);
                    long_normalise(sa, normalise_cut);
                    long_exchange(a, sa);
                }
            }
            while (quadrant < 3 && long_compare(a, quarter) >= 0) {
                (void)long_subtract(a, quarter, sa);
                long_normalise(sa, normalise_cut);
                long_exchange(a, sa);
                ++quadrant;
            }
            if (a.sgn == -1) long_set_zero(a);  // rounding residue of an exact multiple
            if (long_compare(a, eighth) > 0) {
                (void)long_subtract(quarter, a, sa);
                long_normalise(sa, normalise_cut);
                long_exchange(a, sa);
                complement = true;
            }
            return 0;
        };
        rc = reduce(0);
        if (rc == 0 && !degrees && !long_is_zero(a) && a.exp < 0) rc = reduce(-a.exp + 2);
        if (rc < 0) return rc;
        long_set_precision(working);
        if (degrees && !long_is_zero(a)) {
            rc = cached_pi(t);
            if (rc < 0) return rc;
            rc = long_multiply(a, t, sa);
            if (rc == 0) rc = long_divide_small(sa, 180, a);
            if (rc < 0) return rc;
        }
    }
    long_set_precision(working);
    rc = long_sin_cos_core(a, sa, ca);
    if (rc < 0) return rc;
    if (complement) long_exchange(sa, ca);
    LongNumber* sine = &sa;
    LongNumber* cosine = &ca;
    bool flip_sine = false;
    bool flip_cosine = false;
    switch (quadrant) {
        case 1: std::swap(sine, cosine); flip_cosine = true; break;
        case 2: flip_sine = flip_cosine = true; break;
        case 3: std::swap(sine, cosine); flip_sine = true; break;
        default: break;
    }
    if (negative) flip_sine = !flip_sine;
    long_set_precision(target);
    if (s_out != nullptr) {
        long_copy(*sine, *s_out);
        if (flip_sine) long_flip_sign(*s_out);
        s_out->nrm = 0;
        long_normalise(*s_out, normalise_round);
    }
    if (c_out != nullptr) {
        long_copy(*cosine, *c_out);
        if (flip_cosine) long_flip_sign(*c_out);
        c_out->nrm = 0;
        long_normalise(*c_out, normalise_round);
    }
    long_timer_report("SIN Calc. Time: ", start);
    return 0;
}

int long_sin(const LongNumber& x, bool degrees, LongNumber& result) {
    return long_sin_cos(x, degrees, 8, &result, nullptr);
}

int long_cos(const LongNumber& x, bool degrees, LongNumber& result) {
    return long_sin_cos(x, degrees, 8, nullptr, &result);
}

}  // namespace tl
