// One-decimal numbers written as std::to_chars writes them.
#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <limits>
#include <random>
#include <string>

#include "view_tool/report/decimal_text.h"

namespace pelkrin::test {
namespace {

// Both behind a '<', so that the test also sees that the text is appended.
std::string by_to_chars(double v) {
    char text[400];
    return std::string("<").append(text, std::to_chars(text, text + sizeof text, v, std::chars_format::fixed, 1).ptr);
}

std::string fixed1(double v) {
    std::string out = "<";
    append_fixed1(out, v);
    return out;
}

TEST(DecimalText, WritesWhatToCharsWrites) {
    for (const double v : {0.0, -0.0, 0.04, 0.05, 0.15, 0.25, 0.35, 1.0, 9.95, 12.25, 136.0, 1059.9999999,
                           999999.95, 1e6, 2.5e7, -3.25, 1e300, std::numeric_limits<double>::infinity(),
                           std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::denorm_min()}) {
        EXPECT_EQ(fixed1(v), by_to_chars(v)) << v;
    }
}

TEST(DecimalText, WritesWhatToCharsWritesForPlotCoordinates) {
    std::mt19937_64 random(11);
    std::uniform_real_distribution<double> any(0.0, 2000.0);
    for (int n = 0; n < 100000; ++n) {
        const double v = any(random);
        ASSERT_EQ(fixed1(v), by_to_chars(v)) << v;
    }
    // Steps of a plot: a width shared out over a number of bins, and heights
    // as fractions of a largest value.
    for (int bins = 1; bins <= 1000; bins += 7) {
        const double step = 1000.0 / bins;
        for (int i = 0; i <= bins; ++i) ASSERT_EQ(fixed1(60 + step * i), by_to_chars(60 + step * i));
    }
    for (int most = 1; most <= 300; ++most) {
        for (int v = 0; v <= most; ++v) {
            const double y = 136.0 - 128.0 * v / most;
            ASSERT_EQ(fixed1(y), by_to_chars(y)) << v << "/" << most;
        }
    }
}

}  // namespace
}  // namespace pelkrin::test
