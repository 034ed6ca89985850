// Tests of the number formatter: C conversions against the C library,
// engineering notation, pictures, and formats that must be refused.
#include "exec/number_format.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <limits>
#include <string>

namespace tl::test {
namespace {

constexpr double inf = std::numeric_limits<double>::infinity();

std::string formatted(const char* format, double x) {
    char out[number_text_size];
    const int n = format_number(format, x, out, sizeof out);
    EXPECT_EQ(n, static_cast<int>(std::strlen(out))) << format;
    return out;
}

TEST(NumberFormat, ConversionsMatchTheCLibrary) {
    const char* formats[] = {"%13.6g", "%22.16g", "%23.18g", "%.0f",   "%-12.3e", "%+E",    "% 010.4f",
                             "%#g",    "%.3A",    "%lf",     "%255.2f", "%8.2f%% off", "%%%e%%", "%0-8.1e"};
    const double values[] = {0.0, -0.0, 1.0, 2.0 / 3.0, -1234.5678, 4.9e-324, 123456789012345678.0,
                             1.7976931348623157e308, -2.5e-7, 999999.5, inf, -inf,
                             std::numeric_limits<double>::quiet_NaN()};
    for (const char* format : formats) {
        for (double x : values) {
            char expected[512];
            std::snprintf(expected, sizeof expected, format, x);
            expected[number_text_size - 1] = 0;  // cut at the formatter's buffer
            EXPECT_EQ(formatted(format, x), expected) << format << " " << x;
        }
    }
    char small[8];
    EXPECT_EQ(format_number("%20.3f", 1.5, small, sizeof small), 7);
}

TEST(NumberFormat, UnsafeConversionsAreRefused) {
    for (const char* format : {"%d", "%s", "%n", "%p", "%c", "%*f", "%.*f", "%1$f", "%Lf", "%hf", "%f%f", "%e %g",
                               "%", "%%", "%5", "%%d", "%1000f", "%.256f", "%0256f", "%f%", "%'f", "%lld", "%.f%s"}) {
        EXPECT_FALSE(is_valid_c_number_format(format)) << format;
        char out[number_text_size] = "untouched";
        EXPECT_EQ(format_number(format, 1.0, out, sizeof out), -73) << format;
        EXPECT_STREQ(out, "") << format;
    }
    for (const char* format : {"%%%f", "%255.255f", "%.f", "%-+ #0gb"})
        EXPECT_TRUE(is_valid_c_number_format(format)) << format;
}

struct Case {
    const char* format;
    double x;
    const char* text;
};

TEST(NumberFormat, EngineeringNotation) {
    const Case cases[] = {
        {"engV", 1.234e-12, "   1.23 p-V   "}, {"engV", -45.6e-12, " -45.6 p-V   "}, {"engV", 789e-12, " 789. p-V   "},
        {"engV", 1e-9, "   1.00 n-V   "},      {"engV", 470e-6, " 470. \xC2\xB5-V   "}, {"engV", 1e-3, "   1.00 m-V   "},
        {"engV", 0.0, "   0.00   V   "},       {"engV", 12.0, "  12.0   V   "},   {"engV", -999.6, "  -1.00 K-V   "},
        {"engV", 33e6, "  33.0 M-V   "},       {"engV", 1.5e9, "   1.50 G-V   "}, {"engV", 999e12, " 999. T-V   "},
        {"eng", 1500.0, "   1.50 K-   "},      {"ENGohm", 1500.0, "   1.50 K-ohm"},
        {"engabcdefghijklm", 1500.0, "   1.50 K-abcdefghij"},  // unit cut at ten characters
        {"engHz", 1e15, " 1.00e+15Hz   "},     {"engHz", 9.99e-13, " 9.99e-13Hz   "},
        {"engHz", -9.996e-13, "  -1.00 p-Hz   "},  // rounds into the range
        {"engHz", 999.6e12, " 1.00e+15Hz   "},     // rounds out of it
        {"engHz", inf, " infHz   "},
    };
    for (const Case& c : cases) EXPECT_EQ(formatted(c.format, c.x), c.text) << c.format << " " << c.x;
}

TEST(NumberFormat, PlainPicturesMatchFixedConversion) {
    const double values[] = {0.0, 1.0, -1.0, 0.25, 3.14159, -27.5, 1234.5678, 99.995, -0.004, 7e9};
    for (const char* picture : {"#", "####", "#.#", "#####.##", "##########.####", ".###"}) {
        const int width = static_cast<int>(std::strlen(picture));
        const char* point = std::strchr(picture, '.');
        const int decimals = point ? static_cast<int>(std::strlen(point + 1)) : 0;
        for (double x : values) {
            char expected[64];
            if (std::snprintf(expected, sizeof expected, "%*.*f", width, decimals, x) > width) continue;
            EXPECT_EQ(formatted(picture, x), expected) << picture << " " << x;
        }
    }
}

TEST(NumberFormat, PicturesWithSeparatorsSignsAndHundredths) {
    const Case cases[] = {
        {"##,###.##", 1234.5, " 1,234.50"}, {"##,###.##", 34.5, "    34.50"}, {"##,###.##", -1234.5, "-1,234.50"},
        {"##,###.##", -123.5, "  -123.50"},  // the sign takes the unused separator
        {"$###.##", 5.0, "   5.00"},       {"$###.##", 1005.0, "*******"},  // "$" is no digit position
        {"###.", 12.0, " 12."},            {"+##.##", 1.5, " +1.50"},      {"+##.##", -1.5, " -1.50"},
        {"+##.##", 12.25, "+12.25"},       {"+#", 0.0, "+0"},              {"+#", 10.0, "**"},
        {"##.##", 123.0, "*****"},         {"##.##", -12.5, "*****"},       // no room for the sign
        {"###", 1.7976931348623157e308, "***"}, {"", 5.0, ""},
        {"#####", inf, "  inf"},           {"##", -inf, "**"},
        {"####.cc", 12345.0, " 123.45"},   {"####.cc", 5.0, "   0.05"},     {"####.cc", -120.0, "  -1.20"},
        {"####.cc", 99.5, "   1.00"},      {"#,###.cc", 123456.0, "1,234.56"}, {"+##.cc", 250.0, " +2.50"},
        {"##.cc", 123456.0, "*****"},
    };
    for (const Case& c : cases) EXPECT_EQ(formatted(c.format, c.x), c.text) << c.format << " " << c.x;
}

}  // namespace
}  // namespace tl::test
