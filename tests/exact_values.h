// exact_values.h — exact rational values (GMP) to check long-number results
// against; shared by the unit tests and the long-number fuzzer.
#pragma once

#include <gmp.h>

#include <cstddef>
#include <string>
#include <string_view>

#include "longmath/long_number.h"

namespace tl::exact {

class Rational {
public:
    Rational() { mpq_init(q_); }
    Rational(long n) : Rational() { mpq_set_si(q_, n, 1); }
    Rational(const Rational& o) : Rational() { mpq_set(q_, o.q_); }
    Rational& operator=(const Rational& o) {
        mpq_set(q_, o.q_);
        return *this;
    }
    ~Rational() { mpq_clear(q_); }
    static Rational from_long(long n) { return Rational(n); }
    static Rational from_integer(mpz_srcptr z) {
        Rational r;
        mpq_set_z(r.q_, z);
        return r;
    }

    mpq_ptr get() { return q_; }
    mpq_srcptr get() const { return q_; }

    friend Rational operator+(const Rational& a, const Rational& b) { return op(mpq_add, a, b); }
    friend Rational operator-(const Rational& a, const Rational& b) { return op(mpq_sub, a, b); }
    friend Rational operator*(const Rational& a, const Rational& b) { return op(mpq_mul, a, b); }
    friend Rational operator/(const Rational& a, const Rational& b) { return op(mpq_div, a, b); }
    friend bool operator==(const Rational& a, const Rational& b) { return mpq_equal(a.q_, b.q_) != 0; }
    friend bool operator!=(const Rational& a, const Rational& b) { return !(a == b); }
    friend bool operator<(const Rational& a, const Rational& b) { return mpq_cmp(a.q_, b.q_) < 0; }
    friend bool operator<=(const Rational& a, const Rational& b) { return mpq_cmp(a.q_, b.q_) <= 0; }
    int sign() const { return mpq_sgn(q_); }
    Rational abs() const {
        Rational r;
        mpq_abs(r.q_, q_);
        return r;
    }
    std::string str() const {
        char* s = mpq_get_str(nullptr, 10, q_);
        std::string out(s);
        void (*free_fn)(void*, std::size_t);
        mp_get_memory_functions(nullptr, nullptr, &free_fn);
        free_fn(s, out.size() + 1);
        return out;
    }

private:
    using Op = void (*)(mpq_ptr, mpq_srcptr, mpq_srcptr);
    static Rational op(Op f, const Rational& a, const Rational& b) {
        Rational r;
        f(r.q_, a.q_, b.q_);
        return r;
    }
    mpq_t q_;
};

/// An mpz_t with automatic clearing.
struct Integer {
    mpz_t z;
    Integer() { mpz_init(z); }
    ~Integer() { mpz_clear(z); }
    Integer(const Integer&) = delete;
    Integer& operator=(const Integer&) = delete;
};

/// 10^k for any integer k.
inline Rational pow10q(long k) {
    Integer p;
    mpz_ui_pow_ui(p.z, 10, static_cast<unsigned long>(k < 0 ? -k : k));
    Rational r = Rational::from_integer(p.z);
    if (k < 0) mpq_inv(r.get(), r.get());
    return r;
}

/// Smallest e with |x| < 10^e (x non-zero).
inline long decimal_magnitude(const Rational& x) {
    const Rational a = x.abs();
    long e = static_cast<long>(mpz_sizeinbase(mpq_numref(a.get()), 10)) -
             static_cast<long>(mpz_sizeinbase(mpq_denref(a.get()), 10));
    while (pow10q(e) <= a) ++e;
    while (a < pow10q(e - 1)) --e;
    return e;
}

/// Truncation toward zero to an integer.
inline Rational trunc_int(const Rational& x) {
    Integer q;
    mpz_tdiv_q(q.z, mpq_numref(x.get()), mpq_denref(x.get()));
    return Rational::from_integer(q.z);
}

/// `x` truncated toward zero to a multiple of 10^unit_exp.
inline Rational trunc_to(const Rational& x, long unit_exp) {
    return trunc_int(x * pow10q(-unit_exp)) * pow10q(unit_exp);
}

/// `x` to `digits` significant digits: halves away from zero when `round`
/// (ties to even with `half_even`), else truncated toward zero.
inline Rational round_sig(const Rational& x, int digits, bool round, bool half_even = false) {
    if (x.sign() == 0) return x;
    const long e = decimal_magnitude(x);
    const Rational scaled = x.abs() * pow10q(digits - e);
    Integer n;
    Integer rest;
    mpz_fdiv_qr(n.z, rest.z, mpq_numref(scaled.get()), mpq_denref(scaled.get()));
    if (round) {
        // Compare twice the remainder with the denominator.
        mpz_mul_2exp(rest.z, rest.z, 1);
        const int c = mpz_cmp(rest.z, mpq_denref(scaled.get()));
        if (c > 0 || (c == 0 && (!half_even || mpz_odd_p(n.z)))) mpz_add_ui(n.z, n.z, 1);
    }
    if (x.sign() < 0) mpz_neg(n.z, n.z);
    return Rational::from_integer(n.z) * pow10q(e - digits);
}

/// The exact value a long-number record holds (blocks, len ignored).
inline Rational value_of(const LongNumber& n) {
    Integer m;
    for (int i = 0; i < n.blks; ++i) {
        mpz_mul_ui(m.z, m.z, long_base);
        mpz_add_ui(m.z, m.z, n.blocks[static_cast<std::size_t>(i)]);
    }
    if (n.sgn == -1) mpz_neg(m.z, m.z);
    return Rational::from_integer(m.z) * pow10q(static_cast<long>(n.exp) - 8L * n.blks);
}

/// The value of a number text "[blanks][+|-]digits[.digits][(e|E)[+|-]digits]",
/// read independently of the interpreter; false for any other text. With an
/// exponent beyond +-`max_exponent` the text is only checked, `out` is left alone
/// and `huge` set.
inline bool decimal_value(std::string_view text, Rational& out, bool& huge, long max_exponent = 20000) {
    std::size_t i = 0;
    while (i < text.size() && text[i] == ' ') ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == '-' || text[i] == '+')) negative = text[i++] == '-';
    std::string digits;
    long fraction = 0;
    bool point = false;
    for (; i < text.size() && text[i] != 'e' && text[i] != 'E'; ++i) {
        if (text[i] == '.' && !point) {
            point = true;
        } else if (text[i] >= '0' && text[i] <= '9') {
            digits += text[i];
            if (point) ++fraction;
        } else {
            return false;
        }
    }
    if (digits.empty()) return false;
    long exponent = 0;
    if (i < text.size()) {
        ++i;
        bool negative_exponent = false;
        if (i < text.size() && (text[i] == '-' || text[i] == '+')) negative_exponent = text[i++] == '-';
        if (i >= text.size()) return false;  // "1e" and "1e+" are no numbers
        for (; i < text.size(); ++i) {
            if (text[i] < '0' || text[i] > '9') return false;
            exponent = exponent * 10 + (text[i] - '0');
            if (exponent > 1000000) return false;
        }
        if (negative_exponent) exponent = -exponent;
    }
    huge = exponent > max_exponent || exponent < -max_exponent;
    if (huge) return true;
    Integer m;
    mpz_set_str(m.z, digits.c_str(), 10);
    if (negative) mpz_neg(m.z, m.z);
    out = Rational::from_integer(m.z) * pow10q(exponent - fraction);
    return true;
}

}  // namespace tl::exact
