// long_reference.h — exact reference values (GMP rationals) for the long-number tests.
#pragma once

#include <gmp.h>

#include <cstdint>
#include <ostream>
#include <random>
#include <string>

#include "longmath/long_convert.h"
#include "longmath/long_number.h"

namespace tl::test {

/// An exact rational with value semantics.
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

    mpq_ptr get() { return q_; }
    mpq_srcptr get() const { return q_; }

    friend Rational operator+(const Rational& a, const Rational& b) { return op(mpq_add, a, b); }
    friend Rational operator-(const Rational& a, const Rational& b) { return op(mpq_sub, a, b); }
    friend Rational operator*(const Rational& a, const Rational& b) { return op(mpq_mul, a, b); }
    friend Rational operator/(const Rational& a, const Rational& b) { return op(mpq_div, a, b); }
    friend bool operator==(const Rational& a, const Rational& b) { return mpq_equal(a.q_, b.q_) != 0; }
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

/// Shown by GoogleTest in failure messages.
inline void PrintTo(const Rational& r, std::ostream* os) { *os << r.str(); }

/// 10^k for any integer k.
Rational pow10q(long k);

/// The exact value a long-number record holds (blocks, len ignored).
Rational value_of(const LongNumber& n);

/// The exact value of a decimal text "[-]ddd[.ddd][e[+-]ddd]".
Rational decimal_value(const std::string& text);

/// Smallest e with |x| < 10^e (x non-zero).
long decimal_magnitude(const Rational& x);

/// `x` truncated toward zero to a multiple of 10^unit_exp.
Rational trunc_to(const Rational& x, long unit_exp);

/// Truncation toward zero to an integer.
Rational trunc_int(const Rational& x);

/// `x` rounded to `digits` significant digits: halves away from zero when
/// `round`, else truncated toward zero. With `half_even`, ties go to even.
Rational round_sig(const Rational& x, int digits, bool round, bool half_even = false);

/// The plain text of a long number (a large buffer).
std::string text_of(const LongNumber& n);

/// A long number parsed from `text` under the current mode (asserts success).
LongNumber make_long(const std::string& text);

/// A random number text: 1..max_digits significant digits, random sign,
/// point position and exponent in [-max_exp, max_exp].
std::string random_number_text(std::mt19937_64& rng, int max_digits, int max_exp);

/// A random integer text with 1..max_digits digits and a random sign.
std::string random_integer_text(std::mt19937_64& rng, int max_digits);

}  // namespace tl::test
