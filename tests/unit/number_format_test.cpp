// Tests of the number formatter: C conversions against the C library,
// engineering notation for every prefix, pictures, and rejected formats.
#include "exec/number_format.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <string>

namespace tl::test {
namespace {

std::string formatted(const char* format, double x) {
    char out[number_text_size];
    const int n = format_number(format, x, out, sizeof out);
    EXPECT_GE(n, 0) << format;
    EXPECT_EQ(static_cast<std::size_t>(n < 0 ? 0 : n), std::strlen(out));
    return out;
}

const double sample_values[] = {0.0,
                                -0.0,
                                1.0,
                                -1.0,
                                0.5,
                                2.0 / 3.0,
                                -1234.5678,
                                1e-300,
                                4.9e-324,
                                123456789012345678.0,
                                1.7976931348623157e308,
                                -2.5e-7,
                                999999.5,
                                0.000123456,
                                std::numeric_limits<double>::infinity(),
                                -std::numeric_limits<double>::infinity(),
                                std::numeric_limits<double>::quiet_NaN()};

TEST(NumberFormat, ConversionsMatchTheCLibrary) {
    const char* formats[] = {"%13.6g", "%22.16g", "%23.18g", "%f", "%.0f", "%-12.3e", "%+E", "% 010.4f",
                             "%#g",    "%a",      "%.3A",    "%G", "%lf",  "%255.2f", "%8.2f%% off",  "%%%e%%",
                             "%F",     "%0-8.1e"};
    for (const char* format : formats) {
        for (double x : sample_values) {
            char expected[512];
            std::snprintf(expected, sizeof expected, format, x);
            expected[number_text_size - 1] = 0;  // the formatter cuts at its buffer size
            EXPECT_EQ(formatted(format, x), expected) << format << " " << x;
        }
    }
}

TEST(NumberFormat, OutputIsCutToTheBuffer) {
    char out[8];
    EXPECT_EQ(format_number("%20.3f", 1.5, out, sizeof out), 7);
    EXPECT_STREQ(out, "       ");
    EXPECT_EQ(format_number("eng", 1.5, out, sizeof out), 7);
    EXPECT_EQ(format_number("##########", 1.5, out, sizeof out), 7);
    EXPECT_STREQ(out, "      2");  // the picture is cut to the buffer
}

TEST(NumberFormat, InvalidConversionsNeverReachTheCLibrary) {
    const char* invalid[] = {"%d",      "%s",      "%n",     "%p",    "%x",     "%c",     "%*f",     "%.*f",
                             "%1$f",    "%Lf",     "%hf",    "%zf",   "%f%f",   "%e %g",  "%",       "%g%G",
                             "%%",      "%5",      "%%d",    "%1000f", "%.256f", "%0256f", "%f%",     "%'f",
                             "%ls",     "%lld",    "%-",     "%.f%s"};
    for (const char* format : invalid) {
        EXPECT_FALSE(is_valid_c_number_format(format)) << format;
        char out[number_text_size] = "untouched";
        EXPECT_EQ(format_number(format, 1.0, out, sizeof out), -73) << format;
        EXPECT_STREQ(out, "") << format;
    }
    const char* valid[] = {"%f", "%%%f", "%f%%", "%255.255f", "%.f", "a%-+ #0gb"};
    for (const char* format : valid) EXPECT_TRUE(is_valid_c_number_format(format)) << format;
}

TEST(NumberFormat, EngineeringUsesOnePrefixPerGroupOfThree) {
    struct Case {
        double x;
        const char* text;
    };
    const Case cases[] = {
        {1.234e-12, "   1.23 p-V   "}, {-45.6e-12, " -45.6 p-V   "},  {789e-12, " 789. p-V   "},
        {1e-9, "   1.00 n-V   "},      {2.2e-6, "   2.20 \xC2\xB5-V   "}, {470e-6, " 470. \xC2\xB5-V   "},
        {1e-3, "   1.00 m-V   "},      {0.0, "   0.00   V   "},   {1.0, "   1.00   V   "},
        {12.0, "  12.0   V   "},       {999.0, " 999.   V   "},    {-999.6, "  -1.00 K-V   "},
        {4700.0, "   4.70 K-V   "},    {33e6, "  33.0 M-V   "},    {1.5e9, "   1.50 G-V   "},
        {999e12, " 999. T-V   "},
    };
    // A one-letter unit gets three blanks appended.
    for (const Case& c : cases) EXPECT_EQ(formatted("engV", c.x), c.text) << c.x;
}

TEST(NumberFormat, EngineeringUnitText) {
    EXPECT_EQ(formatted("eng", 1500.0), "   1.50 K-   ");
    EXPECT_EQ(formatted("ENGohm", 1500.0), "   1.50 K-ohm");
    EXPECT_EQ(formatted("engabcdefghijklm", 1500.0), "   1.50 K-abcdefghij");  // at most ten characters
}

TEST(NumberFormat, EngineeringOutsideThePrefixes) {
    EXPECT_EQ(formatted("engHz", 1e15), " 1.00e+15Hz   ");
    EXPECT_EQ(formatted("engHz", -9.996e-13), "  -1.00 p-Hz   ");  // rounding moves it into range
    EXPECT_EQ(formatted("engHz", 9.99e-13), " 9.99e-13Hz   ");
    EXPECT_EQ(formatted("engHz", 999.6e12), " 1.00e+15Hz   ");  // rounding moves it out of range
    EXPECT_EQ(formatted("engHz", -1e-20), "-1.00e-20Hz   ");
    EXPECT_EQ(formatted("engHz", std::numeric_limits<double>::infinity()), " infHz   ");
    EXPECT_EQ(formatted("engHz", std::numeric_limits<double>::quiet_NaN()), " nanHz   ");
}

TEST(NumberFormat, PlainPicturesMatchFixedConversion) {
    // A picture of only "#" and "." is the "%w.df" conversion when it fits.
    const char* pictures[] = {"#", "####", "#.#", "#####.##", "##########.####", "###.", ".###"};
    const double values[] = {0.0, 1.0, -1.0, 0.25, 3.14159, -27.5, 1234.5678, 99.995, -0.004, 7e9};
    for (const char* picture : pictures) {
        const int width = static_cast<int>(std::strlen(picture));
        const char* point = std::strchr(picture, '.');
        const int decimals = point ? static_cast<int>(std::strlen(point + 1)) : 0;
        for (double x : values) {
            char expected[64];
            const int n = std::snprintf(expected, sizeof expected, "%*.*f", width, decimals, x);
            if (n > width) continue;  // overflow is tested below
            if (point != nullptr && decimals == 0) continue;  // "###." keeps its point; below
            EXPECT_EQ(formatted(picture, x), expected) << picture << " " << x;
        }
    }
}

TEST(NumberFormat, PictureSeparatorsAndSigns) {
    EXPECT_EQ(formatted("##,###.##", 1234.5), " 1,234.50");
    EXPECT_EQ(formatted("##,###.##", 34.5), "    34.50");
    EXPECT_EQ(formatted("##,###.##", -1234.5), "-1,234.50");
    EXPECT_EQ(formatted("##,###.##", -123.5), "  -123.50");  // the sign takes the unused separator
    EXPECT_EQ(formatted("#,###", -234.0), " -234");
    EXPECT_EQ(formatted("$###.##", 5.0), "   5.00");
    EXPECT_EQ(formatted("$###.##", 105.0), " 105.00");  // no digit left of it
    EXPECT_EQ(formatted("$###.##", 1005.0), "*******");  // "$" is not a digit position
    EXPECT_EQ(formatted("###.", 12.0), " 12.");
    EXPECT_EQ(formatted("+##.##", 1.5), " +1.50");
    EXPECT_EQ(formatted("+##.##", -1.5), " -1.50");
    EXPECT_EQ(formatted("+##.##", 12.25), "+12.25");  // "+" is a digit position
    EXPECT_EQ(formatted("+#", 0.0), "+0");
}

TEST(NumberFormat, PictureOverflowFillsTheField) {
    EXPECT_EQ(formatted("##.##", 123.0), "*****");
    EXPECT_EQ(formatted("##.##", -12.5), "*****");  // no room for the sign
    EXPECT_EQ(formatted("#,###", 12345.0), "*****");
    EXPECT_EQ(formatted("+#", 10.0), "**");
    EXPECT_EQ(formatted("###", 1.7976931348623157e308), "***");
    EXPECT_EQ(formatted("", 5.0), "");
}

TEST(NumberFormat, PictureOfNonFiniteValues) {
    EXPECT_EQ(formatted("#####", std::numeric_limits<double>::infinity()), "  inf");
    EXPECT_EQ(formatted("##", -std::numeric_limits<double>::infinity()), "**");
}

TEST(NumberFormat, CentsPictureReadsHundredths) {
    EXPECT_EQ(formatted("####.cc", 12345.0), " 123.45");
    EXPECT_EQ(formatted("####.cc", 5.0), "   0.05");
    EXPECT_EQ(formatted("####.cc", -120.0), "  -1.20");
    EXPECT_EQ(formatted("####.cc", 99.5), "   1.00");  // rounded to whole hundredths
    EXPECT_EQ(formatted("#,###.cc", 123456.0), "1,234.56");
    EXPECT_EQ(formatted("+##.cc", 250.0), " +2.50");
    EXPECT_EQ(formatted("##.cc", 123456.0), "*****");
}

}  // namespace
}  // namespace tl::test
