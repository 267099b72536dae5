// The names of the reads in the order of the display rows.
#include <gtest/gtest.h>

#include "view_fixture.h"

namespace pelkrin::test {
namespace {

contig packing_example() {
    return make_contig(std::string(10, 'A'), {plain_read("A", 1, 5), plain_read("B", 3, 4), plain_read("C", 6, 3),
                                             plain_read("D", 3, 2)});
}

TEST(PrintReadIds, FollowTheLayoutNotTheNameOrder) {
    contig c = packing_example();
    std::vector<std::string> ids;
    c.get_read_ids(ids);
    EXPECT_EQ(ids, (std::vector<std::string>{"A", "C", "B", "D"}));
}

TEST(PrintReadIds, BuildTheLayoutOnceAndAppendOnASecondCall) {
    contig c = packing_example();
    std::vector<std::string> ids;
    c.get_read_ids(ids);
    c.get_read_ids(ids);
    EXPECT_EQ(ids, (std::vector<std::string>{"A", "C", "B", "D", "A", "C", "B", "D"}));
    EXPECT_EQ(c.print_map.size(), 3u);
    EXPECT_EQ(c.pos_map.size(), 4u);
}

TEST(PrintReadIds, VectorIsNotClearedFirst) {
    contig c = packing_example();
    std::vector<std::string> ids = {"earlier"};
    c.get_read_ids(ids);
    EXPECT_EQ(ids, (std::vector<std::string>{"earlier", "A", "C", "B", "D"}));
}

TEST(PrintReadIds, ContigWithoutReadsAppendsNothing) {
    contig c = make_contig("ACGT", {});
    std::vector<std::string> ids = {"kept"};
    c.get_read_ids(ids);
    EXPECT_EQ(ids, (std::vector<std::string>{"kept"}));
}

TEST(PrintReadIds, ReadsThatCanNeverBePlacedAreNotListed) {
    contig c = make_contig("ACGT", {plain_read("left", -2, 5), plain_read("in", 1, 2)});
    std::vector<std::string> ids;
    c.get_read_ids(ids);
    c.get_read_ids(ids);
    EXPECT_EQ(ids, (std::vector<std::string>{"in", "in"}));
    EXPECT_EQ(c.pos_map.size(), 2u);
}

}  // namespace
}  // namespace pelkrin::test
