// A span of the alignment in base space as plain text and HTML.
#include <gtest/gtest.h>

#include "view_fixture.h"

namespace pelkrin::test {
namespace {

drawn plain(contig& c, int32_t start, int32_t width) {
    drawn d;
    c.print_align_map_plain(d.out, d.reads, start, width);
    return d;
}

drawn html(contig& c, const colour_map& colours, int32_t start, int32_t width) {
    drawn d;
    c.print_align_map_html(d.out, d.reads, colours, start, width);
    return d;
}

contig two_rows() { return make_contig("ACGTACGT", {{"r1", 1, "ACGT"}, {"r2", 4, "TACG"}}); }

TEST(RenderAlignSpan, ReadAtTheFirstPositionHasNoSpacesOneThreeLaterHasThree) {
    contig c = two_rows();
    const drawn d = plain(c, 1, 8);
    EXPECT_EQ(d.out, "ACGTACGT\nACGT\n   TACG\n");
    EXPECT_EQ(d.reads, (names{"r1", "r2"}));
}

TEST(RenderAlignSpan, ReadBeginningBeforeTheSpanIsDrawnFromItsFirstPosition) {
    contig c = two_rows();
    const drawn d = plain(c, 3, 4);
    // r1 from position 3; r2 begins at 4, within the last 3 positions of
    // the span, and is neither drawn nor listed; its row adds no line.
    EXPECT_EQ(d.out, "GTAC\nGT\n");
    EXPECT_EQ(d.reads, (names{"r1"}));
}

TEST(RenderAlignSpan, SpacesBeforeASecondReadCountFromTheFirstOnesLastDrawnPosition) {
    contig c = make_contig("ACGTACGTAC", {{"a", 1, "ACG"}, {"b", 6, "CGT"}});
    const drawn d = plain(c, 2, 9);
    EXPECT_EQ(d.out, "CGTACGTAC\nCG  CGT\n");
    EXPECT_EQ(d.reads, (names{"a", "b"}));
}

TEST(RenderAlignSpan, RowWithoutReadsInTheSpanAddsNoLine) {
    contig c = make_contig("ACGTACGTAC", {{"a", 1, "ACG"}, {"b", 2, "CGT"}, {"c", 8, "TAC"}});
    // Rows {1: a, 8: c} and {2: b}; the span 8 to 10 shows only c.
    const drawn d = plain(c, 8, 3);
    EXPECT_EQ(d.out, "TAC\nTAC\n");
    EXPECT_EQ(d.reads, (names{"c"}));
}

TEST(RenderAlignSpan, ReadRunningPastTheConsensusIsDrawnFromItsOwnBases) {
    contig c = make_contig("ACG", {{"r1", 2, "CGTT"}, {"r2", 1, "A"}});
    const drawn d = plain(c, 1, 5);
    EXPECT_EQ(d.out, "ACG\nACGTT\n");
    EXPECT_EQ(d.reads, (names{"r2", "r1"}));
}

TEST(RenderAlignSpan, SpanStartingAfterTheConsensusHasAnEmptyHeader) {
    contig c = make_contig("ACGT", {{"r1", 1, "ACGT"}});
    EXPECT_EQ(plain(c, 6, 3).out, "\n");
}

TEST(RenderAlignSpan, PadsAndCaseAreDrawnAsStored) {
    contig c = make_contig("AC*T", {{"r1", 1, "ac*t"}});
    EXPECT_EQ(plain(c, 1, 4).out, "AC*T\nac*t\n");
}

TEST(RenderAlignSpan, ReadShorterThanItsLengthDrawsTheBasesItHas) {
    contig c = make_contig("ACGT", {{"r1", 1, "AC", int16_t{4}}, {"r2", 4, "T"}});
    // r1 ends, by its length, at 4, so r2 goes to the next row.
    const drawn d = plain(c, 1, 4);
    EXPECT_EQ(d.out, "ACGT\nAC\n   T\n");
}

TEST(RenderAlignSpan, OutputAndReadListAreAppendedTo) {
    contig c = two_rows();
    drawn d{"old\n", {"old"}};
    c.print_align_map_plain(d.out, d.reads, 1, 8);
    EXPECT_EQ(d.out, "old\nACGTACGT\nACGT\n   TACG\n");
    EXPECT_EQ(d.reads, (names{"old", "r1", "r2"}));
    EXPECT_EQ(c.print_map.size(), 2u);
}

TEST(RenderAlignSpan, HtmlColoursHeaderAndReadsSpacesStayOutside) {
    contig c = make_contig("ACGTACGTAC", {{"a", 1, "ACG"}, {"b", 6, "CGT"}});
    const drawn d = html(c, {{'C', "blue"}}, 2, 9);
    EXPECT_EQ(d.out,
              "<font color=blue>C</font>GTA<font color=blue>C</font>GTA<font color=blue>C</font>\n"
              "<font color=blue>C</font>G  <font color=blue>C</font>GT\n");
    EXPECT_EQ(d.reads, (names{"a", "b"}));
}

TEST(RenderAlignSpan, HtmlWithoutColoursIsThePlainText) {
    contig c = two_rows();
    EXPECT_EQ(html(c, {}, 1, 8).out, plain(c, 1, 8).out);
}

}  // namespace
}  // namespace pelkrin::test
