// Reads indexed by start position, and the read-length statistics.
#include <gtest/gtest.h>

#include "view_fixture.h"

namespace pelkrin::test {
namespace {

TEST(ViewPosMap, ContigWithoutReadsChangesNothing) {
    contig c = make_contig("ACGT", {});
    c.avg_read_len = 7.5;  // kept as it is
    c.create_pos_map();
    EXPECT_TRUE(c.pos_map.empty());
    EXPECT_EQ(c.max_read_len, 0);
    EXPECT_EQ(c.min_read_len, 5000);
    EXPECT_EQ(c.avg_read_len, 7.5);
}

TEST(ViewPosMap, LengthsOf400And401And403) {
    contig c = make_contig(std::string(1000, 'A'), {plain_read("a", 1, 400), plain_read("b", 2, 401),
                                                   plain_read("c", 3, 403)});
    c.create_pos_map();
    // 1204 / 3 is 401.33..., the fraction is dropped.
    EXPECT_EQ(c.avg_read_len, 401.0);
    EXPECT_EQ(c.max_read_len, 403);
    EXPECT_EQ(c.min_read_len, 400);
}

TEST(ViewPosMap, MeanFractionIsDropped) {
    // 401.6 on average is stored as 401.0.
    contig c = make_contig(std::string(10, 'A'), {plain_read("a", 1, 400), plain_read("b", 1, 400),
                                                 plain_read("c", 1, 402), plain_read("d", 1, 403),
                                                 plain_read("e", 1, 403)});
    c.create_pos_map();
    EXPECT_EQ(c.avg_read_len, 401.0);
}

TEST(ViewPosMap, MinimumStartsFromFiveThousand) {
    contig c = make_contig("A", {plain_read("a", 1, 6000), plain_read("b", 1, 7000)});
    c.create_pos_map();
    EXPECT_EQ(c.min_read_len, 5000);
    EXPECT_EQ(c.max_read_len, 7000);
    EXPECT_EQ(c.avg_read_len, 6500.0);
}

TEST(ViewPosMap, StartsMapToNamesWithEqualStartsInNameOrder) {
    contig c = make_contig(std::string(10, 'A'), {plain_read("D", 3, 2), plain_read("A", 1, 5),
                                                 plain_read("C", 6, 3), plain_read("B", 3, 4)});
    c.create_pos_map();
    const std::vector<std::pair<const int32_t, std::string>> expected = {{1, "A"}, {3, "B"}, {3, "D"}, {6, "C"}};
    EXPECT_EQ(std::vector(c.pos_map.begin(), c.pos_map.end()), expected);
}

TEST(ViewPosMap, ReadsLeftOfTheConsensusAreIndexedToo) {
    contig c = make_contig("ACGT", {plain_read("left", -3, 5), plain_read("zero", 0, 2)});
    c.create_pos_map();
    ASSERT_EQ(c.pos_map.size(), 2u);
    EXPECT_EQ(c.pos_map.begin()->first, -3);
    EXPECT_EQ(std::next(c.pos_map.begin())->first, 0);
}

TEST(ViewPosMap, EntryNamesComeFromTheReadRecord) {
    contig c = make_contig("ACGT", {plain_read("key", 2, 2)});
    c.reads["key"].name = "own name";
    c.create_pos_map();
    ASSERT_EQ(c.pos_map.size(), 1u);
    EXPECT_EQ(c.pos_map.begin()->second, "own name");
}

TEST(ViewPosMap, SecondCallAppendsASecondCopy) {
    contig c = make_contig("ACGT", {plain_read("a", 1, 2), plain_read("b", 2, 3)});
    c.create_pos_map();
    c.create_pos_map();
    EXPECT_EQ(c.pos_map.size(), 4u);
    EXPECT_EQ(c.pos_map.count(1), 2u);
}

TEST(ViewPosMap, MeasuringReadsAloneSetsWhatThePositionMapSets) {
    const contig plan = make_contig(std::string(10, 'A'), {plain_read("a", 2, 3), plain_read("b", 1, 8)});
    contig mapped = plan;
    mapped.create_pos_map();
    contig measured = plan;
    measured.measure_reads();
    EXPECT_TRUE(measured.pos_map.empty());
    EXPECT_EQ(measured.max_read_len, mapped.max_read_len);
    EXPECT_EQ(measured.min_read_len, mapped.min_read_len);
    EXPECT_EQ(measured.avg_read_len, mapped.avg_read_len);
    EXPECT_EQ(measured.max_read_len, 8);
    EXPECT_EQ(measured.min_read_len, 3);
    EXPECT_EQ(measured.avg_read_len, 5.0);
}

}  // namespace
}  // namespace pelkrin::test
