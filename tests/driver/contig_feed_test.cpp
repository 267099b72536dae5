#include "driver/contig_feed.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "common/fatal_error.h"
#include "run_fixture.h"

namespace pelkrin {
namespace {

std::vector<std::string> names_of(const contig_names& c) {
    std::vector<std::string> names;
    for (std::size_t i = 0; i < c.reads(); ++i) names.emplace_back(c.read_name(i));
    return names;
}

TEST(ContigFeed, ContigsInFileOrderWithTheirReadsInNameOrder) {
    const std::string ace = test::ace_file({test::ace_contig("C1", {"rb", "ra"}), test::ace_contig("C2", {}),
                                            test::ace_contig("C3", {"rc"})});
    std::ostringstream dropped;
    aceReader reader("in.ace", ace, console{dropped, dropped});
    contig_feed feed(reader);
    contig_names c;
    ASSERT_TRUE(feed.next(c));
    EXPECT_EQ(c.name, "C1");
    EXPECT_EQ(names_of(c), (std::vector<std::string>{"ra", "rb"}));
    ASSERT_TRUE(feed.next(c));
    EXPECT_EQ(c.name, "C2");
    EXPECT_EQ(c.reads(), 0u);
    ASSERT_TRUE(feed.next(c));
    EXPECT_EQ(names_of(c), (std::vector<std::string>{"rc"}));
    EXPECT_FALSE(feed.next(c));
    EXPECT_FALSE(feed.next(c)) << "and again";
    EXPECT_FALSE(reader.ended_inside_contig());
}

TEST(ContigFeed, AMalformedContigThrowsInItsPlace) {
    std::string bad = test::ace_contig("C2", {"rx"});
    bad.replace(bad.find("BS "), 2, "ZZ");
    const std::string ace = test::ace_file({test::ace_contig("C1", {"ra"}), bad, test::ace_contig("C3", {"rc"})});
    std::ostringstream dropped;
    aceReader reader("in.ace", ace, console{dropped, dropped});
    contig_feed feed(reader);
    contig_names c;
    ASSERT_TRUE(feed.next(c));
    EXPECT_EQ(c.name, "C1");
    try {
        feed.next(c);
        ADD_FAILURE() << "no error";
    } catch (const fatal_error& e) {
        EXPECT_STREQ(e.message(), "Error: tag 'ZZ' should be not in the ACE file!\n");
    }
}

TEST(ContigFeed, AFileEndingInsideAContigEndsTheFeed) {
    std::string ace = test::ace_file({test::ace_contig("C1", {"ra"}), test::ace_contig("C2", {"rb"})});
    ace.resize(ace.find("CO C2") + 20);
    std::ostringstream dropped;
    aceReader reader("in.ace", ace, console{dropped, dropped});
    contig_feed feed(reader);
    contig_names c;
    ASSERT_TRUE(feed.next(c));
    EXPECT_FALSE(feed.next(c));
    EXPECT_TRUE(reader.ended_inside_contig());
    EXPECT_EQ(reader.unfinished_contig(), "C2");
}

TEST(ContigFeed, LeftBeforeTheEnd) {
    std::vector<std::string> contigs;
    for (int i = 0; i < 2000; ++i) contigs.push_back(test::ace_contig(std::string("C").append(std::to_string(i)), {"r"}));
    const std::string ace = test::ace_file(contigs);
    std::ostringstream dropped;
    aceReader reader("in.ace", ace, console{dropped, dropped});
    contig_feed feed(reader);
    contig_names c;
    ASSERT_TRUE(feed.next(c));
    feed.cancel();
    EXPECT_FALSE(feed.next(c));
}

// Names held in the feed are counted by the memory they take, and a contig
// whose names take more than the feed holds (a name of 33 MB) still passes,
// alone, between contigs that wait for room.
TEST(ContigFeed, AContigLargerThanTheFeedStillPasses) {
    const std::string long_name(33u << 20, 'n');
    std::vector<std::string> contigs;
    for (int i = 0; i < 6; ++i) {
        contigs.push_back(test::ace_contig((i % 2 == 0 ? long_name : "C") + std::to_string(i), {"r"}));
    }
    const std::string ace = test::ace_file(contigs);
    std::ostringstream dropped;
    aceReader reader("in.ace", ace, console{dropped, dropped});
    contig_feed feed(reader);
    contig_names c;
    for (int i = 0; i < 6; ++i) {
        ASSERT_TRUE(feed.next(c)) << i;
        EXPECT_EQ(c.name, (i % 2 == 0 ? long_name : "C") + std::to_string(i));
    }
    EXPECT_FALSE(feed.next(c));
    EXPECT_FALSE(reader.ended_inside_contig());
}

}  // namespace
}  // namespace pelkrin
