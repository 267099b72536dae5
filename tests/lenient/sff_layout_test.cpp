// The SFF walk: byte orders, index blocks wherever they stand, files one
// after the other, stray bytes and files cut short.
#include <gtest/gtest.h>

#include "common/fatal_error.h"
#include "files.h"
#include "lenient/sff_layout.h"
#include "sff_writer.h"

namespace pelkrin::test {
namespace {

sff_fixture three_reads() {
    sff_fixture f;
    f.flows = 8;
    f.reads.push_back(read_from_flows("r1", {0, 2, 4}, {30, 31, 32}, 8));
    f.reads.push_back(read_from_flows("r2", {1, 3}, {20, 21}, 8));
    f.reads.push_back(read_from_flows("r3", {0, 1, 2, 3, 5}, {10, 11, 12, 13, 14}, 8));
    return f;
}

sff_layout scan(const std::string& bytes) { return scan_sff(bytes_of(bytes), "t.sff"); }

TEST(PrepSffLayout, IndexBlockIsFoundWhereverItStands) {
    const index_place expected[] = {index_place::before_reads, index_place::among_reads,
                                          index_place::among_reads, index_place::after_reads};
    for (const bool big : {true, false}) {
        for (std::size_t at = 0; at <= 3; ++at) {
            SCOPED_TRACE(at);
            sff_fixture f = three_reads();
            f.big_endian = big;
            f.index_block_before = at;
            const sff_bytes b = build_sff(f);
            const auto l = scan(b.bytes);
            ASSERT_TRUE(l.stopped.empty()) << l.stopped;
            ASSERT_EQ(l.parts.size(), 1u);
            EXPECT_EQ(l.parts[0].big_endian, big);
            EXPECT_EQ(l.parts[0].index, expected[at]);
            ASSERT_EQ(l.records.size(), 3u);
            for (std::size_t i = 0; i < 3; ++i) {
                EXPECT_EQ(static_cast<std::int64_t>(l.records[i].offset), b.record_offsets[i]);
                EXPECT_EQ(l.key(bytes_of(b.bytes), l.records[i]), f.reads[i].name);
            }
            EXPECT_EQ(l.stray_bytes, 0u);
        }
    }
}

TEST(PrepSffLayout, SecondFileAndStrayBytes) {
    const std::string one = build_sff(three_reads()).bytes;
    sff_fixture little = three_reads();
    little.big_endian = false;
    const std::string two = build_sff(little).bytes;
    auto l = scan(one + two);
    ASSERT_EQ(l.parts.size(), 2u);
    EXPECT_EQ(l.parts[1].start, one.size());
    EXPECT_FALSE(l.parts[1].big_endian);
    EXPECT_EQ(l.records.size(), 6u);
    l = scan(one + "garbage!");
    EXPECT_EQ(l.parts.size(), 1u);
    EXPECT_EQ(l.stray_bytes, 8u);
    EXPECT_EQ(l.stray_offset, one.size());
    l = scan(one + std::string(5, '\0'));
    EXPECT_EQ(l.stray_bytes, 0u);
}

TEST(PrepSffLayout, CutShortStopsWithTheOffset) {
    const sff_bytes b = build_sff(three_reads());
    const auto l = scan(b.bytes.substr(0, static_cast<std::size_t>(b.record_offsets[2]) + 20));
    EXPECT_EQ(l.records.size(), 2u);
    EXPECT_EQ(static_cast<std::int64_t>(l.stopped_at), b.record_offsets[2]);
    EXPECT_NE(l.stopped.find("read 3 of 3"), std::string::npos) << l.stopped;
    EXPECT_THROW(scan("not an sff file"), fatal_error);
    EXPECT_THROW(scan(b.bytes.substr(0, 20)), fatal_error);
}

}  // namespace
}  // namespace pelkrin::test
