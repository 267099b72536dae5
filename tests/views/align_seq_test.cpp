// A span of the alignment in base space, as a table of columns.
#include <gtest/gtest.h>

#include <stdexcept>

#include "view_fixture.h"

namespace pelkrin::test {
namespace {

using char_table = std::vector<std::vector<char>>;
using name_rows = std::vector<std::map<int32_t, std::string>>;

struct seq_span {
    char_table columns;
    name_rows rows;
};

seq_span cut(contig& c, int32_t start, int32_t width) {
    seq_span s;
    c.align_seq(s.columns, s.rows, start, width);
    return s;
}

char_table columns_of(std::vector<std::string> texts) {
    char_table t;
    for (const auto& x : texts) t.push_back(chars(x));
    return t;
}

TEST(AlignSeq, ReadsUnderTheirPositions) {
    contig c = make_contig("ACGT", {{"r1", 1, "AC"}, {"r2", 1, "ACGT"}});
    const seq_span s = cut(c, 1, 4);
    // Row 1 reaches columns 2 and 3 that row 0 leaves empty: '0' there.
    EXPECT_EQ(s.columns, columns_of({"AA", "CC", "0G", "0T"}));
    EXPECT_EQ(s.rows, (name_rows{{{1, "r1"}}, {{3, "r2"}}}));
}

TEST(AlignSeq, BuildsTheLayoutOnFirstUseOnly) {
    contig c = make_contig("ACGT", {{"r1", 1, "ACGT"}});
    cut(c, 1, 4);
    cut(c, 1, 2);
    EXPECT_EQ(c.print_map.size(), 1u);
    EXPECT_TRUE(c.flow_consensus.empty());
}

TEST(AlignSeq, ReadsOfEqualLengthBeginningInTheLastPositionsAreAbsent) {
    contig c = make_contig("ACGTACGTAC", {{"r1", 1, "ACG"}, {"r2", 4, "TAC"}, {"r3", 5, "ACG"}, {"r4", 6, "CGT"}});
    const seq_span s = cut(c, 1, 6);
    EXPECT_EQ(s.columns, columns_of({"A", "C", "G", "T", "A", "C"}));
    EXPECT_EQ(s.rows, (name_rows{{{2, "r1"}, {5, "r2"}}, {}, {}}));
}

TEST(AlignSeq, ReadBeginningBeforeTheSpanIsLaidRightOfItsPositions) {
    // r1 begins 2 positions before the span: its base of position 3 goes to
    // column 2, and those of 4 and 5 would fall past the last column.
    contig c = make_contig("ACGTAC", {{"r1", 1, "ACGTAC"}, {"r2", 6, "C"}});
    const seq_span s = cut(c, 3, 3);
    EXPECT_EQ(s.columns, columns_of({"", "", "G"}));
    EXPECT_EQ(s.rows, (name_rows{{{2, "r1"}}, {}}));
}

TEST(AlignSeq, ReadBeginningInsideTheSpanTakesItsOwnColumns) {
    contig c = make_contig("ACGTAC", {{"r1", 1, "ACGTAC"}, {"r2", 6, "C"}});
    const seq_span s = cut(c, 1, 6);
    EXPECT_EQ(s.columns, columns_of({"A", "C", "G", "T", "A", "CC"}));
    EXPECT_EQ(s.rows, (name_rows{{{5, "r1"}}, {{5, "r2"}}}));
}

TEST(AlignSeq, PadsAndCaseAreKeptAsStored) {
    contig c = make_contig("AC*T", {{"r1", 1, "ac*t"}});
    const seq_span s = cut(c, 1, 4);
    EXPECT_EQ(s.columns, columns_of({"a", "c", "*", "t"}));
}

TEST(AlignSeq, SpanReachingPastTheConsensusIsCut) {
    contig c = make_contig("ACG", {{"r1", 1, "ACGTT"}, {"r2", 3, "G"}});
    const seq_span s = cut(c, 1, 10);
    // Three columns; r1's bases past the consensus are dropped.
    EXPECT_EQ(s.columns, columns_of({"A", "C", "GG"}));
    EXPECT_EQ(s.rows, (name_rows{{{2, "r1"}}, {{2, "r2"}}}));
}

TEST(AlignSeq, SpanShorterThanEveryReadShowsNoRead) {
    // The cut span ends at 3 and the shortest read has 5 bases: starts up
    // to 3 - 5 + 1 = -1 only would be visited.
    contig c = make_contig("ACG", {{"r1", 1, "ACGTT"}});
    const seq_span s = cut(c, 1, 10);
    EXPECT_EQ(s.columns, columns_of({"", "", ""}));
    EXPECT_EQ(s.rows, (name_rows{{}}));
}

TEST(AlignSeq, SpanBeginningRightAfterTheConsensusIsEmpty) {
    contig c = make_contig("ACGT", {{"r1", 1, "ACGT"}});
    const seq_span s = cut(c, 5, 3);
    EXPECT_TRUE(s.columns.empty());
    EXPECT_EQ(s.rows, (name_rows{{}}));
}

TEST(AlignSeq, SpanBeginningLaterFailsWithALengthError) {
    contig c = make_contig("ACGT", {{"r1", 1, "ACGT"}});
    char_table columns;
    name_rows rows;
    EXPECT_THROW(c.align_seq(columns, rows, 6, 3), std::length_error);
}

TEST(AlignSeq, NegativeLastPositionIsCutToTheConsensus) {
    // start + width - 1 below 0, taken as unsigned, exceeds the consensus.
    contig c = make_contig("ACGT", {{"r1", 1, "ACGT"}});
    const seq_span s = cut(c, 1, -10);
    EXPECT_EQ(s.columns, columns_of({"A", "C", "G", "T"}));
}

TEST(AlignSeq, ReadShorterThanItsLengthStopsAtItsLastBase) {
    contig c = make_contig("ACGT", {{"r1", 1, "AC", int16_t{4}}});
    const seq_span s = cut(c, 1, 4);
    EXPECT_EQ(s.columns, columns_of({"A", "C", "", ""}));
    EXPECT_EQ(s.rows, (name_rows{{{3, "r1"}}}));
}

TEST(AlignSeq, OutputsAreNotCleared) {
    contig c = make_contig("ACGT", {{"r1", 1, "ACGT"}});
    char_table columns = columns_of({"xyz", "", "", "", "w"});
    name_rows rows(2);
    c.align_seq(columns, rows, 1, 4);
    EXPECT_EQ(columns, columns_of({"Ayz", "C", "G", "T"}));
    EXPECT_EQ(rows.size(), 3u);
}

}  // namespace
}  // namespace pelkrin::test
