// long_shim_for_scan.cpp — TEST-ONLY STAND-IN for the long-number conversions
// and arithmetic, so that the scanner and evaluator tests link while the real
// implementation is written on its own branch. DELETE THIS FILE when the two
// branches are merged. It is exact-but-slow (GMP integers over decimal digit
// strings) and follows the declared contracts only as far as these tests need.
#include <gmp.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "exec/front_end.h"
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "lang/item.h"
#include "lang/scanner.h"
#include "longmath/long_arith.h"
#include "longmath/long_convert.h"
#include "longmath/long_space.h"
#include "longmath/long_state.h"

namespace tl {
namespace {

/// value = (neg ? -1 : 1) * 0.digits * 10^exp; digits empty means zero.
struct Dec {
    bool neg = false;
    std::string digits;
    long exp = 0;
};

int fail(int number, bool report) { return report ? report_error(number) : -number; }

Dec decode(const LongNumber& n) {
    Dec d;
    std::string all;
    char group[16];
    for (int i = 0; i < n.blks && i < static_cast<int>(n.blocks.size()); ++i) {
        std::snprintf(group, sizeof group, "%08u", n.blocks[static_cast<std::size_t>(i)]);
        all += group;
    }
    if (static_cast<int>(all.size()) > n.len) all.resize(static_cast<std::size_t>(n.len));
    d.neg = n.sgn == -1;
    d.exp = n.exp;
    d.digits = all;
    return d;
}

void encode(Dec d, LongNumber& out, int round_flag) {
    std::size_t lead = 0;
    while (lead < d.digits.size() && d.digits[lead] == '0') ++lead;
    d.digits.erase(0, lead);
    d.exp -= static_cast<long>(lead);
    const LongMode& mode = long_state.mode;
    if (mode.integer_mode && round_flag != 0) {
        if (d.exp <= 0) d.digits.clear();
        else if (static_cast<long>(d.digits.size()) > d.exp) d.digits.resize(static_cast<std::size_t>(d.exp));
    }
    if (!mode.integer_mode && round_flag != 0 && static_cast<int>(d.digits.size()) > mode.precision) {
        const bool up = round_flag == 1 && mode.rounding && d.digits[static_cast<std::size_t>(mode.precision)] >= '5';
        d.digits.resize(static_cast<std::size_t>(mode.precision));
        if (up) {
            int i = mode.precision - 1;
            while (i >= 0 && d.digits[static_cast<std::size_t>(i)] == '9') d.digits[static_cast<std::size_t>(i--)] = '0';
            if (i < 0) {
                d.digits = "1";
                ++d.exp;
            } else {
                ++d.digits[static_cast<std::size_t>(i)];
            }
        }
    }
    while (!d.digits.empty() && d.digits.back() == '0') d.digits.pop_back();
    if (d.digits.empty()) {
        out.blocks[0] = 0;
        out.len = 1;
        out.blks = 1;
        out.sgn = 0;
        out.exp = 1;
        out.nrm = 1;
        return;
    }
    const int len = static_cast<int>(d.digits.size());
    const int blks = (len + 7) / 8;
    if (static_cast<int>(out.blocks.size()) < blks) out.blocks.resize(static_cast<std::size_t>(blks));
    std::string padded = d.digits + std::string(static_cast<std::size_t>(blks * 8 - len), '0');
    for (int i = 0; i < blks; ++i)
        out.blocks[static_cast<std::size_t>(i)] =
            static_cast<std::uint32_t>(std::strtoul(padded.substr(static_cast<std::size_t>(i) * 8, 8).c_str(), nullptr, 10));
    out.len = len;
    out.blks = blks;
    out.sgn = d.neg ? -1 : 0;
    out.exp = static_cast<std::int32_t>(d.exp);
    out.nrm = 1;
}

/// The number as integer * 10^scale.
struct Scaled {
    mpz_t v;
    long scale = 0;
    Scaled() { mpz_init(v); }
    ~Scaled() { mpz_clear(v); }
    Scaled(const Scaled&) = delete;
    Scaled& operator=(const Scaled&) = delete;
};

void to_scaled(const LongNumber& n, Scaled& s) {
    const Dec d = decode(n);
    if (d.digits.empty()) {
        mpz_set_ui(s.v, 0);
        s.scale = 0;
        return;
    }
    mpz_set_str(s.v, d.digits.c_str(), 10);
    if (d.neg) mpz_neg(s.v, s.v);
    s.scale = d.exp - static_cast<long>(d.digits.size());
}

void rescale(Scaled& s, long scale) {
    if (s.scale > scale) {
        mpz_t p;
        mpz_init(p);
        mpz_ui_pow_ui(p, 10, static_cast<unsigned long>(s.scale - scale));
        mpz_mul(s.v, s.v, p);
        mpz_clear(p);
        s.scale = scale;
    }
}

void from_scaled(const mpz_t v, long scale, LongNumber& out, int round_flag) {
    Dec d;
    d.neg = mpz_sgn(v) < 0;
    char* text = mpz_get_str(nullptr, 10, v);
    d.digits = text[0] == '-' ? text + 1 : text;
    void (*freefunc)(void*, std::size_t);
    mp_get_memory_functions(nullptr, nullptr, &freefunc);
    freefunc(text, std::strlen(text) + 1);
    if (d.digits == "0") d.digits.clear();
    d.exp = static_cast<long>(d.digits.size()) + scale;
    encode(d, out, round_flag);
}

void integer_part(Scaled& s) {
    if (s.scale >= 0) return;
    mpz_t p;
    mpz_init(p);
    mpz_ui_pow_ui(p, 10, static_cast<unsigned long>(-s.scale));
    mpz_tdiv_q(s.v, s.v, p);
    mpz_clear(p);
    s.scale = 0;
}

int add_or_subtract(const LongNumber& a, const LongNumber& b, LongNumber& result, bool subtract) {
    Scaled x, y;
    to_scaled(a, x);
    to_scaled(b, y);
    const long scale = x.scale < y.scale ? x.scale : y.scale;
    rescale(x, scale);
    rescale(y, scale);
    if (subtract) mpz_sub(x.v, x.v, y.v);
    else mpz_add(x.v, x.v, y.v);
    from_scaled(x.v, scale, result, 0);
    return 0;
}

}  // namespace

void long_normalise(LongNumber& n, int round_flag) {
    if (n.nrm == 1) return;
    encode(decode(n), n, round_flag);
}

void long_copy(const LongNumber& src, LongNumber& dest) {
    if (dest.blocks.size() < static_cast<std::size_t>(src.blks)) dest.blocks.resize(static_cast<std::size_t>(src.blks));
    for (int i = 0; i < src.blks; ++i) dest.blocks[static_cast<std::size_t>(i)] = src.blocks[static_cast<std::size_t>(i)];
    dest.len = src.len;
    dest.blks = src.blks;
    dest.sgn = src.sgn;
    dest.exp = src.exp;
    dest.nrm = src.nrm;
}

int long_from_text(std::string_view text, LongNumber& dest, bool report) {
    std::size_t i = 0;
    while (i < text.size() && text[i] == ' ') ++i;
    Dec d;
    if (i < text.size() && (text[i] == '-' || text[i] == '+')) d.neg = text[i++] == '-';
    bool point = false;
    long after_point = 0;
    for (; i < text.size() && ((text[i] >= '0' && text[i] <= '9') || text[i] == '.'); ++i) {
        if (text[i] == '.') {
            if (point) return fail(err_more_than_one_decimal_point, report);
            point = true;
        } else {
            d.digits += text[i];
            if (point) ++after_point;
        }
    }
    if (d.digits.empty()) return fail(err_number_string_contained_no_digits, report);
    long exponent = 0;
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        ++i;
        bool negative = false;
        if (i < text.size() && (text[i] == '-' || text[i] == '+')) negative = text[i++] == '-';
        if (i >= text.size()) return fail(err_invalid_character_number_string, report);
        for (; i < text.size(); ++i) {
            if (text[i] < '0' || text[i] > '9') return fail(err_invalid_character_number_string, report);
            exponent = exponent * 10 + (text[i] - '0');
            if (exponent > 1000000) return fail(err_exponent_out_range, report);
        }
        if (negative) exponent = -exponent;
    }
    if (i != text.size()) return fail(err_invalid_character_number_string, report);
    d.exp = static_cast<long>(d.digits.size()) - after_point + exponent;
    encode(d, dest, 1);
    return 0;
}

int long_from_double(double x, LongNumber& dest, bool report) {
    if (!std::isfinite(x)) return fail(err_could_not_convert_number, report);
    char text[64];
    std::snprintf(text, sizeof text, "%.23e", x);
    return long_from_text(text, dest, report);
}

int long_to_double(const LongNumber& n, double& out, bool report) {
    const Dec d = decode(n);
    if (d.digits.empty()) {
        out = 0.0;
        return 0;
    }
    const std::string text = std::string(d.neg ? "-" : "") + "0." + d.digits + "e" + std::to_string(d.exp);
    out = std::strtod(text.c_str(), nullptr);
    if (!std::isfinite(out)) return fail(err_too_large_for_double, report);
    return 0;
}

int long_convert_in(const Item& item, LongNumber& dest, bool report) {
    switch (item.kind) {
        case kind_long: long_copy(long_at(item.word), dest); return 0;
        case kind_double: return long_from_double(item.number, dest, report);
        default: return long_from_text(item_text(item), dest, report);
    }
}

int long_add(const LongNumber& a, const LongNumber& b, LongNumber& result) {
    return add_or_subtract(a, b, result, false);
}

int long_subtract(const LongNumber& a, const LongNumber& b, LongNumber& result) {
    return add_or_subtract(a, b, result, true);
}

int long_multiply(const LongNumber& a, const LongNumber& b, LongNumber& result) {
    Scaled x, y;
    to_scaled(a, x);
    to_scaled(b, y);
    mpz_mul(x.v, x.v, y.v);
    from_scaled(x.v, x.scale + y.scale, result, 1);
    return 0;
}

int long_divide(LongNumber& dividend, LongNumber& divisor, LongNumber& quotient) {
    Scaled x, y;
    to_scaled(dividend, x);
    to_scaled(divisor, y);
    if (mpz_sgn(y.v) == 0) return report_error(err_long_divide_by_zero);
    if (long_state.mode.integer_mode) {
        integer_part(x);
        integer_part(y);
        const long scale = x.scale < y.scale ? x.scale : y.scale;
        rescale(x, scale);
        rescale(y, scale);
        mpz_t q, r;
        mpz_init(q);
        mpz_init(r);
        mpz_tdiv_qr(q, r, x.v, y.v);
        from_scaled(q, 0, quotient, 1);
        from_scaled(r, scale, long_state.remainder, 0);
        mpz_clear(q);
        mpz_clear(r);
        return 0;
    }
    const long k = long_state.mode.precision + 10 + static_cast<long>(mpz_sizeinbase(y.v, 10));
    mpz_t p;
    mpz_init(p);
    mpz_ui_pow_ui(p, 10, static_cast<unsigned long>(k));
    mpz_mul(x.v, x.v, p);
    mpz_tdiv_q(x.v, x.v, y.v);
    mpz_clear(p);
    from_scaled(x.v, x.scale - y.scale - k, quotient, 1);
    return 0;
}

int long_mod(const LongNumber& a, const LongNumber& b, LongNumber& result) {
    Scaled x, y;
    to_scaled(a, x);
    to_scaled(b, y);
    if (mpz_sgn(y.v) == 0) return report_error(err_long_divide_by_zero);
    const long scale = x.scale < y.scale ? x.scale : y.scale;
    rescale(x, scale);
    rescale(y, scale);
    mpz_tdiv_r(x.v, x.v, y.v);  // a - trunc(a / b) * b: the sign of the dividend
    from_scaled(x.v, scale, result, 0);
    return 0;
}

int long_compare(const LongNumber& a, const LongNumber& b) {
    Scaled x, y;
    to_scaled(a, x);
    to_scaled(b, y);
    const long scale = x.scale < y.scale ? x.scale : y.scale;
    rescale(x, scale);
    rescale(y, scale);
    const int c = mpz_cmp(x.v, y.v);
    return c < 0 ? -1 : (c > 0 ? 1 : 0);
}

void long_debug_dump(const char* label, const LongNumber& n, int) {
    if (!long_state.mode.debug_display) return;
    console_print("\n%-4s: blks=%4d sign= %+2d len=%4d exp=%4d, norm=%d ", label, n.blks, n.sgn, n.len, n.exp,
                  static_cast<int>(n.nrm));
    for (int i = 0; i < n.blks; ++i) console_print("%08u ", n.blocks[static_cast<std::size_t>(i)]);
    console_print("\n");
}

}  // namespace tl
