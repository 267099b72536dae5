// A span of the alignment in flow space as plain text and HTML.
#include <gtest/gtest.h>

#include "view_fixture.h"

namespace pelkrin::test {
namespace {

drawn plain(contig& c, int32_t start, int32_t width) {
    drawn d;
    c.print_flow_map_plain(d.out, d.reads, start, width);
    return d;
}

std::string el(const std::string& colour, const std::string& text) {
    return "<font color=" + colour + ">" + text + "</font>";
}

colour_map bases() { return {{'A', "green"}, {'C', "blue"}, {'G', "orange"}, {'T', "red"}}; }

// Flows A C G T A C, one to a position; r2 begins three positions after r1.
contig staggered() { return make_contig("ACGTAC", {{"r1", 1, "ACGTAC"}, {"r2", 4, "TAC"}}); }

// Flows A C G T A C G T, one to a position; rows {1: a, 6: b} and {2: c}.
contig two_in_a_row() { return make_contig("ACGTACGTAC", {{"a", 1, "ACG"}, {"b", 6, "CGT"}, {"c", 2, "CGTA"}}); }

TEST(RenderFlowSpan, PlainReadThreePositionsLaterHasTwoSpacesPerFlow) {
    contig c = staggered();
    const drawn d = plain(c, 1, 6);
    EXPECT_EQ(d.out, " A C G T A C\n 1 1 1 1 1 1\n       1 1 1\n");
    EXPECT_EQ(d.reads, (names{"r1", "r2"}));
}

TEST(RenderFlowSpan, PlainBuildsLayoutAndFlowsOnFirstUse) {
    contig c = staggered();
    plain(c, 1, 6);
    EXPECT_EQ(c.print_map.size(), 2u);
    EXPECT_EQ(text(c.flow_consensus), "ACGTAC");
}

TEST(RenderFlowSpan, PlainReadBeginningBeforeTheSpanIsDrawnFromItsFirstPosition) {
    contig c = staggered();
    const drawn d = plain(c, 3, 4);
    EXPECT_EQ(d.out, " G T A C\n 1 1 1 1\n   1 1 1\n");
    EXPECT_EQ(d.reads, (names{"r1", "r2"}));
}

TEST(RenderFlowSpan, PlainReadsInTheLastPositionsAreNeitherDrawnNorListed) {
    contig c = staggered();
    // Span 1 to 5: r2 (3 bases) begins at 4, within the last 2 positions.
    const drawn d = plain(c, 1, 5);
    EXPECT_EQ(d.out, " A C G T A\n 1 1 1 1 1\n");
    EXPECT_EQ(d.reads, (names{"r1"}));
}

TEST(RenderFlowSpan, PlainSecondReadOfARowGapsFromTheFirstOnesLastPosition) {
    contig c = two_in_a_row();
    const drawn d = plain(c, 2, 9);
    EXPECT_EQ(d.out, " C G T A C G T\n 1 1     1 1 1\n 1 1 1 1\n");
    EXPECT_EQ(d.reads, (names{"a", "b", "c"}));
}

TEST(RenderFlowSpan, PlainGapLooksBackWhenThePositionAfterAReadHasNoFlow) {
    // Position 4 carries no flow, so the gap after a counts from a's last
    // flow G: one flow, though b's first flow follows G directly.
    contig c = make_contig("ACGTACGTAC", {{"a", 1, "ACG"}, {"b", 6, "CGT"}});
    const drawn d = plain(c, 2, 9);
    EXPECT_EQ(d.out, " C G C G T\n 1 1   1 1 1\n");
}

TEST(RenderFlowSpan, CountTwelveIsDrawnAsC) {
    contig c = make_contig(std::string(12, 'A'), {{"r", 1, std::string(12, 'A')}});
    EXPECT_EQ(plain(c, 1, 12).out, " A\n C\n");
}

TEST(RenderFlowSpan, CountZeroIsDrawnAsZero) {
    contig c = make_contig("ACT", {{"r1", 1, "ACT"}, {"r2", 1, "AGT"}});
    EXPECT_EQ(plain(c, 1, 3).out, " A C G T\n 1 1 0 1\n 1 0 1 1\n");
}

TEST(RenderFlowSpan, PlainCountsTheBaseAfterTheRunsEndWhereTheTableDoesNot) {
    // r1's part of the span 1 to 2 ends with its C, but the span's flows go
    // on to G: the plain renderer still counts r1's G, the HTML one does not.
    contig c = make_contig("ACG", {{"r1", 1, "ACG"}, {"r2", 1, "AGG"}, {"r3", 3, "G"}});
    EXPECT_EQ(plain(c, 1, 2).out, " A C G\n 1 1 1\n 1 0 2\n");
    drawn d;
    colour_map colours = bases();
    c.print_flow_map_html(d.out, d.reads, colours, 1, 2);
    EXPECT_EQ(d.out, el("green", "A") + el("blue", "C") + el("orange", "G") + "\n" + el("green", "1") +
                         el("blue", "1") + el("orange", "0") + "\n" + el("green", "1") + el("blue", "0") +
                         el("orange", "2") + "\n");
}

TEST(RenderFlowSpan, SpanStartingAfterTheConsensusIsCutToItsLastPosition) {
    contig c = make_contig("ACGT", {{"r1", 1, "ACGT"}});
    EXPECT_EQ(plain(c, 10, 3).out, " T\n");
}

TEST(RenderFlowSpan, HtmlOneColumnPerFlow) {
    contig c = two_in_a_row();
    drawn d;
    colour_map colours = bases();
    c.print_flow_map_html(d.out, d.reads, colours, 2, 9);
    const std::string header = el("blue", "C") + el("orange", "G") + el("red", "T") + el("green", "A") +
                               el("blue", "C") + el("orange", "G") + el("red", "T");
    const std::string row0 = el("blue", "1") + el("orange", "1") + "  " + el("blue", "1") + el("orange", "1") +
                             el("red", "1");
    const std::string row1 = el("blue", "1") + el("orange", "1") + el("red", "1") + el("green", "1");
    EXPECT_EQ(d.out, header + "\n" + row0 + "\n" + row1 + "\n");
    EXPECT_EQ(d.reads, (names{"a", "b", "c"}));
    EXPECT_EQ(colours, bases());
}

TEST(RenderFlowSpan, HtmlSpaceTwoColumnsPerFlow) {
    contig c = two_in_a_row();
    drawn d;
    colour_map colours = bases();
    c.print_flow_map_html_space(d.out, d.reads, colours, 2, 9);
    const std::string header = el("blue", "C") + " " + el("orange", "G") + " " + el("red", "T") + " " +
                               el("green", "A") + " " + el("blue", "C") + " " + el("orange", "G") + " " +
                               el("red", "T");
    // The space sits inside the element, except before a read's first flow.
    const std::string row0 = el("blue", "1") + el("orange", " 1") + "    " + el("blue", "1") + el("orange", " 1") +
                             el("red", " 1");
    const std::string row1 = el("blue", "1") + el("orange", " 1") + el("red", " 1") + el("green", " 1");
    EXPECT_EQ(d.out, header + "\n" + row0 + "\n" + row1 + "\n");
    EXPECT_EQ(d.reads, (names{"a", "b", "c"}));
}

TEST(RenderFlowSpan, HtmlSpaceReadThreePositionsLaterHasTwoSpacesPerFlow) {
    contig c = staggered();
    drawn d;
    colour_map colours = bases();
    c.print_flow_map_html_space(d.out, d.reads, colours, 1, 6);
    const std::string row1 = "      " + el("red", "1") + el("green", " 1") + el("blue", " 1");
    EXPECT_NE(d.out.find("\n" + row1 + "\n"), std::string::npos) << d.out;
}

TEST(RenderFlowSpan, HtmlAddsMissingLettersWithAnEmptyColour) {
    contig c = make_contig("ACGT", {{"r1", 1, "ACGT"}});
    drawn d;
    colour_map colours = {{'A', "green"}, {'1', "pink"}};
    c.print_flow_map_html(d.out, d.reads, colours, 1, 4);
    // The digit takes its flow letter's colour, never its own.
    EXPECT_EQ(d.out, el("green", "A") + el("", "C") + el("", "G") + el("", "T") + "\n" + el("green", "1") +
                         el("", "1") + el("", "1") + el("", "1") + "\n");
    EXPECT_EQ(colours, (colour_map{{'1', "pink"}, {'A', "green"}, {'C', ""}, {'G', ""}, {'T', ""}}));
}

TEST(RenderFlowSpan, HtmlSpaceAddsMissingLettersToo) {
    contig c = make_contig("AC", {{"r1", 1, "AC"}});
    drawn d;
    colour_map colours;
    c.print_flow_map_html_space(d.out, d.reads, colours, 1, 2);
    EXPECT_EQ(d.out, el("", "A") + " " + el("", "C") + "\n" + el("", "1") + el("", " 1") + "\n");
    EXPECT_EQ(colours.size(), 2u);
}

TEST(RenderFlowSpan, OutputAndReadListAreAppendedTo) {
    contig c = staggered();
    drawn d{"x", {"y"}};
    c.print_flow_map_plain(d.out, d.reads, 1, 6);
    EXPECT_EQ(d.out, "x A C G T A C\n 1 1 1 1 1 1\n       1 1 1\n");
    EXPECT_EQ(d.reads, (names{"y", "r1", "r2"}));
}

TEST(RenderFlowSpan, EmptyConsensusWithReadsDrawsTheFirstFlowT) {
    contig c = make_contig("", {{"r1", 1, "ACGT"}});
    // No row can be built; the span is cut to position 0, whose flow is the
    // first flow T.
    EXPECT_EQ(plain(c, 1, 4).out, " T\n");
}

TEST(RenderFlowSpan, FlowMissingFromTheFlowConsensusIsNotDrawn) {
    contig c = make_contig("ACGT", {{"r1", 1, "ACGT"}});
    c.create_flow_concensus();
    c.flow_consensus.resize(2);  // flows 2 (G) and 3 (T) no longer exist
    EXPECT_EQ(plain(c, 1, 4).out, " A C\n 1 1\n");
    drawn d;
    colour_map colours = bases();
    c.print_flow_map_html_space(d.out, d.reads, colours, 1, 4);
    EXPECT_EQ(d.out, el("green", "A") + " " + el("blue", "C") + "\n" + el("green", "1") + el("blue", " 1") + "\n");
}

}  // namespace
}  // namespace pelkrin::test
