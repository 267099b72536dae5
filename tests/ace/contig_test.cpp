#include <gtest/gtest.h>

#include <type_traits>

#include "ace/contig.h"

namespace pelkrin {
namespace {

TEST(ContigRecord, NewContigHasConstructionValues) {
    const contig c;
    EXPECT_TRUE(c.name.empty());
    EXPECT_EQ(c.base_num, 0);
    EXPECT_EQ(c.read_num, 0);
    EXPECT_EQ(c.seg_num, 0);
    EXPECT_EQ(c.max_read_len, 0);
    EXPECT_EQ(c.min_read_len, 5000);
    EXPECT_EQ(c.avg_read_len, 0.0);
    EXPECT_TRUE(c.consensus.empty());
    EXPECT_EQ(c.uncomplemented, 0);
    EXPECT_TRUE(c.reads.empty());
    EXPECT_TRUE(c.pos_map.empty());
    EXPECT_TRUE(c.print_map.empty());
    EXPECT_TRUE(c.flow_index_map.empty());
    EXPECT_TRUE(c.flow_consensus.empty());
}

TEST(ContigRecord, FieldTypesHaveTheirFixedWidths) {
    const contig c;
    static_assert(std::is_same_v<decltype(contig::base_num), int32_t>);
    static_assert(std::is_same_v<decltype(contig::read_num), int32_t>);
    static_assert(std::is_same_v<decltype(contig::seg_num), int32_t>);
    static_assert(std::is_same_v<decltype(contig::max_read_len), int16_t>);
    static_assert(std::is_same_v<decltype(contig::min_read_len), int16_t>);
    static_assert(std::is_same_v<decltype(contig::avg_read_len), double>);
    static_assert(std::is_same_v<decltype(contig::uncomplemented), int32_t>);
    static_assert(std::is_same_v<decltype(contig::pos_map), std::multimap<int32_t, std::string>>);
    static_assert(std::is_same_v<decltype(contig::print_map), std::vector<std::map<int32_t, std::string>>>);
    static_assert(std::is_same_v<decltype(contig::flow_index_map), std::vector<std::map<char, int32_t>>>);
    static_assert(std::is_same_v<decltype(contig::reads), std::map<std::string, READ>>);
    static_assert(std::is_same_v<decltype(READ::pos), int32_t>);
    static_assert(std::is_same_v<decltype(READ::len), int16_t>);
    static_assert(std::is_same_v<decltype(READ::align_start), int16_t>);
    static_assert(std::is_same_v<decltype(READ::align_end), int16_t>);
    static_assert(std::is_same_v<decltype(READ::uncomplemented), int32_t>);
    EXPECT_EQ(c.read_num, 0);
}

TEST(ContigRecord, ReadMadeByLookupStartsAtZero) {
    contig c;
    const READ& r = c.reads["missing"];
    EXPECT_TRUE(r.name.empty());
    EXPECT_EQ(r.pos, 0);
    EXPECT_EQ(r.len, 0);
    EXPECT_TRUE(r.seq.empty());
    EXPECT_EQ(r.uncomplemented, 0);
    EXPECT_EQ(r.align_start, 0);
    EXPECT_EQ(r.align_end, 0);
}

contig filled_contig() {
    contig c;
    c.name = "Contig7";
    c.base_num = 6;
    c.read_num = 2;
    c.seg_num = 3;
    c.max_read_len = 5;
    c.min_read_len = 4;
    c.avg_read_len = 4.5;
    c.consensus = {'A', 'C', '*', 'G', 'T', 'T'};
    c.uncomplemented = 1;
    c.reads["r1"] = READ{"r1", 1, 5, {'A', 'C', '*', 'G', 'T'}, 1, 1, 5};
    c.reads["r2"] = READ{"r2", -1, 4, {'g', 'A', 'C', '*'}, 0, 2, 4};
    c.pos_map = {{1, "r1"}, {-1, "r2"}, {1, "r3"}};
    c.print_map = {{{-1, "r2"}}, {{1, "r1"}, {9, "r3"}}};
    c.flow_index_map = {{{'A', 2}}, {{'C', 3}, {'G', 7}}};
    c.flow_consensus = {'T', 'A', 'C', 'G'};
    return c;
}

void expect_same_fields(const contig& a, const contig& b) {
    EXPECT_EQ(a.name, b.name);
    EXPECT_EQ(a.base_num, b.base_num);
    EXPECT_EQ(a.read_num, b.read_num);
    EXPECT_EQ(a.seg_num, b.seg_num);
    EXPECT_EQ(a.max_read_len, b.max_read_len);
    EXPECT_EQ(a.min_read_len, b.min_read_len);
    EXPECT_EQ(a.avg_read_len, b.avg_read_len);
    EXPECT_EQ(a.consensus, b.consensus);
    EXPECT_EQ(a.uncomplemented, b.uncomplemented);
    EXPECT_EQ(a.reads, b.reads);
    EXPECT_EQ(a.pos_map, b.pos_map);
    EXPECT_EQ(a.print_map, b.print_map);
    EXPECT_EQ(a.flow_index_map, b.flow_index_map);
    EXPECT_EQ(a.flow_consensus, b.flow_consensus);
}

void expect_no_shared_storage(const contig& a, const contig& b) {
    EXPECT_NE(a.consensus.data(), b.consensus.data());
    EXPECT_NE(a.flow_consensus.data(), b.flow_consensus.data());
    EXPECT_NE(a.print_map.data(), b.print_map.data());
    EXPECT_NE(a.flow_index_map.data(), b.flow_index_map.data());
    EXPECT_NE(&a.reads.at("r1"), &b.reads.at("r1"));
    EXPECT_NE(a.reads.at("r1").seq.data(), b.reads.at("r1").seq.data());
    EXPECT_NE(&*a.pos_map.begin(), &*b.pos_map.begin());
    EXPECT_NE(&a.print_map[1].at(9), &b.print_map[1].at(9));
    EXPECT_NE(&a.flow_index_map[1].at('G'), &b.flow_index_map[1].at('G'));
}

TEST(ContigRecord, CopyEqualsSourceFieldByFieldAndSharesNoStorage) {
    const contig source = filled_contig();
    contig copy(source);
    expect_same_fields(copy, source);
    EXPECT_EQ(copy, source);
    expect_no_shared_storage(copy, source);

    // Changing the copy leaves the source as it was.
    copy.consensus[0] = 'N';
    copy.reads["r1"].seq[0] = 'N';
    copy.reads["r9"] = READ{};
    copy.pos_map.emplace(5, "r9");
    copy.print_map[0][-1] = "changed";
    copy.flow_index_map[0]['A'] = 99;
    copy.flow_consensus.push_back('T');
    const contig untouched = filled_contig();
    expect_same_fields(source, untouched);
    EXPECT_EQ(source.reads.size(), 2u);
    EXPECT_EQ(source.consensus[0], 'A');
    EXPECT_EQ(source.print_map[0].at(-1), "r2");
    EXPECT_EQ(source.flow_index_map[0].at('A'), 2);
}

TEST(ContigRecord, CopyAssignmentReplacesEveryField) {
    const contig source = filled_contig();
    contig target;
    target.name = "old";
    target.reads["old_read"] = READ{};
    target.uncomplemented = 0;
    target = source;
    expect_same_fields(target, source);
    EXPECT_EQ(target.reads.count("old_read"), 0u);
    expect_no_shared_storage(target, source);
}

TEST(ContigRecord, VectorGrowthKeepsWholeContigs) {
    std::vector<contig> contigs;
    for (int i = 0; i < 20; ++i) {
        contigs.push_back(filled_contig());
        contigs.back().base_num = i;
    }
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(contigs[static_cast<std::size_t>(i)].base_num, i);
        EXPECT_EQ(contigs[static_cast<std::size_t>(i)].reads.at("r2").seq, (std::vector<char>{'g', 'A', 'C', '*'}));
        EXPECT_EQ(contigs[static_cast<std::size_t>(i)].print_map[1].at(9), "r3");
    }
}

}  // namespace
}  // namespace pelkrin
