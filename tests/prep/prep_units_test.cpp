// Small pieces of Pelkrin-prep: base segments, base matching, progress, gzip.
#include <gtest/gtest.h>

#include <sstream>

#include "common/fatal_error.h"
#include "files.h"
#include "prep/base_match.h"
#include "prep/base_segments.h"
#include "prep/gzip.h"
#include "prep/progress.h"
#include "prep_fixture.h"

namespace pelkrin::test {
namespace {

TEST(PrepBaseSegments, CoverTheConsensusFromReadsOverIt) {
    const auto s = prep::cover_consensus(100, {{"a", 1, 60}, {"b", 40, 100}, {"c", 50, 70}});
    ASSERT_EQ(s.size(), 2u);
    EXPECT_EQ(s[0].first, 1);
    EXPECT_EQ(s[0].last, 60);
    EXPECT_EQ(s[0].read, "a");
    EXPECT_EQ(s[1].first, 61);
    EXPECT_EQ(s[1].last, 100);
    EXPECT_EQ(s[1].read, "b");
    EXPECT_EQ(prep::base_segment_lines(s), "BS 1 60 a\nBS 61 100 b\n");
}

TEST(PrepBaseSegments, GapsAndReadsBeforeTheStart) {
    const auto s = prep::cover_consensus(50, {{"a", -10, 20}, {"b", 30, 50}});
    ASSERT_EQ(s.size(), 2u);
    EXPECT_EQ(s[0].last, 20);
    EXPECT_EQ(s[1].first, 21);  // nothing covers 21 to 29: the next read takes them
    EXPECT_EQ(s[1].last, 50);
    EXPECT_TRUE(prep::cover_consensus(10, {}).empty());
    EXPECT_EQ(prep::cover_consensus(0, {{"a", 1, 1}}).size(), 1u);
}

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

TEST(PrepProgress, ShownOnlyWhenAsked) {
    std::ostringstream err;
    {
        prep::progress p(err, "reading x", 1000, true);
        p.at(0);
        p.at(500);
        p.at(1000);
    }
    EXPECT_EQ(err.str(), "\rPelkrin-prep: reading x: 0%\rPelkrin-prep: reading x: 50%\rPelkrin-prep: reading x: 100%"
                         "\rPelkrin-prep: reading x: done\n");
    std::ostringstream quiet;
    {
        prep::progress p(quiet, "reading x", 1000, false);
        p.at(500);
    }
    EXPECT_EQ(quiet.str(), "");
}

TEST(PrepGzip, InflatesMembersAndRefusesDamage) {
    const std::string text = "hello, flowgrams\n";
    const std::string two = gzipped(text) + gzipped(text);
    const auto out = prep::gunzip(bytes_of(two), "t.gz", nullptr);
    EXPECT_EQ(std::string(out.begin(), out.end()), text + text);
    const std::string gz = gzipped(text);
    EXPECT_THROW(prep::gunzip(bytes_of(gz.substr(0, gz.size() / 2)), "t.gz", nullptr), fatal_error);
    try {
        prep::gunzip(bytes_of(gz + "xyz"), "t.gz", nullptr);
        FAIL();
    } catch (const fatal_error& e) {
        EXPECT_NE(std::string(e.message()).find("t.gz: byte "), std::string::npos) << e.message();
    }
}

}  // namespace
}  // namespace pelkrin::test
