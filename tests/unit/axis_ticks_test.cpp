// Tick positions and numbers of linear and log axes.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "graph/axis_ticks.h"

namespace tl {
namespace {

std::vector<std::string> labels(const AxisTicks& t) {
    std::vector<std::string> v;
    for (int i = 0; i < t.count; ++i) v.emplace_back(t.label[i]);
    return v;
}

TEST(AxisTicks, LinearStepsAreOneTwoOrFiveAndNumbersShareAForm) {
    AxisTicks t;
    linear_ticks(0, 10, 500, 50, t);  // room for 10 numbers
    EXPECT_EQ(labels(t), (std::vector<std::string>{"0", "1", "2", "3", "4", "5", "6", "7", "8", "9", "10"}));
    linear_ticks(-0.25, 0.75, 300, 60, t);  // 0.2 apart
    EXPECT_EQ(labels(t), (std::vector<std::string>{"\u22120.2", "0.0", "0.2", "0.4", "0.6"}));
    EXPECT_EQ(t.value[1], 0.0);  // no -5.55e-17 at zero
    linear_ticks(0.1, 0.35, 500, 50, t, 50);  // at least 0.025: 0.05
    EXPECT_EQ(labels(t).front(), "0.10");
    EXPECT_EQ(labels(t).back(), "0.35");
    linear_ticks(1e6, 5e6, 400, 100, t);
    EXPECT_EQ(labels(t), (std::vector<std::string>{"1e6", "2e6", "3e6", "4e6", "5e6"}));
    linear_ticks(1.5e7, 1.7e7, 400, 100, t);
    EXPECT_EQ(labels(t), (std::vector<std::string>{"1.50e7", "1.55e7", "1.60e7", "1.65e7", "1.70e7"}));
    linear_ticks(0, 3e-5, 300, 100, t);
    EXPECT_EQ(labels(t), (std::vector<std::string>{"0", "1e\u22125", "2e\u22125", "3e\u22125"}));
    for (int i = 1; i < t.count; ++i) EXPECT_GT(t.value[i], t.value[i - 1]);
}

TEST(AxisTicks, LinearStepComesNearestTheWishedSpacingAtAnyZoom) {
    AxisTicks t;
    // 0 .. 2.2 on a 3-inch axis at 96 pixels an inch, a number wished every
    // 0.6 inch: 0.5 apart (0.65 inch), not 1 apart (three numbers).
    linear_ticks(0, 2.2, 288, 0.6 * 96, t);
    EXPECT_EQ(labels(t), (std::vector<std::string>{"0.0", "0.5", "1.0", "1.5", "2.0"}));
    // ... unless the labels need more room.
    linear_ticks(0, 2.2, 288, 0.6 * 96, t, 0.9 * 96);
    EXPECT_EQ(labels(t), (std::vector<std::string>{"0", "1", "2"}));
    // Zooming by 1.1 at a time over six decades, the numbers stay within a
    // factor 1.6 of the wished spacing, never closer than the least, and
    // where the least pushes them apart, within the next 1-2-5 step of it.
    const double length = 600, wished = 77, least = 50;
    for (double width = 1e-3; width < 1e3; width *= 1.1) {
        const double lo = -0.37 * width;
        linear_ticks(lo, lo + width, length, wished, t, least);
        ASSERT_GE(t.count, 2) << width;
        const double apart = (t.value[1] - t.value[0]) * length / width;
        EXPECT_GE(apart, least - 1e-6) << width;
        EXPECT_LE(apart, std::max(wished * 1.6, least * 2.5)) << width;
        EXPECT_GE(apart, wished / 1.6) << width;
    }
}

TEST(AxisTicks, AShortAxisKeepsThreeNumbersWithoutCrowding) {
    AxisTicks t;
    // -0.5 .. 7.6 over 126 pixels, a number wished every 50, at least 35
    // apart: the step of 5 leaves 0 and 5 alone; 2 is 31 pixels apart.
    linear_ticks(-0.5, 7.6, 126, 50, t, 35);
    EXPECT_EQ(labels(t), (std::vector<std::string>{"0", "5"}));
    linear_ticks(-0.5, 7.6, 126, 50, t, 35, 3, 18);
    EXPECT_EQ(labels(t), (std::vector<std::string>{"0", "2", "4", "6"}));
    linear_ticks(-9.6, 86.6, 100, 50, t, 35, 3, 18);
    EXPECT_EQ(labels(t), (std::vector<std::string>{"0", "20", "40", "60", "80"}));
    // Where the step of 2 would crowd, 2.5 serves, with a digit more.
    linear_ticks(-3, 9.6, 100, 50, t, 35, 3, 18);
    EXPECT_EQ(labels(t), (std::vector<std::string>{"\u22122.5", "0.0", "2.5", "5.0", "7.5"}));
    linear_ticks(-0.3, 0.96, 100, 50, t, 35, 3, 18);
    EXPECT_EQ(labels(t), (std::vector<std::string>{"\u22120.25", "0.00", "0.25", "0.50", "0.75"}));
    linear_ticks(-3e6, 9.6e6, 100, 50, t, 35, 3, 18);
    EXPECT_EQ(labels(t), (std::vector<std::string>{"\u22122.5e6", "0", "2.5e6", "5.0e6", "7.5e6"}));
    // Too short for three: as many as keep their distance.
    linear_ticks(-0.0488, 0.1988, 86, 50, t, 35, 3, 18);
    EXPECT_EQ(labels(t), (std::vector<std::string>{"0.0", "0.1"}));

    // Over random ranges from 1.1 inches (at 100 pixels an inch) there are
    // always three numbers at least 18 pixels apart; where the usual step
    // gives three already, nothing changes.
    std::mt19937_64 rng(7);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    for (int i = 0; i < 20000; ++i) {
        const double length = 110 + 90 * unit(rng);
        const double width = std::pow(10.0, 12 * unit(rng) - 6);
        const double lo = (2 * unit(rng) - 1) * 3 * width;
        AxisTicks usual;
        linear_ticks(lo, lo + width, length, 50, usual, 35);
        linear_ticks(lo, lo + width, length, 50, t, 35, 3, 18);
        ASSERT_GE(t.count, 3) << lo << " .. " << lo + width << " over " << length;
        EXPECT_GE((t.value[1] - t.value[0]) * length / width, 18 - 1e-6) << lo << " .. " << lo + width;
        if (usual.count >= 3) {
            ASSERT_EQ(labels(t), labels(usual)) << lo << " .. " << lo + width;
        }
    }
}

TEST(AxisTicks, DegenerateRangesGiveNoTicks) {
    AxisTicks t;
    linear_ticks(1, 1, 100, 10, t);
    EXPECT_EQ(t.count, 0);
    linear_ticks(0, 1, 0, 10, t);
    EXPECT_EQ(t.count, 0);
    linear_ticks(1e20, 1e20 + 1e5, 500, 50, t);  // steps below what doubles resolve there
    EXPECT_EQ(t.count, 0);
    linear_ticks(-1.7e308, 1.7e308, 500, 50, t);  // the width overflows
    EXPECT_EQ(t.count, 0);
    linear_ticks(0, NAN, 500, 50, t);
    EXPECT_EQ(t.count, 0);
}

TEST(AxisTicks, LogDecadesWithMinorTicks) {
    AxisTicks t;
    log_ticks(0, 3, 600, 40, t);  // 1 .. 1000, 200 pixels a decade
    EXPECT_EQ(labels(t), (std::vector<std::string>{"1", "10", "100", "1000"}));
    EXPECT_FALSE(t.power_labels);
    EXPECT_EQ(t.minor_count, 8 * 3);
    EXPECT_DOUBLE_EQ(t.minor[0], std::log10(2.0));
    log_ticks(-2, 0, 400, 40, t);
    EXPECT_EQ(labels(t), (std::vector<std::string>{"0.01", "0.1", "1"}));
    log_ticks(-12, 12, 480, 40, t);  // 20 pixels a decade: every 2nd decade, as powers
    EXPECT_TRUE(t.power_labels);
    EXPECT_EQ(labels(t).front(), "\u221212");
    EXPECT_EQ(t.value[1] - t.value[0], 2.0);
    EXPECT_EQ(t.minor_count, 0);
    log_ticks(-0.2, 20, 200, 40, t);  // the first power is 10 to the 0, not minus 0
    EXPECT_TRUE(t.power_labels);
    EXPECT_EQ(labels(t).front(), "0");
    log_ticks(std::log10(2.0), std::log10(8.0), 400, 50, t);  // under a decade: linear numbers
    EXPECT_EQ(labels(t), (std::vector<std::string>{"2", "4", "6", "8"}));
    EXPECT_DOUBLE_EQ(t.value[0], std::log10(2.0));
}

}  // namespace
}  // namespace tl

// Datetime axes read the zone in force, so they run in an interpreter set to UTC.
#include "graph_test_support.h"
#include "lang/civil_calendar.h"

namespace tl::test {
namespace {

class DatetimeTicks : public GraphTest {
protected:
    void SetUp() override {
        GraphTest::SetUp();
        ASSERT_EQ(type("settimezone \"UTC\""), 0) << fe.output;
    }
    static double at(int y, int m, int d, int hh = 0, int mm = 0, double ss = 0) {
        return static_cast<double>(days_from_civil(y, m, d)) * 86400 + hh * 3600 + mm * 60 + ss;
    }
};

TEST_F(DatetimeTicks, CalendarStepsFromSecondsToYears) {
    AxisTicks t;
    datetime_ticks(at(2026, 11, 24, 9, 0, 3), at(2026, 11, 24, 9, 0, 12), 500, 100, t);  // 2 s apart
    EXPECT_EQ(labels(t).front(), "09:00:04\n2026-11-24");  // the date under the first time only
    EXPECT_EQ(labels(t)[1], "09:00:06");
    EXPECT_EQ(t.value[1] - t.value[0], 2.0);
    datetime_ticks(at(2026, 11, 24, 9, 7), at(2026, 11, 24, 11, 0), 400, 100, t);  // 30 min apart
    EXPECT_EQ(labels(t), (std::vector<std::string>{"09:30\n2026-11-24", "10:00", "10:30", "11:00"}));
    datetime_ticks(at(2026, 12, 31, 16), at(2027, 1, 1, 9), 400, 100, t);  // 6 hours apart, over the new year
    EXPECT_EQ(labels(t), (std::vector<std::string>{"18:00\n2026-12-31", "00:00\n2027-01-01", "06:00"}));
    datetime_ticks(at(2026, 11, 20, 5), at(2026, 12, 20), 600, 100, t);  // weeks, on Mondays
    EXPECT_EQ(labels(t).front(), "2026-11-23");
    EXPECT_EQ(weekday_from_days(static_cast<std::int64_t>(t.value[0] / 86400)), 1);
    EXPECT_EQ(t.value[1] - t.value[0], 7 * 86400.0);
    datetime_ticks(at(2025, 12, 15), at(2026, 12, 15), 600, 100, t);  // months, of their own lengths
    EXPECT_EQ(labels(t).front(), "2026-01");
    EXPECT_EQ(labels(t)[1], "2026-03");
    EXPECT_EQ(t.value[1] - t.value[0], 59 * 86400.0);
    datetime_ticks(at(1900, 6, 1), at(2030, 1, 1), 600, 80, t);  // years
    EXPECT_EQ(labels(t), (std::vector<std::string>{"1920", "1940", "1960", "1980", "2000", "2020"}));
    datetime_ticks(0.25, 1.5, 500, 100, t);  // under a second: the time with decimals
    EXPECT_EQ(labels(t).front(), "00:00:00.5\n1970-01-01");
    datetime_ticks(-1e18, 1e18, 500, 100, t);  // past the dates: plain numbers
    EXPECT_GT(t.count, 0);
    EXPECT_EQ(labels(t).front().find('-'), std::string::npos);
}

TEST_F(DatetimeTicks, TicksFollowTheLocalClock) {
    ASSERT_EQ(type("settimezone \"Asia/Kolkata\""), 0) << fe.output;  // UTC+5:30
    AxisTicks t;
    datetime_ticks(at(2026, 1, 1, 0, 0), at(2026, 1, 1, 12, 0), 400, 100, t);  // 3-hour steps
    ASSERT_GT(t.count, 1);
    EXPECT_EQ(std::string(t.label[0]), "06:00\n2026-01-01");
    EXPECT_EQ(t.value[0], at(2026, 1, 1, 0, 30));
}

}  // namespace
}  // namespace tl::test
