// The colouring primitive and the drawing of flow counts.
#include <gtest/gtest.h>

#include "view_fixture.h"
#include "views/count_digit.h"
#include "views/flow_runs.h"

namespace pelkrin::test {
namespace {

TEST(RenderToHtml, ColourExampleAACAWithRedA) {
    std::string out;
    contig::toHTML(out, chars("AACA"), {{'A', "red"}});
    EXPECT_EQ(out, "<font color=red>AA</font>C<font color=red>A</font>");
}

TEST(RenderToHtml, RunsOfTwoColouredLetters) {
    std::string out;
    contig::toHTML(out, chars("AAC"), {{'A', "red"}, {'C', "blue"}});
    EXPECT_EQ(out, "<font color=red>AA</font><font color=blue>C</font>");
}

TEST(RenderToHtml, ColourTextIsWrittenVerbatimAndNothingIsAdded) {
    std::string out = "before:";
    const colour_map colours = {{'*', "\"#808080\""}};
    contig::toHTML(out, chars("a**T"), colours);
    EXPECT_EQ(out, "before:a<font color=\"#808080\">**</font>T");
    EXPECT_EQ(colours.size(), 1u);
}

TEST(RenderToHtml, CaseCountsAndEmptyInputWritesNothing) {
    std::string out;
    contig::toHTML(out, chars("aA"), {{'A', "red"}});
    EXPECT_EQ(out, "a<font color=red>A</font>");
    contig::toHTML(out, {}, {{'A', "red"}});
    EXPECT_EQ(out, "a<font color=red>A</font>");
}

TEST(RenderCountDigit, CountsFromZeroToNineAreDecimalDigits) {
    EXPECT_EQ(count_digit(0), '0');
    EXPECT_EQ(count_digit(1), '1');
    EXPECT_EQ(count_digit(9), '9');
}

TEST(RenderCountDigit, CountTwelveIsDrawnAsC) { EXPECT_EQ(count_digit(12), 'C'); }

TEST(RenderCountDigit, LargerCountsRunOnThroughTheCharacterTable) {
    EXPECT_EQ(count_digit(10), 'A');
    EXPECT_EQ(count_digit(15), 'F');
    EXPECT_EQ(count_digit(35), 'Z');
    EXPECT_EQ(count_digit(36), '[');
}

TEST(FlowRuns, PlainCountSkipsNsPastTheBound) {
    const std::vector<char> seq = chars("ANNC");
    int64_t j = 1;
    EXPECT_EQ(count_flow_plain(seq, j, 0, 'C'), 1);
    EXPECT_EQ(j, 4);
    j = 1;
    EXPECT_EQ(count_flow(seq, j, 0, 'C'), 0);
    EXPECT_EQ(j, 1);
}

TEST(FlowRuns, PlainCountTestsTheBoundOnlyAfterABase) {
    const std::vector<char> seq = chars("AGG");
    int64_t j = 1;
    EXPECT_EQ(count_flow_plain(seq, j, 0, 'G'), 1);  // one base past j1, then the bound stops it
    EXPECT_EQ(j, 2);
    j = 1;
    EXPECT_EQ(count_flow_plain(seq, j, 0, '*'), 0);
}

TEST(FlowRuns, CountPassesPadsAndStopsAtTheEndOfTheBases) {
    const std::vector<char> seq = chars("A*A*");
    int64_t j = 0;
    EXPECT_EQ(count_flow(seq, j, 10, 'A'), 2);
    EXPECT_EQ(j, 4);
    j = 0;
    EXPECT_EQ(count_flow_plain(seq, j, 10, 'A'), 2);
    EXPECT_EQ(j, 4);
}

TEST(FlowRuns, WideningOverRunsAndPads) {
    const std::vector<char> seq = chars("AGGG*TT");
    // Left to the first G, right to the last G.
    run_range r = widen_to_runs(seq, 2, 2, 7);
    EXPECT_EQ(r.j0, 1);
    EXPECT_EQ(r.j1, 3);
    // A pad at the left end goes back to the read's first base, one at the
    // right end on to its last.
    r = widen_to_runs(seq, 4, 4, 7);
    EXPECT_EQ(r.j0, 0);
    EXPECT_EQ(r.j1, 6);
    // No widening left of index 0.
    r = widen_to_runs(seq, 0, 0, 7);
    EXPECT_EQ(r.j0, 0);
    EXPECT_EQ(r.j1, 0);
}

TEST(FlowRuns, WideningStopsAtTheEndOfTheBases) {
    const std::vector<char> seq = chars("A**");
    const run_range r = widen_to_runs(seq, 1, 1, 9);
    EXPECT_EQ(r.j0, 0);
    EXPECT_EQ(r.j1, 2);
}

}  // namespace
}  // namespace pelkrin::test
