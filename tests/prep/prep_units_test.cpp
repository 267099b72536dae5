// Small pieces of Pelkrin-prep: base matching.
#include <gtest/gtest.h>

#include "common/fatal_error.h"
#include "files.h"
#include "prep/base_match.h"
#include "prep_fixture.h"

namespace pelkrin::test {
namespace {

TEST(PrepBaseMatch, EitherStrandEitherCaseWithoutPads) {
    prep::match_scratch scratch;
    EXPECT_TRUE(prep::bases_occur("cg*TA", "TTACGTAA", false, scratch));
    EXPECT_TRUE(prep::bases_occur("TACG*", "AACGTAA", true, scratch));  // reverse complement of CGTA
    EXPECT_FALSE(prep::bases_occur("GGGG", "ACGTACGT", false, scratch));
    EXPECT_FALSE(prep::bases_occur("ACGTACGTA", "ACGTACGT", false, scratch));
    // What an earlier, longer call left in the room changes nothing.
    EXPECT_TRUE(prep::bases_occur("acgtacgtacgtacgt", "TTTTACGTACGTACGTACGTTTTT", false, scratch));
    EXPECT_TRUE(prep::bases_occur("ta", "GCTA", false, scratch));
    EXPECT_FALSE(prep::bases_occur("tg", "GCTA", false, scratch));
    EXPECT_TRUE(prep::bases_occur("tA", "tagc", true, scratch));  // TA reversed and complemented: TA
}

}  // namespace
}  // namespace pelkrin::test
