// Display rows by read number are the print map's rows.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "view_fixture.h"
#include "views/display_rows.h"

namespace pelkrin::test {
namespace {

// The print map's rows with each name replaced by its read's number.
std::vector<std::vector<row_read>> print_rows(contig c) {
    c.create_print_map();
    std::map<std::string, uint32_t> number;
    for (const auto& named : c.reads) number.emplace(named.first, static_cast<uint32_t>(number.size()));
    std::vector<std::vector<row_read>> rows;
    for (const auto& print_row : c.print_map) {
        auto& row = rows.emplace_back();
        for (const auto& [pos, name] : print_row) row.push_back({pos, number.at(name)});
    }
    return rows;
}

TEST(DisplayRows, PackingExampleGivesThreeRows) {
    const contig c = make_contig(std::string(10, 'A'), {plain_read("A", 1, 5), plain_read("B", 3, 4),
                                                       plain_read("C", 6, 3), plain_read("D", 3, 2)});
    const std::vector<std::vector<row_read>> expected = {{{1, 0}, {6, 2}}, {{3, 1}}, {{3, 3}}};
    EXPECT_EQ(display_rows(c), expected);
    EXPECT_TRUE(c.print_map.empty());
    EXPECT_TRUE(c.pos_map.empty());
}

TEST(DisplayRows, AReadOfNoLengthGivesItsPlaceToTheNextOfItsStart) {
    // "a" ends before it starts, so the pass places "b" at the same start,
    // which takes the row's place of that start.
    const contig c = make_contig(std::string(10, 'A'), {read_plan("a", 4, "", 0), read_plan("b", 4, "ACG", 3)});
    EXPECT_EQ(display_rows(c), (std::vector<std::vector<row_read>>{{{4, 1}}}));
    EXPECT_EQ(display_rows(c), print_rows(c));
}

TEST(DisplayRows, MatchTheRowsOfThePrintMapOnRandomContigs) {
    std::mt19937 random(5);
    auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    for (int n = 0; n < 3000; ++n) {
        const int length = below(40);
        std::vector<read_plan> reads;
        const int count = below(30);
        for (int r = 0; r < count; ++r) {
            const int len = below(8) == 0 ? below(6) - 3 : 1 + below(15);
            reads.emplace_back(std::string("r").append(std::to_string(below(40))), below(length + 12) - 6, "A",
                               static_cast<int16_t>(len));
        }
        contig c = make_contig(std::string(static_cast<std::size_t>(length), 'A'), reads);
        if (below(6) == 0) c.base_num = below(50) - 5;
        ASSERT_EQ(display_rows(c), print_rows(c)) << n;
    }
}

TEST(DisplayRows, ContigWithoutReadsHasNoRows) {
    EXPECT_TRUE(display_rows(make_contig("ACGT", {})).empty());
}

}  // namespace
}  // namespace pelkrin::test
