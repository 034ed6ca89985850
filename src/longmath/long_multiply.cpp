// long_multiply.cpp — schoolbook multiplication with truncated partial products.
#include <algorithm>

#include "exec/front_end.h"
#include "longmath/long_arith.h"
#include "longmath/long_blocks.h"
#include "longmath/long_convert.h"
#include "longmath/long_state.h"
#include "longmath/long_timing.h"

namespace tl {
namespace {

constexpr std::uint32_t multiply_poll_work = 200000;
/// Rows whose products a 64-bit column can take before its carries must be
/// moved on: 1000 * (10^8 - 1)^2 + 10^8 < 2^64.
constexpr int rows_between_carries = 1000;

void carry_columns(std::uint64_t* cols, int count) {
    std::uint64_t carry = 0;
    for (int k = count - 1; k >= 0; --k) {
        const std::uint64_t v = cols[k] + carry;
        carry = v / long_base;
        cols[k] = v - carry * long_base;
    }
}

int multiply_into(const LongNumber& a, const LongNumber& b, LongNumber& result) {
    const LongMode& mode = long_state.mode;
    if (long_is_zero(a) || long_is_zero(b)) {
        long_set_zero(result);
        return 0;
    }
    // The product's exponent is the sum, or one less once normalised.
    if (int rc = long_check_exponent_sum(static_cast<std::int64_t>(a.exp) + b.exp, true); rc < 0) {
        long_set_zero(result);
        return rc;
    }
    const auto start = long_timer_start();
    const int na = a.blks;
    const int nb = b.blks;
    const int product_blocks = na + nb;
    const int limit = (mode.precision + 7) / 8 + 2;
    const bool keep_all = product_blocks < limit || mode.integer_mode || mode.optmul;
    const int kept = keep_all ? product_blocks : limit;
    if (mode.debug_display) {
        console_print("product blocks = %d, discard blocks = %d\n", product_blocks, product_blocks - kept);
    }

    // Partial products are summed in 64-bit columns; column c holds the
    // products a[i] * b[j] with i + j + 1 = c. Products that would land below
    // the kept blocks are never formed.
    std::vector<std::uint64_t>& columns = long_state.product_columns;
    if (columns.size() < static_cast<std::size_t>(kept)) columns.resize(static_cast<std::size_t>(kept));
    std::uint64_t* cols = columns.data();
    std::fill(cols, cols + kept, 0);
    const std::uint32_t* ab = a.blocks.data();
    const std::uint32_t* bb = b.blocks.data();
    int rows = 0;
    for (int j = nb - 1; j >= 0; --j) {
        const int last = std::min(na - 1, kept - 2 - j);
        const std::uint64_t factor = bb[j];
        std::uint64_t* row = cols + j + 1;
        for (int i = 0; i <= last; ++i) row[i] += ab[i] * factor;
        if (++rows == rows_between_carries) {
            carry_columns(cols, kept);
            rows = 0;
        }
        const int rc = long_poll_interrupt(long_state.multiply_work, static_cast<std::uint32_t>(na / 10),
                                           multiply_poll_work);
        if (rc < 0) {
            long_set_zero(result);
            return rc;
        }
    }
    carry_columns(cols, kept);

    long_reserve(result, kept * 8);
    std::uint32_t* out = result.blocks.data();
    for (int k = 0; k < kept; ++k) out[k] = static_cast<std::uint32_t>(cols[k]);
    result.blks = kept;
    result.len = std::min(a.len + b.len, 8 * kept);
    result.exp = a.exp + b.exp;
    result.sgn = (a.sgn == -1) == (b.sgn == -1) ? 0 : -1;
    result.nrm = 0;
    long_timer_report("Mult Calc. Time: ", start);
    return 0;
}

}  // namespace

int long_multiply_unnormalised(const LongNumber& a, const LongNumber& b, LongNumber& result) {
    if (&result != &a && &result != &b) return multiply_into(a, b, result);
    const int rc = multiply_into(a, b, long_state.alias_result);
    if (rc == 0) long_copy(long_state.alias_result, result);
    return rc;
}

int long_multiply(const LongNumber& a, const LongNumber& b, LongNumber& result) {
    const int rc = long_multiply_unnormalised(a, b, result);
    if (rc < 0) return rc;
    long_normalise(result, normalise_round);
    return long_check_exponent(result, true);
}

}  // namespace tl
