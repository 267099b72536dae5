// Small pieces of the lenient readings: base segments made for a file
// without them, and gzip.
#include <gtest/gtest.h>

#include <string>

#include "common/fatal_error.h"
#include "files.h"
#include "gzip_fixture.h"
#include "lenient/base_segments.h"
#include "lenient/gzip.h"

namespace pelkrin::test {
namespace {

TEST(LenientBaseSegments, CoverTheConsensusFromReadsOverIt) {
    const auto s = cover_consensus(100, {{"a", 1, 60}, {"b", 40, 100}, {"c", 50, 70}});
    ASSERT_EQ(s.size(), 2u);
    EXPECT_EQ(s[0].first, 1);
    EXPECT_EQ(s[0].last, 60);
    EXPECT_EQ(s[0].read, "a");
    EXPECT_EQ(s[1].first, 61);
    EXPECT_EQ(s[1].last, 100);
    EXPECT_EQ(s[1].read, "b");
    EXPECT_EQ(base_segment_lines(s), "BS 1 60 a\nBS 61 100 b\n");
}

TEST(LenientBaseSegments, GapsAndReadsBeforeTheStart) {
    const auto s = cover_consensus(50, {{"a", -10, 20}, {"b", 30, 50}});
    ASSERT_EQ(s.size(), 2u);
    EXPECT_EQ(s[0].last, 20);
    EXPECT_EQ(s[1].first, 21);  // nothing covers 21 to 29: the next read takes them
    EXPECT_EQ(s[1].last, 50);
    EXPECT_TRUE(cover_consensus(10, {}).empty());
    EXPECT_EQ(cover_consensus(0, {{"a", 1, 1}}).size(), 1u);
}

TEST(LenientGzip, InflatesMembersAndRefusesDamage) {
    const std::string text = "hello, flowgrams\n";
    const std::string two = gzipped(text) + gzipped(text);
    const auto out = gunzip(bytes_of(two), "t.gz", nullptr);
    EXPECT_EQ(std::string(out.begin(), out.end()), text + text);
    const std::string gz = gzipped(text);
    EXPECT_THROW(gunzip(bytes_of(gz.substr(0, gz.size() / 2)), "t.gz", nullptr), fatal_error);
    try {
        gunzip(bytes_of(gz + "xyz"), "t.gz", nullptr);
        FAIL();
    } catch (const fatal_error& e) {
        EXPECT_NE(std::string(e.message()).find("t.gz: byte "), std::string::npos) << e.message();
    }
    // The program whose messages name the file stands before it.
    try {
        gunzip(bytes_of(gz + "xyz"), "t.gz", nullptr, "Pelkrin-bam");
        FAIL();
    } catch (const fatal_error& e) {
        EXPECT_EQ(std::string(e.message()).rfind("Pelkrin-bam: t.gz: byte ", 0), 0u) << e.message();
    }
}

}  // namespace
}  // namespace pelkrin::test
