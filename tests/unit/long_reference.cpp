// long_reference.cpp — exact reference values for the long-number tests.
#include "long_reference.h"

#include <gtest/gtest.h>

#include <vector>

namespace tl::test {
namespace {

struct Integer {
    mpz_t z;
    Integer() { mpz_init(z); }
    ~Integer() { mpz_clear(z); }
    Integer(const Integer&) = delete;
    Integer& operator=(const Integer&) = delete;
};

Rational from_integer(const Integer& i) {
    Rational r;
    mpq_set_z(r.get(), i.z);
    return r;
}

}  // namespace

long decimal_magnitude(const Rational& x) {
    const Rational a = x.abs();
    long e = static_cast<long>(mpz_sizeinbase(mpq_numref(a.get()), 10)) -
             static_cast<long>(mpz_sizeinbase(mpq_denref(a.get()), 10));
    while (pow10q(e) <= a) ++e;
    while (a < pow10q(e - 1)) --e;
    return e;
}

Rational trunc_to(const Rational& x, long unit_exp) { return trunc_int(x * pow10q(-unit_exp)) * pow10q(unit_exp); }

Rational pow10q(long k) {
    Integer p;
    mpz_ui_pow_ui(p.z, 10, static_cast<unsigned long>(k < 0 ? -k : k));
    Rational r = from_integer(p);
    if (k < 0) mpq_inv(r.get(), r.get());
    return r;
}

Rational value_of(const LongNumber& n) {
    Integer m;
    for (int i = 0; i < n.blks; ++i) {
        mpz_mul_ui(m.z, m.z, 100000000u);
        mpz_add_ui(m.z, m.z, n.blocks[static_cast<std::size_t>(i)]);
    }
    if (n.sgn == -1) mpz_neg(m.z, m.z);
    return from_integer(m) * pow10q(static_cast<long>(n.exp) - 8L * n.blks);
}

Rational decimal_value(const std::string& text) {
    std::size_t i = 0;
    bool negative = false;
    if (i < text.size() && (text[i] == '-' || text[i] == '+')) negative = text[i++] == '-';
    std::string digits;
    long fraction = 0;
    bool point = false;
    for (; i < text.size() && text[i] != 'e' && text[i] != 'E'; ++i) {
        if (text[i] == '.') {
            point = true;
        } else {
            digits += text[i];
            if (point) ++fraction;
        }
    }
    long exponent = 0;
    if (i < text.size()) exponent = std::stol(text.substr(i + 1));
    Integer m;
    if (!digits.empty()) mpz_set_str(m.z, digits.c_str(), 10);
    if (negative) mpz_neg(m.z, m.z);
    return from_integer(m) * pow10q(exponent - fraction);
}

Rational trunc_int(const Rational& x) {
    Integer q;
    mpz_tdiv_q(q.z, mpq_numref(x.get()), mpq_denref(x.get()));
    return from_integer(q);
}

Rational round_sig(const Rational& x, int digits, bool round, bool half_even) {
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
    return from_integer(n) * pow10q(e - digits);
}

std::string text_of(const LongNumber& n) {
    std::vector<char> buffer(static_cast<std::size_t>(n.len) + 64 + (n.exp < 0 ? -n.exp : n.exp));
    const int length = long_to_string(n, buffer.data(), buffer.size(), false);
    EXPECT_GE(length, 0);
    return length < 0 ? std::string() : std::string(buffer.data(), static_cast<std::size_t>(length));
}

LongNumber make_long(const std::string& text) {
    LongNumber n;
    EXPECT_EQ(long_from_text(text, n, false), 0) << text;
    return n;
}

std::string random_number_text(std::mt19937_64& rng, int max_digits, int max_exp) {
    const int count = static_cast<int>(rng() % static_cast<unsigned>(max_digits)) + 1;
    std::string digits(static_cast<std::size_t>(count), '0');
    for (char& c : digits) c = static_cast<char>('0' + rng() % 10);
    digits[0] = static_cast<char>('1' + rng() % 9);
    // Some long runs of zeros and nines, where carries and cuts happen.
    if (count > 4 && rng() % 4 == 0) {
        const std::size_t from = 1 + rng() % static_cast<unsigned>(count - 1);
        const char fill = rng() % 2 == 0 ? '0' : '9';
        for (std::size_t i = from; i < digits.size() && i < from + rng() % 40; ++i) digits[i] = fill;
    }
    std::string text = rng() % 2 == 0 ? "-" : "";
    const std::size_t point = rng() % (digits.size() + 1);
    text += digits.substr(0, point) + "." + digits.substr(point);
    const long exponent = static_cast<long>(rng() % (2 * static_cast<unsigned>(max_exp) + 1)) - max_exp;
    if (exponent != 0) text += "e" + std::to_string(exponent);
    return text;
}

std::string random_integer_text(std::mt19937_64& rng, int max_digits) {
    const int count = static_cast<int>(rng() % static_cast<unsigned>(max_digits)) + 1;
    std::string text = rng() % 2 == 0 ? "-" : "";
    text += static_cast<char>('1' + rng() % 9);
    for (int i = 1; i < count; ++i) text += static_cast<char>('0' + rng() % 10);
    return text;
}

}  // namespace tl::test
