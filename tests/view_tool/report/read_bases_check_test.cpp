// Whether a flowgram entry of the reads file is the read's own: the bases its
// flow indexes call, found in the read's bases in the assembly.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "view_tool/report/read_bases_check.h"

namespace pelkrin::test {
namespace {

std::vector<char> bases(const std::string& text) { return {text.begin(), text.end()}; }

// Flows 0 to 7 are T A C G T A C G.
TEST(ReadBasesCheck, CalledBasesFoundInTheReadAreItsOwn) {
    EXPECT_TRUE(entry_carries_read_bases("1\t2\t3\t4", 8, bases("GGACGTGG")));   // A C G T, in the middle
    EXPECT_TRUE(entry_carries_read_bases("0\t0\t2", 8, bases("TTC")));           // a run of two: two bases of one flow
    EXPECT_TRUE(entry_carries_read_bases("5\t6\t7", 8, bases("a*c**g")));        // pads out, case ignored
    EXPECT_FALSE(entry_carries_read_bases("5\t6\t7", 8, bases("ACTG")));
}

TEST(ReadBasesCheck, CalledBasesFoundOnTheOtherStrandAreItsOwn) {
    // A A C is G T T on the other strand.
    EXPECT_TRUE(entry_carries_read_bases("1\t1\t2", 8, bases("CCGT*TCC")));
    EXPECT_FALSE(entry_carries_read_bases("1\t1\t2", 8, bases("CCTTGCC")));
}

// What Pelkrin writes for a read that the SFF file does not hold: one base,
// called at flow -1 (a zero flow index byte) or at some flow of the start of
// the file.
TEST(ReadBasesCheck, ABaseCalledAtNoFlowIsNotTheReads) {
    EXPECT_FALSE(entry_carries_read_bases("-1", 8, bases("ACGTACGT")));
    EXPECT_FALSE(entry_carries_read_bases("0\t-1", 8, bases("ACGTACGT")));
    EXPECT_FALSE(entry_carries_read_bases("8", 8, bases("ACGTACGT")));   // past the last of 8 flows
    EXPECT_FALSE(entry_carries_read_bases("0", 0, bases("ACGTACGT")));   // no flowgram values
    EXPECT_FALSE(entry_carries_read_bases("99999999999999999999999", 8, bases("T")));
    EXPECT_FALSE(entry_carries_read_bases("0", 8, bases("CCCC")));       // T: no strand has one
    EXPECT_TRUE(entry_carries_read_bases("0", 8, bases("CCAC")));        // T: on the other strand
    EXPECT_TRUE(entry_carries_read_bases("6", 8, bases("CCCC")));        // C
}

TEST(ReadBasesCheck, NoCalledBasesAndDamagedLinesAreNotJudged) {
    EXPECT_TRUE(entry_carries_read_bases("", 8, bases("ACGT")));
    EXPECT_TRUE(entry_carries_read_bases("", 0, bases("")));
    EXPECT_TRUE(entry_carries_read_bases("1\tx", 8, bases("CCCC")));
    EXPECT_TRUE(entry_carries_read_bases("1\t\t2", 8, bases("CCCC")));
    EXPECT_FALSE(entry_carries_read_bases("1", 8, bases("")));
}

}  // namespace
}  // namespace pelkrin::test
