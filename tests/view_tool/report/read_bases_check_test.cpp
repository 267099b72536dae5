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

TEST(ReadBasesCheck, NoCalledBasesAreFoundInAnyRead) {
    EXPECT_TRUE(entry_carries_read_bases("", 8, bases("ACGT")));
    EXPECT_TRUE(entry_carries_read_bases("", 0, bases("")));
    EXPECT_FALSE(entry_carries_read_bases("1", 8, bases("")));
    EXPECT_FALSE(entry_carries_read_bases("1", 8, bases("**")));
}

// The assembly's read is most often just the called bases: compared whole on
// either strand; one that is longer or holds them elsewhere is searched.
TEST(ReadBasesCheck, TheWholeReadAndAPartOfItAreFoundAlike) {
    for (const bool other_first : {false, true}) {
        EXPECT_TRUE(entry_carries_read_bases("0\t1\t2\t3\t3", 8, bases("T*ACGG"), other_first));
        EXPECT_TRUE(entry_carries_read_bases("0\t1\t2\t3\t3", 8, bases("CCGTA"), other_first));
        EXPECT_TRUE(entry_carries_read_bases("0\t1\t2\t3\t3", 8, bases("aTACGGa*"), other_first));
        EXPECT_TRUE(entry_carries_read_bases("0\t1\t2\t3\t3", 8, bases("GCCGTAC"), other_first));
        EXPECT_FALSE(entry_carries_read_bases("0\t1\t2\t3\t3", 8, bases("TACG"), other_first));
        EXPECT_FALSE(entry_carries_read_bases("0\t1\t2\t3\t4", 8, bases("TACGGG*T"), other_first));
        EXPECT_FALSE(entry_carries_read_bases("0\t1\t2\t3\t1234", 8, bases("TACGG"), other_first));
        EXPECT_TRUE(entry_carries_read_bases("996\t1001\t1002\t1003", 1004, bases("TACG"), other_first));
    }
}

}  // namespace
}  // namespace pelkrin::test
