// Packing the reads into display rows.
#include <gtest/gtest.h>

#include "view_fixture.h"

namespace pelkrin::test {
namespace {

using row = std::map<int32_t, std::string>;

TEST(PrintMap, PackingExampleGivesThreeRows) {
    contig c = make_contig(std::string(10, 'A'), {plain_read("A", 1, 5), plain_read("B", 3, 4),
                                                 plain_read("C", 6, 3), plain_read("D", 3, 2)});
    c.create_print_map();
    const std::vector<row> expected = {{{1, "A"}, {6, "C"}}, {{3, "B"}}, {{3, "D"}}};
    EXPECT_EQ(c.print_map, expected);
}

TEST(PrintMap, ContigWithoutReadsHasNoRows) {
    contig c = make_contig("ACGT", {});
    c.create_print_map();
    EXPECT_TRUE(c.print_map.empty());
    EXPECT_TRUE(c.pos_map.empty());
}

TEST(PrintMap, TwoReadsWithTheSameStartGoToTwoRows) {
    contig c = make_contig(std::string(10, 'A'), {plain_read("x", 4, 2), plain_read("y", 4, 2)});
    c.create_print_map();
    const std::vector<row> expected = {{{4, "x"}}, {{4, "y"}}};
    EXPECT_EQ(c.print_map, expected);
}

TEST(PrintMap, NextReadOfARowStartsRightAfterTheLastPosition) {
    contig c = make_contig(std::string(10, 'A'), {plain_read("a", 1, 5), plain_read("b", 6, 3)});
    c.create_print_map();
    const std::vector<row> expected = {{{1, "a"}, {6, "b"}}};
    EXPECT_EQ(c.print_map, expected);
}

TEST(PrintMap, ReadOverlappingTheLastPositionGoesToTheNextRow) {
    contig c = make_contig(std::string(10, 'A'), {plain_read("a", 1, 5), plain_read("b", 5, 3)});
    c.create_print_map();
    const std::vector<row> expected = {{{1, "a"}}, {{5, "b"}}};
    EXPECT_EQ(c.print_map, expected);
}

TEST(PrintMap, BuildsThePositionMapWhenEmpty) {
    contig c = make_contig(std::string(10, 'A'), {plain_read("a", 2, 3)});
    c.create_print_map();
    EXPECT_EQ(c.pos_map.size(), 1u);
    EXPECT_EQ(c.max_read_len, 3);
}

TEST(PrintMap, UsesAFilledPositionMapAsItIs) {
    contig c = make_contig(std::string(10, 'A'), {plain_read("a", 2, 3)});
    c.create_pos_map();
    c.create_print_map();
    EXPECT_EQ(c.pos_map.size(), 1u);
    ASSERT_EQ(c.print_map.size(), 1u);
}

TEST(PrintMap, SecondCallAppendsTheRowsAgain) {
    contig c = make_contig(std::string(10, 'A'), {plain_read("a", 1, 5), plain_read("b", 3, 2)});
    c.create_print_map();
    c.create_print_map();
    const std::vector<row> expected = {{{1, "a"}}, {{3, "b"}}, {{1, "a"}}, {{3, "b"}}};
    EXPECT_EQ(c.print_map, expected);
}

TEST(PrintMap, StopsWhenReadsStartLeftOfTheConsensus) {
    contig c = make_contig(std::string(10, 'A'), {plain_read("left", -3, 8), plain_read("zero", 0, 4),
                                                 plain_read("in", 2, 3)});
    c.create_print_map();
    // The pass after the one that placed "in" places nothing and adds no row.
    const std::vector<row> expected = {{{2, "in"}}};
    EXPECT_EQ(c.print_map, expected);
}

TEST(PrintMap, StopsWhenAReadStartsPastTheEnd) {
    contig c = make_contig(std::string(10, 'A'), {plain_read("past", 11, 3), plain_read("in", 10, 3)});
    c.create_print_map();
    const std::vector<row> expected = {{{10, "in"}}};
    EXPECT_EQ(c.print_map, expected);
}

TEST(PrintMap, ReadRunningPastTheEndIsPlaced) {
    contig c = make_contig(std::string(10, 'A'), {plain_read("long", 8, 9), plain_read("next", 9, 2)});
    c.create_print_map();
    const std::vector<row> expected = {{{8, "long"}}, {{9, "next"}}};
    EXPECT_EQ(c.print_map, expected);
}

TEST(PrintMap, StopsAtOnceWhenNoReadCanBePlaced) {
    contig c = make_contig(std::string(10, 'A'), {plain_read("left", -1, 4)});
    c.create_print_map();
    EXPECT_TRUE(c.print_map.empty());
}

TEST(PrintMap, StopsWhenTheConsensusLengthIsZero) {
    contig c = make_contig("", {plain_read("a", 1, 4)});
    c.create_print_map();
    EXPECT_TRUE(c.print_map.empty());
    c.base_num = -5;
    c.create_print_map();
    EXPECT_TRUE(c.print_map.empty());
}

TEST(PrintMap, ScansOnlyUpToBaseNum) {
    // base_num as the CO line states it, shorter than the consensus.
    contig c = make_contig(std::string(10, 'A'), {plain_read("a", 3, 2), plain_read("b", 6, 2)});
    c.base_num = 5;
    c.create_print_map();
    const std::vector<row> expected = {{{3, "a"}}};
    EXPECT_EQ(c.print_map, expected);
}

TEST(PrintMap, ZeroLengthReadIsReplacedByTheNextWithTheSameStart) {
    contig c = make_contig(std::string(10, 'A'), {plain_read("a", 4, 0), plain_read("b", 4, 2)});
    c.create_print_map();
    // The scan visits 4 again after "a" and puts "b" in the same entry.
    const std::vector<row> expected = {{{4, "b"}}};
    EXPECT_EQ(c.print_map, expected);
}

TEST(PrintMap, NegativeLengthMovesTheScanBack) {
    contig c = make_contig(std::string(10, 'A'), {plain_read("a", 2, 3), plain_read("b", 4, 1),
                                                 read_plan{"back", 5, "AAA", int16_t{-3}}});
    c.create_print_map();
    // "a" covers 2 to 4, so the scan passes "b"; after "back" at 5 it goes on
    // from 2 and meets "b" in the same row.
    const std::vector<row> expected = {{{2, "a"}, {4, "b"}, {5, "back"}}};
    EXPECT_EQ(c.print_map, expected);
}

TEST(PrintMap, LengthIsLookedUpByNameWithSubscript) {
    contig c = make_contig(std::string(10, 'A'), {plain_read("a", 2, 3)});
    c.create_pos_map();
    c.pos_map.emplace(4, "ghost");  // a name that reads does not hold
    c.create_print_map();
    // The scan after "a" resumes at 5 and misses "ghost"; the next row takes it.
    const std::vector<row> expected = {{{2, "a"}}, {{4, "ghost"}}};
    EXPECT_EQ(c.print_map, expected);
    ASSERT_EQ(c.reads.count("ghost"), 1u);  // the subscript added it, with length 0
    EXPECT_EQ(c.reads["ghost"].len, 0);
}

}  // namespace
}  // namespace pelkrin::test
