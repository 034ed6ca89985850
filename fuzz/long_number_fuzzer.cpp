// long_number_fuzzer.cpp — number texts into long numbers, and the four operations,
// checked against exact rational arithmetic.
//
// Input: a flags byte (bit 0 integer mode, bit 1 rounding, bit 2 all partial
// products), two bytes for the precision (11 to 610 digits), then two number
// texts separated by a line end.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "exact_values.h"
#include "exec/sizing_settings.h"
#include "lang/language_init.h"
#include "longmath/long_arith.h"
#include "longmath/long_convert.h"
#include "longmath/long_state.h"

namespace {

using tl::LongNumber;
using tl::exact::Rational;

/// Longest text and largest integer taken (the operations are quadratic).
constexpr std::size_t max_text = 4000;
constexpr int max_integer_digits = 4000;

[[noreturn]] void fault(const char* what, std::string_view a, std::string_view b) {
    std::fprintf(stderr, "long-number fault: %s\n  a = \"%.*s\"\n  b = \"%.*s\"\n", what, static_cast<int>(a.size()),
                 a.data(), static_cast<int>(b.size()), b.data());
    std::abort();
}

void check(bool ok, const char* what, std::string_view a, std::string_view b) {
    if (!ok) fault(what, a, b);
}

bool is_integer(const Rational& x) { return trunc_int(x) == x; }

/// Significant digits of an accepted number text (leading and trailing zeros not counted).
int significant_digits(std::string_view text) {
    std::string digits;
    for (const char c : text) {
        if (c == 'e' || c == 'E') break;
        if (c >= '0' && c <= '9') digits += c;
    }
    const std::size_t first = digits.find_first_not_of('0');
    if (first == std::string::npos) return 0;
    return static_cast<int>(digits.find_last_not_of('0') - first + 1);
}

/// Parses `text`, checks the value against the text's exact value and leaves
/// the value parsed in `value` (`known` false when it is too large to compare
/// exactly). Returns false when the text was refused (or
/// is too large to compute with).
bool parse(std::string_view text, LongNumber& n, Rational& value, bool& known) {
    known = false;
    const tl::LongMode& mode = tl::long_state.mode;
    const std::string_view until_nul = text.substr(0, text.find('\0'));
    Rational exact;
    bool huge = false;
    const bool valid = tl::exact::decimal_value(until_nul, exact, huge);
    const int rc = tl::long_from_text(text, n, false);
    if (rc < 0) {
        // The reference refuses exponents beyond the limit as well.
        check(!valid, "a well-formed text was refused", text, {});
        return false;
    }
    check(valid, "a malformed text was accepted", text, {});
    check(n.nrm == 1 && n.blks >= 1 && static_cast<std::size_t>(n.blks) <= n.blocks.size(), "record not normalised",
          text, {});
    if (huge || n.exp > 5000 || n.exp < -5000) {
        // Too large to compare exactly; the operations still run on it.
        if (mode.integer_mode && n.exp > max_integer_digits) return false;
        return true;
    }
    const Rational got = tl::exact::value_of(n);
    if (mode.integer_mode) {
        const Rational whole = trunc_int(exact);
        // A dropped digit of 5 or more stays as one fraction digit when rounding.
        check(got == whole || (mode.rounding && got == trunc_to(exact, -1)), "integer-mode parse", text, {});
        if (n.exp > max_integer_digits) return false;
    } else if (significant_digits(until_nul) <= mode.precision + 1) {
        check(got == exact, "parse of a text within the precision", text, {});
    } else {
        check(got == round_sig(exact, mode.precision, mode.rounding), "parse with rounding", text, {});
    }
    value = got;
    known = true;
    return true;
}

/// The sum as the block-aligned addition forms it (see the differential unit tests).
Rational expected_sum(const LongNumber& a, const LongNumber& b, const Rational& av, const Rational& b_signed) {
    const tl::LongMode& mode = tl::long_state.mode;
    if (mode.integer_mode) return av + b_signed;
    // Zero takes no part in the alignment: the sum is the other operand.
    if (av.sign() == 0) return round_sig(b_signed, mode.precision, mode.rounding);
    if (b_signed.sign() == 0) return round_sig(av, mode.precision, mode.rounding);
    const bool a_large = a.exp >= b.exp;
    const LongNumber& L = a_large ? a : b;
    const LongNumber& S = a_large ? b : a;
    const Rational& lv = a_large ? av : b_signed;
    const Rational& sv = a_large ? b_signed : av;
    const int p = mode.precision;
    const long gap = static_cast<long>(L.exp) - S.exp;
    if (gap > p + 2) return round_sig(lv, p, mode.rounding);
    const bool same = (lv.sign() < 0) == (sv.sign() < 0);
    const long s = gap % 8;
    const long result_exp = L.exp + 8 - s;
    const long capacity =
        std::min<long>(std::max<long>(L.len + 8, result_exp - S.exp + S.len), p + 8 + (same ? 1 : 2));
    const long blocks = (capacity + 7) / 8;
    const Rational sum = trunc_to(lv, result_exp - 8 * blocks) + trunc_to(sv, result_exp - 8 * blocks);
    return round_sig(trunc_to(sum, result_exp - capacity), p, mode.rounding);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    tl::reset_interpreter_state();
    if (tl::init_language_tables(tl::default_sizing()) != 0) std::abort();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 3) return -1;
    tl::LongMode& mode = tl::long_state.mode;
    mode = tl::LongMode{};
    mode.integer_mode = (data[0] & 1) != 0;
    mode.rounding = (data[0] & 2) != 0;
    mode.optmul = (data[0] & 4) != 0;
    mode.precision = 11 + (data[1] | (data[2] << 8)) % 600;
    mode.saved_precision = mode.precision;

    const std::string_view texts(reinterpret_cast<const char*>(data + 3), size - 3);
    const std::size_t split = texts.find('\n');
    const std::string_view ta = texts.substr(0, split);
    const std::string_view tb = split == std::string_view::npos ? std::string_view("1") : texts.substr(split + 1);
    if (ta.size() > max_text || tb.size() > max_text) return -1;

    LongNumber a;
    LongNumber b;
    Rational av;
    Rational bv;
    bool a_known = false;
    bool b_known = false;
    if (!parse(ta, a, av, a_known) || !parse(tb, b, bv, b_known)) return 0;
    // Exact values with exponents in the millions are too slow to compare;
    // such operands are still put through every operation.
    const bool moderate = a_known && b_known && a.exp < 5000 && a.exp > -5000 && b.exp < 5000 && b.exp > -5000;
    const bool integers = moderate && (!mode.integer_mode || (is_integer(av) && is_integer(bv)));
    const int p = mode.precision;

    // Comparison.
    const int order = tl::long_compare(a, b);
    if (moderate) check(order == (av < bv ? -1 : (bv < av ? 1 : 0)), "compare", ta, tb);

    // The text of a number reads back as the same value.
    if (!mode.integer_mode && moderate) {
        std::vector<char> buffer(static_cast<std::size_t>(a.len) + 64 + static_cast<std::size_t>(a.exp < 0 ? -a.exp : a.exp));
        const int length = tl::long_to_string(a, buffer.data(), buffer.size(), false);
        check(length >= 0, "text of a number", ta, tb);
        LongNumber back;
        check(tl::long_from_text(std::string_view(buffer.data(), static_cast<std::size_t>(length)), back, false) == 0,
              "text of a number does not read back", ta, tb);
        check(tl::exact::value_of(back) == tl::exact::value_of(a), "text of a number reads back differently", ta,
              std::string_view(buffer.data(), static_cast<std::size_t>(length)));
    }

    // Sum and difference.
    for (const bool subtract : {false, true}) {
        LongNumber r;
        check((subtract ? tl::long_subtract(a, b, r) : tl::long_add(a, b, r)) == 0, "add failed", ta, tb);
        tl::long_normalise(r, tl::normalise_round);
        if (integers) {
            const Rational b_signed = subtract ? Rational() - bv : bv;
            check(tl::exact::value_of(r) == expected_sum(a, b, av, b_signed), subtract ? "subtract" : "add", ta, tb);
        }
    }

    // Product.
    {
        LongNumber r;
        check(tl::long_multiply(a, b, r) == 0, "multiply failed", ta, tb);
        const Rational exact = av * bv;
        const Rational got = tl::exact::value_of(r);
        if (mode.integer_mode) {
            if (integers) check(got == exact, "integer product", ta, tb);
        } else if (!moderate) {
        } else if (mode.optmul || a.blks + b.blks < (p + 7) / 8 + 2) {
            check(got == round_sig(exact, p, mode.rounding), "product", ta, tb);
        } else if (exact.sign() != 0) {
            // Low partial products are left out: a carry they would have made
            // may be lost, on top of the cut to the precision, so the result
            // lies within two units of its last digit (runs of nines reach
            // beyond one).
            const long e = std::max(decimal_magnitude(exact), got.sign() != 0 ? decimal_magnitude(got) : 0L);
            check((got - exact).abs() < tl::exact::pow10q(e - p) * Rational::from_long(2), "product beyond two units",
                  ta, tb);
        }
    }

    // Remainder (only that it ends well; its rounding is checked by the unit tests).
    if (b.blocks[0] != 0) {  // a normalised number is zero when its first block is
        LongNumber r;
        (void)tl::long_mod(a, b, r);
    }

    // Quotient (the operands may be changed, so it comes last).
    {
        LongNumber q;
        // Integer mode cuts the operands to their integer part first (a
        // fraction digit is left by rounding while parsing).
        const bool b_was_zero = b.blocks[0] == 0 || (mode.integer_mode && b.exp <= 0);
        const int rc = tl::long_divide(a, b, q);
        if (b_was_zero) {
            check(rc < 0, "division by zero accepted", ta, tb);
        } else {
            check(rc == 0, "divide failed", ta, tb);
            const Rational got = tl::exact::value_of(q);
            if (mode.integer_mode) {
                if (integers) {
                    const Rational quotient = trunc_int(av / bv);
                    check(got == quotient, "integer quotient", ta, tb);
                    check(tl::exact::value_of(tl::long_state.remainder) == av - quotient * bv, "remainder", ta, tb);
                }
            } else if (moderate) {
                check(got == round_sig(av / bv, p, mode.rounding), "quotient", ta, tb);
            }
        }
    }
    return 0;
}
