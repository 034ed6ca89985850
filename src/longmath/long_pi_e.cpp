// long_pi_e.cpp — pi by Machin's formula and e by its series, summed on
// integer-part fixed-point arrays, and the cache of the long constants.
#include <algorithm>
#include <cstdint>

#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "longmath/long_arith.h"
#include "longmath/long_blocks.h"
#include "longmath/long_constants_cache.h"
#include "longmath/long_convert.h"
#include "longmath/long_fixed.h"
#include "longmath/long_functions.h"
#include "longmath/long_state.h"
#include "longmath/long_support.h"
#include "longmath/long_timing.h"

namespace tl {
namespace {

/// Work (precision digits per term) between two interruption checks.
constexpr std::uint32_t series_poll_work = 10000000;

/// Blocks of the fixed-point arrays for the current precision: the integer
/// block, precision + 18 digits, and two blocks more for the truncation
/// errors of many thousand terms (each term loses up to a unit of the last block).
int array_blocks() { return std::max(long_state.mode.precision + 18, 20) / 8 + 2; }

std::int64_t* sum_array(int W) {
    std::vector<std::int64_t>& sums = long_state.functions.fixed_sum;
    if (sums.size() < static_cast<std::size_t>(W)) sums.resize(static_cast<std::size_t>(W));
    std::fill(sums.begin(), sums.begin() + W, 0);
    return sums.data();
}

int poll(int precision) {
    return long_poll_interrupt(long_state.functions.function_work, static_cast<std::uint32_t>(precision), series_poll_work);
}

/// out[0..W) = arctan(1/n): sum = term = 1/n; for k = 1, 2, ... the term is
/// divided by n^2 and term / (2k + 1) is taken off or added in turn.
int arctan_array(std::uint32_t n, std::uint32_t* term, std::uint32_t* out, int W) {
    std::int64_t* acc = sum_array(W);
    std::fill(term, term + W, 0u);
    term[0] = 1;
    const SmallDivisor by_n(n);
    std::uint64_t rest = 0;
    for (int i = 0; i < W; ++i) {
        term[i] = static_cast<std::uint32_t>(by_n.divide(rest * long_base + term[i], rest));
        acc[i] = term[i];
    }
    const bool split = n >= 10000;  // n^2 would not leave room for the remainder
    const SmallDivisor by_square(split ? n : static_cast<std::uint64_t>(n) * n);
    int first = fixed_first_nonzero(term, 0, W);
    const int precision = long_state.mode.precision;
    for (std::uint64_t k = 1; first < W; ++k) {
        if (split) {
            rest = 0;
            for (int i = first; i < W; ++i) term[i] = static_cast<std::uint32_t>(by_n.divide(rest * long_base + term[i], rest));
        }
        // One pass: the term by n^2, and term / (2k + 1) into the sum.
        const SmallDivisor by_odd(2 * k + 1);
        const bool subtract = (k & 1) != 0;
        std::uint64_t rest_term = 0;
        std::uint64_t rest_odd = 0;
        for (int i = first; i < W; ++i) {
            const std::uint64_t t = by_square.divide(rest_term * long_base + term[i], rest_term);
            term[i] = static_cast<std::uint32_t>(t);
            const std::int64_t q = static_cast<std::int64_t>(by_odd.divide(rest_odd * long_base + t, rest_odd));
            acc[i] += subtract ? -q : q;
        }
        first = fixed_first_nonzero(term, first, W);
        const int rc = poll(precision);
        if (rc < 0) return rc;
    }
    fixed_settle(acc, out, W);
    return 0;
}

int compute_pi(LongNumber& out) {
    const int W = array_blocks();
    LongWorkFrame frame;
    std::uint32_t* a = frame.take(W * 8).blocks.data();
    std::uint32_t* b = frame.take(W * 8).blocks.data();
    std::uint32_t* term = frame.take(W * 8).blocks.data();
    int rc = arctan_array(5, term, a, W);
    if (rc == 0) rc = arctan_array(239, term, b, W);
    if (rc < 0) return rc;
    // pi = (4 arctan(1/5) - arctan(1/239)) * 4.
    std::int64_t* acc = sum_array(W);
    for (int i = 0; i < W; ++i) acc[i] = 16 * static_cast<std::int64_t>(a[i]) - 4 * static_cast<std::int64_t>(b[i]);
    fixed_settle(acc, term, W);
    fixed_to_long(term, W, 0, out);
    long_normalise(out, normalise_strip);
    return 0;
}

int compute_e(LongNumber& out) {
    const int W = array_blocks();
    LongWorkFrame frame;
    std::uint32_t* term = frame.take(W * 8).blocks.data();
    std::int64_t* acc = sum_array(W);
    std::fill(term, term + W, 0u);
    term[0] = 1;
    acc[0] = 2;
    int first = 0;
    const int precision = long_state.mode.precision;
    for (std::uint64_t k = 2; first < W; ++k) {
        const SmallDivisor by_k(k);
        std::uint64_t rest = 0;
        for (int i = first; i < W; ++i) {
            const std::uint64_t t = by_k.divide(rest * long_base + term[i], rest);
            term[i] = static_cast<std::uint32_t>(t);
            acc[i] += static_cast<std::int64_t>(t);
        }
        first = fixed_first_nonzero(term, first, W);
        const int rc = poll(precision);
        if (rc < 0) return rc;
    }
    fixed_settle(acc, term, W);
    fixed_to_long(term, W, 0, out);
    long_normalise(out, normalise_strip);
    return 0;
}

using Compute = int (*)(LongNumber&);

int constant(LongNumber& cached, int& cached_digits, Compute compute, LongNumber& out) {
    if (serve_cached(cached, cached_digits, out)) return 0;
    LongWorkFrame frame;
    LongNumber& value = frame.take(long_state.mode.precision + 24);
    const int rc = compute(value);
    if (rc < 0) return rc;
    keep_cached(value, long_state.mode.precision + 10, cached, cached_digits);
    long_copy(value, out);
    out.nrm = 0;
    long_normalise(out, normalise_round);
    return 0;
}

}  // namespace

bool serve_cached(const LongNumber& cached, int digits, LongNumber& out) {
    if (digits == 0 || digits < long_state.mode.precision + 2) return false;
    long_copy(cached, out);
    out.nrm = 0;
    long_normalise(out, normalise_round);
    return true;
}

void keep_cached(const LongNumber& value, int digits, LongNumber& cached, int& cached_digits) {
    long_copy(value, cached);
    cached_digits = digits;
}

int cached_arctan_tenth(LongNumber& out) {
    if (serve_cached(long_state.functions.cached_atn10, long_state.functions.cached_atn10_digits, out)) return 0;
    LongWorkFrame frame;
    LongNumber& value = frame.take(long_state.mode.precision + 24);
    const int W = array_blocks();
    std::uint32_t* term = frame.take(W * 8).blocks.data();
    LongNumber& sum = frame.take(W * 8);
    const int rc = arctan_array(10, term, sum.blocks.data(), W);
    if (rc < 0) return rc;
    fixed_to_long(sum.blocks.data(), W, 0, value);
    long_normalise(value, normalise_strip);
    keep_cached(value, long_state.mode.precision + 10, long_state.functions.cached_atn10, long_state.functions.cached_atn10_digits);
    long_copy(value, out);
    out.nrm = 0;
    long_normalise(out, normalise_round);
    return 0;
}

int cached_pi(LongNumber& out) { return constant(long_state.functions.cached_pi, long_state.functions.cached_pi_digits, compute_pi, out); }

int cached_e(LongNumber& out) { return constant(long_state.functions.cached_e, long_state.functions.cached_e_digits, compute_e, out); }

int long_pi(LongNumber& result) {
    const int r = long_require_floating();
    if (r < 0) return r;
    const auto start = long_timer_start();
    const int rc = cached_pi(result);
    if (rc == 0) long_timer_report("PI Calc. Time: ", start);
    return rc;
}

int long_e(LongNumber& result) {
    const int r = long_require_floating();
    if (r < 0) return r;
    const auto start = long_timer_start();
    const int rc = cached_e(result);
    if (rc == 0) long_timer_report("E  Calc. Time: ", start);
    return rc;
}

void clear_long_constants() {
    long_state.functions.cached_ln10_digits = 0;
    long_state.functions.cached_pi_digits = 0;
    long_state.functions.cached_e_digits = 0;
    long_state.functions.cached_atn10_digits = 0;
}

}  // namespace tl
