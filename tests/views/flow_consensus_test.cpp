// The consensus in flow space and the flow index of every run start.
#include <gtest/gtest.h>

#include "view_fixture.h"

namespace pelkrin::test {
namespace {

using flow_maps = std::vector<std::map<char, int32_t>>;

contig flows_of(std::string_view consensus, const std::vector<read_plan>& reads) {
    contig c = make_contig(consensus, reads);
    c.create_flow_concensus();
    return c;
}

TEST(FlowConsensus, WorkedExampleACCT) {
    const contig c = flows_of("ACCT", {{"r", 1, "ACCT"}});
    EXPECT_EQ(text(c.flow_consensus), "ACT");
    EXPECT_EQ(c.flow_index_map, (flow_maps{{{'A', 0}}, {{'C', 1}}, {}, {{'T', 2}}}));
}

TEST(FlowConsensus, ContigWithoutReadsStaysEmpty) {
    const contig c = flows_of("ACGT", {});
    EXPECT_TRUE(c.flow_consensus.empty());
    EXPECT_TRUE(c.flow_index_map.empty());
}

TEST(FlowConsensus, PadOrNFirstConsensusCharacterStartsWithT) {
    for (const char* consensus : {"*CG", "NCG", "nCG"}) {
        const contig c = flows_of(consensus, {{"r", 2, "C"}});
        EXPECT_EQ(text(c.flow_consensus), "TC") << consensus;
    }
}

TEST(FlowConsensus, OtherFirstConsensusCharacterIsUsedAsItIs) {
    EXPECT_EQ(text(flows_of("GCG", {{"r", 2, "C"}}).flow_consensus), "GC");
    EXPECT_EQ(text(flows_of("gCG", {{"r", 2, "C"}}).flow_consensus), "gC");
    EXPECT_EQ(text(flows_of("xCG", {{"r", 2, "C"}}).flow_consensus), "xC");
}

TEST(FlowConsensus, ReadGGGARecordsGAtZeroAndAAtThree) {
    const contig c = flows_of("GGGA", {{"r", 1, "GGGA"}});
    EXPECT_EQ(text(c.flow_consensus), "GA");
    EXPECT_EQ(c.flow_index_map, (flow_maps{{{'G', 0}}, {}, {}, {{'A', 1}}}));
}

TEST(FlowConsensus, PadEndsARun) {
    // A, *, A records A at 0 and again at 2; both are the one flow A.
    const contig c = flows_of("A*A", {{"r", 1, "A*A"}});
    EXPECT_EQ(text(c.flow_consensus), "A");
    EXPECT_EQ(c.flow_index_map, (flow_maps{{{'A', 0}}, {}, {{'A', 0}}}));
}

TEST(FlowConsensus, ReadAAPadARecordsAAtFirstAndFourth) {
    const contig c = flows_of("CAA*A", {{"r", 2, "AA*A"}});
    EXPECT_EQ(text(c.flow_consensus), "CA");
    EXPECT_EQ(c.flow_index_map, (flow_maps{{}, {{'A', 1}}, {}, {}, {{'A', 1}}}));
}

TEST(FlowConsensus, ReadANAAtPositionFiveRecordsTForTheN) {
    // Consensus 'A' at position 5: the 'N' becomes 'A', equal to both
    // neighbours, so it becomes 'T'.
    const contig c = flows_of("CCCCAAA", {{"r", 5, "ANA"}});
    EXPECT_EQ(text(c.flow_consensus), "CATA");
    EXPECT_EQ(c.flow_index_map, (flow_maps{{}, {}, {}, {}, {{'A', 1}}, {{'T', 2}}, {{'A', 3}}}));
}

TEST(FlowConsensus, FirstCharacterNOfALengthTwoReadTakesTheConsensusLetter) {
    // No neighbour test with a length of 2, though the next base is also G;
    // that next base then continues the run.
    const contig c = flows_of("GC", {{"r", 1, "NG"}});
    EXPECT_EQ(text(c.flow_consensus), "G");
    EXPECT_EQ(c.flow_index_map, (flow_maps{{{'G', 0}}, {}}));
}

TEST(FlowConsensus, FirstCharacterNOfALongerReadGetsANeighbourTest) {
    const contig c = flows_of("GCC", {{"r", 1, "NGC"}});
    // 'N' -> 'G' (consensus), equal to the next base -> 'T'.
    EXPECT_EQ(text(c.flow_consensus), "GTGC");
    EXPECT_EQ(c.flow_index_map, (flow_maps{{{'T', 1}}, {{'G', 2}}, {{'C', 3}}}));
}

TEST(FlowConsensus, FirstCharacterNOverAPadStaysN) {
    const contig c = flows_of("*AC", {{"r", 1, "NAC"}});
    // 'N' stays 'N' and is recorded but never looked at as a flow.
    EXPECT_EQ(text(c.flow_consensus), "TAC");
    EXPECT_EQ(c.flow_index_map, (flow_maps{{}, {{'A', 1}}, {{'C', 2}}}));
}

TEST(FlowConsensus, InnerNTakesTheConsensusLetterOfTheReadsFirstPosition) {
    // The 'N' at position 3 takes 'C' from position 1, not 'G' from its own.
    const contig c = flows_of("CAGT", {{"r", 1, "CANT"}});
    EXPECT_EQ(text(c.flow_consensus), "CACT");
    EXPECT_EQ(c.flow_index_map, (flow_maps{{{'C', 0}}, {{'A', 1}}, {{'C', 2}}, {{'T', 3}}}));
}

TEST(FlowConsensus, LastCharacterNGetsNoNeighbourTest) {
    const contig c = flows_of("AC", {{"r", 1, "AN"}});
    // The 'N' becomes 'A' though the base before it is 'A'.
    EXPECT_EQ(c.flow_index_map, (flow_maps{{{'A', 0}}, {{'A', 0}}}));
}

TEST(FlowConsensus, CharacterAfterAnNStartsANewRun) {
    const contig c = flows_of("AAAA", {{"r", 1, "ANAA"}});
    EXPECT_EQ(text(c.flow_consensus), "ATA");
    EXPECT_EQ(c.flow_index_map, (flow_maps{{{'A', 0}}, {{'T', 1}}, {{'A', 2}}, {}}));
}

TEST(FlowConsensus, NeighbourTestStepsThroughTheFlowCycle) {
    // 'N' -> 'A' (consensus), equal to the next base; 'T' equal to the one
    // before; 'A' again equal to the next; so 'C'.
    const contig c = flows_of("AAAA", {{"r", 1, "TNA"}});
    EXPECT_EQ(c.flow_index_map[1], (std::map<char, int32_t>{{'C', 2}}));
}

TEST(FlowConsensus, ReadCharactersAreUpperCased) {
    const contig c = flows_of("AAC", {{"r", 1, "aAc"}});
    EXPECT_EQ(text(c.flow_consensus), "AC");
    EXPECT_EQ(c.flow_index_map, (flow_maps{{{'A', 0}}, {}, {{'C', 1}}}));
}

TEST(FlowConsensus, LowerCaseConsensusLetterIsRecordedButIgnored) {
    const contig c = flows_of("acgt", {{"r", 2, "NT"}});
    EXPECT_EQ(text(c.flow_consensus), "aT");
    EXPECT_EQ(c.flow_index_map, (flow_maps{{}, {}, {{'T', 1}}, {}}));
}

TEST(FlowConsensus, OtherCharactersAreNeverFlows) {
    const contig c = flows_of("AXA", {{"r", 1, "AXA"}});
    EXPECT_EQ(text(c.flow_consensus), "A");
    EXPECT_EQ(c.flow_index_map, (flow_maps{{{'A', 0}}, {}, {{'A', 0}}}));
}

TEST(FlowConsensus, TwoRunsAfterFlowAMapToTheOneNewTFlow) {
    const contig c = flows_of("AT", {{"r1", 1, "AT"}, {"r2", 2, "A"}});
    EXPECT_EQ(text(c.flow_consensus), "AT");
    EXPECT_EQ(c.flow_index_map, (flow_maps{{{'A', 0}}, {{'A', 1}, {'T', 1}}}));
}

TEST(FlowConsensus, AfterFlowTTMapsToItAndABecomesNew) {
    const contig c = flows_of("TA", {{"r1", 1, "T"}, {"r2", 1, "A"}});
    EXPECT_EQ(text(c.flow_consensus), "TA");
    EXPECT_EQ(c.flow_index_map, (flow_maps{{{'A', 1}, {'T', 0}}, {}}));
}

TEST(FlowConsensus, FourLettersAtOnePositionComparedWithTheFlowOnEntering) {
    const contig c = flows_of("GAAA", {{"g", 1, "G"}, {"t", 2, "T"}, {"a", 2, "A"}, {"c", 2, "C"},
                                       {"g2", 2, "G"}});
    // Last is G on entering index 1: T, A and C are new flows, while G, equal
    // to that G, is mapped to the flow last appended, the C.
    EXPECT_EQ(text(c.flow_consensus), "GTAC");
    EXPECT_EQ(c.flow_index_map[1], (std::map<char, int32_t>{{'A', 2}, {'C', 3}, {'G', 3}, {'T', 1}}));
}

TEST(FlowConsensus, ReadLeftOfTheConsensusRecordsOnlyInsideIt) {
    // Index of the first base is -2; an 'N' there has no consensus letter and
    // stays 'N'; nothing left of the consensus is recorded.
    const contig c = flows_of("ACGT", {{"r", -1, "NNACG"}});
    EXPECT_EQ(text(c.flow_consensus), "ACG");
    EXPECT_EQ(c.flow_index_map, (flow_maps{{{'A', 0}}, {{'C', 1}}, {{'G', 2}}, {}}));
}

TEST(FlowConsensus, InnerNOfAReadLeftOfTheConsensusStaysN) {
    // The 'N' takes its letter from the read's first position, which lies
    // left of the consensus: it stays 'N', is recorded at index 0 and never
    // becomes a flow. The read's first base, left of the consensus, is dropped.
    const contig c = flows_of("CCC", {{"r", 0, "ANCC"}});
    EXPECT_EQ(text(c.flow_consensus), "C");
    EXPECT_EQ(c.flow_index_map, (flow_maps{{}, {{'C', 0}}, {}}));
}

TEST(FlowConsensus, ReadPastTheEndRecordsOnlyInsideIt) {
    const contig c = flows_of("ACG", {{"r", 2, "CGTA"}});
    EXPECT_EQ(text(c.flow_consensus), "ACG");
    EXPECT_EQ(c.flow_index_map, (flow_maps{{}, {{'C', 1}}, {{'G', 2}}}));
}

TEST(FlowConsensus, EmptyConsensusWithReadsStartsWithT) {
    const contig c = flows_of("", {{"r", 1, "ACGT"}});
    EXPECT_EQ(text(c.flow_consensus), "T");
    EXPECT_TRUE(c.flow_index_map.empty());
}

TEST(FlowConsensus, ReadShorterThanItsLengthStopsAtItsLastBase) {
    const contig c = flows_of("ACGT", {{"r", 1, "AC", int16_t{6}}});
    EXPECT_EQ(text(c.flow_consensus), "AC");
    EXPECT_EQ(c.flow_index_map, (flow_maps{{{'A', 0}}, {{'C', 1}}, {}, {}}));
}

TEST(FlowConsensus, SecondCallAppendsAndNumbersAgainstTheOldFlows) {
    contig c = flows_of("ACCT", {{"r", 1, "ACCT"}});
    c.create_flow_concensus();
    EXPECT_EQ(text(c.flow_consensus), "ACTACT");
    EXPECT_EQ(c.flow_index_map, (flow_maps{{{'A', 0}}, {{'C', 1}}, {}, {{'T', 2}}}));
}

TEST(FlowConsensus, IndexMapKeepsExistingMapsWhenSized) {
    contig c = make_contig("AC", {{"r", 1, "AC"}});
    c.flow_index_map = {{{'G', 9}}, {}, {{'T', 7}}};
    c.create_flow_concensus();
    // Surplus maps go, existing ones stay and are overwritten per letter.
    EXPECT_EQ(c.flow_index_map, (flow_maps{{{'A', 0}, {'G', 9}}, {{'C', 1}}}));
}

}  // namespace
}  // namespace pelkrin::test
