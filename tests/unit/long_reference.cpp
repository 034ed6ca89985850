// long_reference.cpp — exact reference values for the long-number tests.
#include "long_reference.h"

#include <gtest/gtest.h>

#include <vector>

namespace tl::test {

Rational decimal_value(const std::string& text) {
    Rational value;
    bool huge = false;
    const bool read = exact::decimal_value(text, value, huge, 1000000);
    EXPECT_TRUE(read && !huge) << "not a number text: " << text;
    return value;
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
