// Looking up flow indexes by position, back to earlier positions.
#include <gtest/gtest.h>

#include "view_fixture.h"

namespace pelkrin::test {
namespace {

contig with_flow_maps(std::vector<std::map<char, int32_t>> maps) {
    contig c;
    c.flow_index_map = std::move(maps);
    return c;
}

TEST(FlowIndex, StartTakesTheFirstLetterInFlowOrderEndTheLast) {
    const contig c = with_flow_maps({{}, {}, {}, {{'A', 7}, {'G', 9}}});
    EXPECT_EQ(c.getFlowIdx_start(3), 7);
    EXPECT_EQ(c.getFlowIdx_end(3), 9);
}

TEST(FlowIndex, FlowOrderIsTACGNotAlphabetical) {
    const contig c = with_flow_maps({{{'A', 2}, {'C', 3}, {'G', 4}, {'T', 1}}});
    EXPECT_EQ(c.getFlowIdx_start(0), 1);  // T first
    EXPECT_EQ(c.getFlowIdx_end(0), 4);    // G last
    const contig d = with_flow_maps({{{'A', 2}, {'C', 3}}});
    EXPECT_EQ(d.getFlowIdx_start(0), 2);
    EXPECT_EQ(d.getFlowIdx_end(0), 3);
}

TEST(FlowIndex, EmptyPositionLooksBackToTheNearestFilledOne) {
    const contig c = with_flow_maps({{{'T', 1}}, {}, {{'C', 5}}, {}});
    EXPECT_EQ(c.getFlowIdx_start(3), 5);
    EXPECT_EQ(c.getFlowIdx_end(3), 5);
    EXPECT_EQ(c.getFlowIdx_start(1), 1);
}

TEST(FlowIndex, EndOfZeroWithAnEmptyMapIsZero) {
    const contig c = with_flow_maps({{}, {{'A', 3}}});
    EXPECT_EQ(c.getFlowIdx_end(0), 0);
    EXPECT_EQ(c.getFlowIdx_start(0), 0);
}

TEST(FlowIndex, OtherLettersAreNotLookedAt) {
    const contig c = with_flow_maps({{{'G', 4}}, {{'N', 8}, {'a', 9}}});
    EXPECT_EQ(c.getFlowIdx_start(1), 4);
    EXPECT_EQ(c.getFlowIdx_end(1), 4);
}

TEST(FlowIndex, LookupInsertsNothing) {
    const contig c = with_flow_maps({{}, {{'C', 2}}});
    contig copy = c;
    (void)copy.getFlowIdx_start(1);
    (void)copy.getFlowIdx_end(1);
    (void)copy.getFlowIdx_end(0);
    EXPECT_EQ(copy.flow_index_map, c.flow_index_map);
}

TEST(FlowIndex, PositionPastTheEndWalksDownFromTheLast) {
    const contig c = with_flow_maps({{{'T', 1}}, {{'A', 2}, {'C', 3}}});
    EXPECT_EQ(c.getFlowIdx_start(2), 2);
    EXPECT_EQ(c.getFlowIdx_end(500), 3);
    EXPECT_EQ(c.getFlowIdx_start(2147483647), 2);
}

TEST(FlowIndex, NegativePositionGivesZero) {
    const contig c = with_flow_maps({{{'T', 6}}});
    EXPECT_EQ(c.getFlowIdx_start(-1), 0);
    EXPECT_EQ(c.getFlowIdx_end(-2147483647 - 1), 0);
}

TEST(FlowIndex, EmptyMapGivesZero) {
    const contig c;
    EXPECT_EQ(c.getFlowIdx_start(0), 0);
    EXPECT_EQ(c.getFlowIdx_end(10), 0);
}

}  // namespace
}  // namespace pelkrin::test
