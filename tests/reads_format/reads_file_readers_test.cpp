// Reading back Pelkrin's location index and reads file, as the report does.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <string>

#include "reads_format/qdx_index.h"
#include "reads_format/read_block.h"

namespace pelkrin::test {
namespace {

TEST(QdxIndex, ReadsEveryWellFormedLine) {
    const auto entries = parse_qdx("Contig1\t13\t2\t1\nContig2\t66\t1\t3\r\n");
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0].contig_name, "Contig1");
    EXPECT_EQ(entries[0].offset, 13);
    EXPECT_EQ(entries[0].read_count, 2u);
    EXPECT_EQ(entries[0].lines_per_read, 1);
    EXPECT_EQ(entries[1].contig_name, "Contig2");
    EXPECT_EQ(entries[1].lines_per_read, 3);
}

TEST(QdxIndex, ANameMayHoldTabsAndBadLinesAreLeftOut) {
    const auto entries = parse_qdx("a\tb\t5\t1\t1\nno numbers\nx\t-1\t1\t1\ny\t5\t1\t0\nz\t5\t1\nw\t5x\t1\t1\n");
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0].contig_name, "a\tb");
}

TEST(QdxIndex, FindsByPlaceThenByName) {
    const qdx_table table = make_qdx_table(parse_qdx("A\t1\t0\t1\nB\t2\t0\t1\nA\t3\t0\t1\n"));
    EXPECT_EQ(find_qdx_entry(table, 2, "A")->offset, 3);
    EXPECT_EQ(find_qdx_entry(table, 1, "A")->offset, 1);
    EXPECT_EQ(find_qdx_entry(table, 9, "B")->offset, 2);
    EXPECT_EQ(find_qdx_entry(table, 0, "C"), nullptr);
}

// An index in the reverse order of the ACE file: every contig is found by
// name, the first entry of a repeated name wins, and the look-ups take no
// pass over the entries each (100,000 contigs in well under a second).
TEST(QdxIndex, AnIndexInAnotherOrderIsSearchedByName) {
    constexpr std::size_t contigs = 100000;
    std::string text;
    for (std::size_t i = contigs; i-- > 0;) {
        text.append("Contig").append(std::to_string(i)).append("\t").append(std::to_string(i * 10)).append("\t1\t3\n");
    }
    text.append("Contig7\t5\t1\t3\n");
    const qdx_table table = make_qdx_table(parse_qdx(text));
    const auto start = std::chrono::steady_clock::now();
    for (std::size_t i = 0; i < contigs; ++i) {
        const std::string name = std::string("Contig").append(std::to_string(i));
        const qdx_entry* entry = find_qdx_entry(table, i, name);
        ASSERT_NE(entry, nullptr) << name;
        ASSERT_EQ(entry->offset, static_cast<std::int64_t>(i * 10)) << name;
    }
    EXPECT_LT(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(), 1.0);
}

TEST(ReadBlock, TakesTheEntriesUpToTheNextContig) {
    const std::string text = "readA\t1\n35\t35\n0\t2\n101\t2\t98\nreadB\t1\n\n\n7\n>Contig2\t1\t3\nreadC\t1\n1\n2\n3\n";
    const auto entries = parse_read_block(text, 5, 3);
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0].name, "readA");
    EXPECT_EQ(entries[0].lines[2], "101\t2\t98");
    EXPECT_EQ(entries[1].name, "readB");
    EXPECT_EQ(entries[1].lines[0], "");
    EXPECT_EQ(entries[1].lines[2], "7");
}

TEST(ReadBlock, StopsAtTheCountAndAtAnEntryCutShort) {
    EXPECT_EQ(parse_read_block("a\t1\n1\nb\t1\n2\n", 1, 1).size(), 1u);
    EXPECT_EQ(parse_read_block("a\t1\n1\n2\nb\t1\n2", 9, 2).size(), 1u);
    EXPECT_TRUE(parse_read_block("a\t1\n1\n", 9, 0).empty());
}

}  // namespace
}  // namespace pelkrin::test
