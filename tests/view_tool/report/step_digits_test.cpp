// Flow indexes written one digit a step.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "view_tool/report/step_digits.h"

namespace pelkrin::test {
namespace {

// The digits, or "no" when a step is not one.
std::string digits(const std::vector<std::int32_t>& values) {
    std::string out(values.size(), '?');
    return step_digits(values.data(), values.size(), out.data()) ? out : "no";
}

TEST(StepDigits, WritesEachStepFromTheValueBefore) {
    EXPECT_EQ(digits({}), "");
    EXPECT_EQ(digits({0, 0, 1, 4, 4, 13}), "001309");
    EXPECT_EQ(digits({9}), "9");
    EXPECT_EQ(digits(std::vector<std::int32_t>(40, 3)), "3" + std::string(39, '0'));
}

TEST(StepDigits, RefusesAStepThatIsNotADigit) {
    EXPECT_EQ(digits({10}), "no");
    EXPECT_EQ(digits({-1}), "no");
    EXPECT_EQ(digits({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 20, 21, 22, 23, 24, 25, 26}), "no");
    EXPECT_EQ(digits({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 15}), "no");
    EXPECT_EQ(digits({5, 5, 5, 5, 5, 5, 5, 5, 5, 5, 5, 5, 5, 5, 5, 5, 5, 5, 5, 5, 5, 5, 5, 5, 5, 5, 5, 5, 4}), "no");
}

}  // namespace
}  // namespace pelkrin::test
