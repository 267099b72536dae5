// A span of the alignment in flow space, as tables.
#include <gtest/gtest.h>

#include <stdexcept>

#include "view_fixture.h"

namespace pelkrin::test {
namespace {

using flow_table = std::vector<std::vector<int16_t>>;
using flow_rows = std::vector<std::map<int32_t, fRead>>;

struct flow_span {
    flow_table flows;
    flow_rows rows;
};

flow_span cut(contig& c, int32_t start, int32_t width) {
    flow_span s;
    c.align_flow(s.flows, s.rows, start, width);
    return s;
}

TEST(AlignFlow, DefaultFlowReadIsEmpty) {
    const fRead f;
    EXPECT_TRUE(f.name.empty());
    EXPECT_EQ(f.flow_start, 0);
    EXPECT_EQ(f.flow_end, 0);
}

TEST(AlignFlow, SpanAtPositionOneHasItsOriginAtTheLastFlowOfIndexZero) {
    contig c = make_contig("ACGT", {{"r1", 1, "ACGT"}});
    const flow_span s = cut(c, 1, 4);
    EXPECT_EQ(s.flows, (flow_table{{1}, {1}, {1}, {1}}));
    EXPECT_EQ(s.rows, (flow_rows{{{3, fRead{"r1", 0, 3}}}}));
}

TEST(AlignFlow, BuildsLayoutAndFlowConsensusOnFirstUse) {
    contig c = make_contig("ACGT", {{"r1", 1, "ACGT"}});
    cut(c, 1, 4);
    EXPECT_EQ(c.print_map.size(), 1u);
    EXPECT_EQ(text(c.flow_consensus), "ACGT");
    // Built once: a second span leaves them as they are.
    cut(c, 2, 2);
    EXPECT_EQ(c.print_map.size(), 1u);
    EXPECT_EQ(text(c.flow_consensus), "ACGT");
}

TEST(AlignFlow, FlowsBelowTheOriginAreDroppedAndTheLastColumnStaysEmpty) {
    // Index 0 carries two flows, T (1) and C (2): the table counts from T,
    // the columns from C.
    contig c = make_contig("ACGT", {{"r1", 1, "TCGT"}, {"r2", 1, "CCGT"}});
    const flow_span s = cut(c, 1, 4);
    ASSERT_EQ(text(c.flow_consensus), "ATCGT");
    EXPECT_EQ(s.flows, (flow_table{{1, 2}, {1, 1}, {1, 1}, {}}));
    EXPECT_EQ(s.rows, (flow_rows{{{2, fRead{"r1", -1, 2}}}, {{2, fRead{"r2", -1, 2}}}}));
}

TEST(AlignFlow, ReadsOfEqualLengthBeginningInTheLastPositionsAreAbsent) {
    // All reads have length 3: those beginning at 5 and 6, the last two
    // positions of the span 1 to 6, are left out.
    contig c = make_contig("ACGTACGTAC", {{"r1", 1, "ACG"}, {"r2", 4, "TAC"}, {"r3", 5, "ACG"}, {"r4", 6, "CGT"}});
    const flow_span s = cut(c, 1, 6);
    EXPECT_EQ(s.flows, (flow_table{{1}, {1}, {1}, {1}, {1}, {1}}));
    EXPECT_EQ(s.rows, (flow_rows{{{2, fRead{"r1", 0, 2}}, {5, fRead{"r2", 3, 5}}}, {}, {}}));
}

TEST(AlignFlow, PrintRowWithoutReadsInTheSpanAddsAnEmptyMap) {
    contig c = make_contig("ACGTACGT", {{"a", 1, "ACG"}, {"b", 2, "CGT"}, {"far", 6, "CGT"}});
    const flow_span s = cut(c, 1, 3);
    // Rows: {1: a, 6: far}, {2: b}; b begins within the last two positions.
    ASSERT_EQ(c.print_map.size(), 2u);
    EXPECT_EQ(s.rows, (flow_rows{{{2, fRead{"a", 0, 2}}}, {}}));
}

TEST(AlignFlow, PadAtTheSpansFirstPositionStartsTheScanAtTheReadsFirstBase) {
    contig c = make_contig("GCC*GT", {{"r1", 2, "CC*GT"}});
    const flow_span s = cut(c, 4, 3);
    // The C flow counts the two C of positions 2 and 3, left of the span.
    EXPECT_EQ(s.flows, (flow_table{{2}, {1}, {1}}));
    EXPECT_EQ(s.rows, (flow_rows{{{2, fRead{"r1", 0, 2}}}}));
}

TEST(AlignFlow, RunIsWidenedLeftToItsFirstBase) {
    // The span begins in the middle of the run GGG: the whole run is counted.
    contig c = make_contig("AGGGT", {{"r1", 1, "AGGGT"}});
    const flow_span s = cut(c, 3, 3);
    EXPECT_EQ(s.flows, (flow_table{{3}, {1}}));
    EXPECT_EQ(s.rows, (flow_rows{{{1, fRead{"r1", 0, 1}}}}));
}

TEST(AlignFlow, RunIsWidenedRightToItsLastBase) {
    // The span ends inside the run CCC: the whole run is counted.
    // The short read lowers min_read_len so that r1 is selected.
    contig c = make_contig("ACCCT", {{"r1", 1, "ACCCT"}, {"r2", 5, "T"}});
    const flow_span s = cut(c, 1, 2);
    EXPECT_EQ(s.flows, (flow_table{{1}, {3}}));
    EXPECT_EQ(s.rows, (flow_rows{{{1, fRead{"r1", 0, 1}}}, {}}));
}

TEST(AlignFlow, SecondRowReadBeyondTheFirstRowsReadsHoldsMinusOne) {
    contig c = make_contig("ACGT", {{"r1", 1, "AC"}, {"r2", 1, "ACGT"}});
    const flow_span s = cut(c, 1, 4);
    EXPECT_EQ(s.flows, (flow_table{{1, 1}, {1, 1}, {-1, 1}, {-1, 1}}));
    EXPECT_EQ(s.rows, (flow_rows{{{1, fRead{"r1", 0, 1}}}, {{3, fRead{"r2", 0, 3}}}}));
}

TEST(AlignFlow, TwoReadsOfARowWithTheSameLastFlowKeepTheLaterOne) {
    contig c = make_contig("AAAA", {{"r1", 1, "AA"}, {"r2", 3, "AA"}});
    const flow_span s = cut(c, 1, 4);
    EXPECT_EQ(s.flows, (flow_table{{2}}));
    EXPECT_EQ(s.rows, (flow_rows{{{0, fRead{"r2", 0, 0}}}}));
}

TEST(AlignFlow, ReadShowingNoBaseOfAFlowCountsZero) {
    contig c = make_contig("ACT", {{"r1", 1, "ACT"}, {"r2", 1, "AGT"}});
    const flow_span s = cut(c, 1, 3);
    // Flows A, C, G, T (C and G both begin at index 1); r2 has no C, r1 no G.
    ASSERT_EQ(text(c.flow_consensus), "ACGT");
    EXPECT_EQ(s.flows, (flow_table{{1, 1}, {1, 0}, {0, 1}, {1, 1}}));
}

TEST(AlignFlow, LeadingNsAreSkippedAndPadsPassedOver) {
    contig c = make_contig("AACT", {{"r1", 1, "AACT"}, {"r2", 1, "A*CT"}, {"r3", 2, "NCT"}});
    const flow_span s = cut(c, 2, 3);
    ASSERT_EQ(text(c.flow_consensus), "ACT");
    // r1 and r2 begin before the span: their A runs are widened back to
    // position 1, where r2's pad is passed over; r3's 'N' is skipped and its
    // C is no A.
    EXPECT_EQ(s.flows, (flow_table{{2, 1, 0}, {1, 1, 1}, {1, 1, 1}}));
}

TEST(AlignFlow, SpanStartingAfterTheConsensusShowsItsLastPosition) {
    contig c = make_contig("ACGT", {{"r1", 1, "ACGT"}});
    const flow_span s = cut(c, 10, 3);
    EXPECT_EQ(s.flows, (flow_table{{1}}));
    EXPECT_EQ(s.rows, (flow_rows{{{0, fRead{"r1", 0, 0}}}}));
}

TEST(AlignFlow, NegativeColumnCountFailsWithALengthError) {
    contig c = make_contig("ACGT", {{"r1", 1, "ACGT"}});
    flow_table flows;
    flow_rows rows;
    EXPECT_THROW(c.align_flow(flows, rows, 3, -5), std::length_error);
}

TEST(AlignFlow, OutputsAreNotCleared) {
    contig c = make_contig("ACGT", {{"r1", 1, "AC"}, {"r2", 1, "ACGT"}});
    flow_table flows = {{7, 7, 7}, {7}, {7}, {7}, {7}, {7}};
    flow_rows rows(1);
    c.align_flow(flows, rows, 1, 4);
    // Surplus columns go; the kept ones keep what the span does not write.
    EXPECT_EQ(flows, (flow_table{{1, 1, 7}, {1, 1}, {7, 1}, {7, 1}}));
    EXPECT_EQ(rows.size(), 3u);
}

TEST(AlignFlow, ReadRunningPastTheConsensusIsCutToTheLastFlow) {
    contig c = make_contig("ACG", {{"r1", 1, "ACGTT"}});
    const flow_span s = cut(c, 1, 5);
    // The span's last flow is G; the read's last position lies past the
    // consensus, where the flow look-up walks down to G too.
    EXPECT_EQ(s.flows, (flow_table{{1}, {1}, {1}}));
    EXPECT_EQ(s.rows, (flow_rows{{{2, fRead{"r1", 0, 2}}}}));
}

TEST(AlignFlow, ReadShorterThanItsLengthStopsAtItsLastBase) {
    contig c = make_contig("ACGT", {{"r1", 1, "AC", int16_t{4}}});
    const flow_span s = cut(c, 1, 4);
    ASSERT_EQ(text(c.flow_consensus), "AC");
    EXPECT_EQ(s.flows, (flow_table{{1}, {1}}));
}

TEST(AlignFlow, ContigWithoutReadsGivesOneColumnAndNoRows) {
    contig c = make_contig("ACGT", {});
    const flow_span s = cut(c, 1, 4);
    EXPECT_EQ(s.flows, (flow_table{{}}));
    EXPECT_TRUE(s.rows.empty());
}

TEST(AlignFlow, FlowMissingFromTheFlowConsensusCountsNothing) {
    contig c = make_contig("ACGT", {{"r1", 1, "ACGT"}});
    c.create_flow_concensus();
    c.flow_consensus.resize(2);  // flows 2 (G) and 3 (T) no longer exist
    const flow_span s = cut(c, 1, 4);
    EXPECT_EQ(s.flows, (flow_table{{1}, {1}, {}, {}}));
    EXPECT_EQ(s.rows, (flow_rows{{{3, fRead{"r1", 0, 3}}}}));
}

}  // namespace
}  // namespace pelkrin::test
