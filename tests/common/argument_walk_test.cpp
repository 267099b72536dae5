// The command line walked as every program takes it.
#include "common/argument_walk.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace pelkrin {
namespace {

TEST(ArgumentWalk, OptionsAndNamesInAnyOrderAValueTakenAfterItsOption) {
    const std::vector<std::string> args = {"a.ace", "-o", "out", "-", "--threads", "2", "b.sff", "-x"};
    argument_walk walk(args);
    std::string option;
    std::string value;
    ASSERT_TRUE(walk.next_option(option));
    EXPECT_EQ(option, "-o");
    ASSERT_TRUE(walk.next_value(value));
    EXPECT_EQ(value, "out");
    ASSERT_TRUE(walk.next_option(option));
    EXPECT_EQ(option, "--threads");
    ASSERT_TRUE(walk.next_value(value));
    EXPECT_EQ(value, "2");
    ASSERT_TRUE(walk.next_option(option));
    EXPECT_EQ(option, "-x");
    EXPECT_FALSE(walk.next_value(value)) << "nothing is left for a value";
    EXPECT_FALSE(walk.next_option(option));
    EXPECT_EQ(walk.names(), (std::vector<std::string>{"a.ace", "-", "b.sff"}));
}

TEST(ArgumentWalk, EverythingAfterTwoDashesIsAName) {
    const std::vector<std::string> args = {"-p", "--", "-m", "--help"};
    argument_walk walk(args);
    std::string option;
    ASSERT_TRUE(walk.next_option(option));
    EXPECT_EQ(option, "-p");
    EXPECT_FALSE(walk.next_option(option));
    EXPECT_EQ(walk.names(), (std::vector<std::string>{"-m", "--help"}));
}

}  // namespace
}  // namespace pelkrin
