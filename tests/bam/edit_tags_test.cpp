// NM and MD as samtools calmd works them out.
#include "bam/edit_tags.h"

#include <gtest/gtest.h>

namespace pelkrin::bam {
namespace {

std::vector<cigar_op> cigar(std::initializer_list<cigar_op> ops) { return ops; }

TEST(EditTags, MatchesMismatchesDeletionsAndInsertions) {
    //            ref: ACGTACGTAC
    const std::string ref = "ACGTACGTAC";
    EXPECT_EQ(edit_tags_of(cigar({{'M', 4}}), "CGTA", ref, 1).md, "4");
    const edit_tags mismatch = edit_tags_of(cigar({{'M', 4}}), "CGAA", ref, 1);
    EXPECT_EQ(mismatch.md, "2T1");
    EXPECT_EQ(mismatch.nm, 1);
    const edit_tags deletion = edit_tags_of(cigar({{'M', 2}, {'D', 2}, {'M', 2}}), "ACAC", ref, 0);
    EXPECT_EQ(deletion.md, "2^GT2");
    EXPECT_EQ(deletion.nm, 2);
    const edit_tags insertion = edit_tags_of(cigar({{'S', 1}, {'M', 2}, {'I', 3}, {'M', 1}}), "xACtttG", ref, 0);
    EXPECT_EQ(insertion.md, "3");
    EXPECT_EQ(insertion.nm, 3);
}

// calmd's rule: an N is never a match, not even over an N; a lower-case base
// is its capital; MD names the reference base in capitals.
TEST(EditTags, NIsNeverAMatchAndCaseDoesNotCount) {
    const edit_tags n = edit_tags_of(cigar({{'M', 3}}), "ANc", "aNC", 0);
    EXPECT_EQ(n.md, "1N1");
    EXPECT_EQ(n.nm, 1);
    EXPECT_EQ(edit_tags_of(cigar({{'M', 2}}), "AT", "ag", 0).md, "1G0");
}

}  // namespace
}  // namespace pelkrin::bam
