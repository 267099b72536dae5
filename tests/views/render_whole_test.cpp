// The whole contig in base space, into a stream.
#include <gtest/gtest.h>

#include <sstream>

#include "view_fixture.h"

namespace pelkrin::test {
namespace {

// Rows {1: r1, 6: r3} and {4: r2}.
contig three_reads() {
    return make_contig("ACGTACGT", {{"r1", 1, "ACGT"}, {"r2", 4, "TACG"}, {"r3", 6, "CGT"}});
}

TEST(RenderWholeContig, PlainConsensusThenEveryRow) {
    contig c = three_reads();
    std::ostringstream out;
    c.print_align_map(out);
    EXPECT_EQ(out.str(), "ACGTACGT\nACGT CGT\n   TACG\n");
    EXPECT_EQ(c.print_map.size(), 2u);
}

TEST(RenderWholeContig, HtmlConsensusThenEveryRow) {
    contig c = three_reads();
    std::ostringstream out;
    c.print_align_map_html(out, {{'A', "green"}});
    EXPECT_EQ(out.str(),
              "<font color=green>A</font>CGT<font color=green>A</font>CGT\n"
              "<font color=green>A</font>CGT CGT\n"
              "   T<font color=green>A</font>CG\n");
}

TEST(RenderWholeContig, ShortReadsAreDrawnToo) {
    // Unlike the spans, no read is left out for starting near the end.
    contig c = make_contig("ACGT", {{"r1", 1, "ACGT"}, {"r2", 4, "T"}});
    std::ostringstream out;
    c.print_align_map(out);
    EXPECT_EQ(out.str(), "ACGT\nACGT\n   T\n");
}

TEST(RenderWholeContig, CursorFollowsTheLengthWhileTheWholeBasesAreDrawn) {
    // r1 has 5 bases but a length of 3: the next read of its row is placed
    // after 3 positions, with no space, and the extra bases push it right.
    contig c = make_contig("ACGTACGT", {{"r1", 1, "ACGTT", int16_t{3}}, {"r2", 4, "TAC"}});
    std::ostringstream plain;
    c.print_align_map(plain);
    EXPECT_EQ(plain.str(), "ACGTACGT\nACGTTTAC\n");
    std::ostringstream html;
    c.print_align_map_html(html, {});
    EXPECT_EQ(html.str(), plain.str());
}

TEST(RenderWholeContig, ReadsRunningPastTheConsensusAreDrawnWhole) {
    contig c = make_contig("ACG", {{"r1", 2, "CGTT"}});
    std::ostringstream out;
    c.print_align_map(out);
    EXPECT_EQ(out.str(), "ACG\n CGTT\n");
}

TEST(RenderWholeContig, ContigWithoutReadsIsItsConsensus) {
    contig c = make_contig("AC*T", {});
    std::ostringstream plain;
    c.print_align_map(plain);
    EXPECT_EQ(plain.str(), "AC*T\n");
    std::ostringstream html;
    c.print_align_map_html(html, {{'*', "gray"}});
    EXPECT_EQ(html.str(), "AC<font color=gray>*</font>T\n");
}

TEST(RenderWholeContig, ReadsLeftOfTheConsensusAreNotDrawn) {
    contig c = make_contig("ACGT", {{"left", -1, "GGACG"}, {"in", 2, "CGT"}});
    std::ostringstream out;
    c.print_align_map(out);
    EXPECT_EQ(out.str(), "ACGT\n CGT\n");
}

TEST(RenderWholeContig, ACopyWithItsDerivedMapsEqualsItsSource) {
    contig c = three_reads();
    std::ostringstream out;
    c.print_align_map(out);
    c.create_flow_concensus();
    const contig copy = c;
    EXPECT_EQ(copy, c);
    EXPECT_EQ(copy.print_map, c.print_map);
    EXPECT_EQ(copy.flow_index_map, c.flow_index_map);
    EXPECT_NE(copy.flow_consensus.data(), c.flow_consensus.data());
}

}  // namespace
}  // namespace pelkrin::test
