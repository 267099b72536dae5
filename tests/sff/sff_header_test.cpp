#include "sff/sff_header.h"

#include <gtest/gtest.h>

#include <sstream>

#include "capture.h"
#include "files.h"
#include "sff/reader.h"
#include "sff_writer.h"

namespace pelkrin {
namespace {

using test::build_sff;
using test::sff_fixture;

sff_fixture two_reads(bool big_endian) {
    sff_fixture f;
    f.big_endian = big_endian;
    f.reads.push_back(test::read_from_flows("r1", {0, 2, 2, 5}, {30, 31, 32, 33}, 8));
    f.reads.push_back(test::read_from_flows("r2", {1, 3}, {20, 21}, 8));
    return f;
}

TEST(SffHeaderEdge, StandardMagicDecodesBigEndian) {
    sff_fixture f = two_reads(true);
    f.index_length = 0x01020304;
    reader r("in.sff", test::bytes_of(build_sff(f).bytes), test::std_console());
    ASSERT_EQ(r.get_header(), 1);
    EXPECT_EQ(r.swap_bytes, 1);
    EXPECT_EQ(r.header_p1.index_length, 0x01020304u);
    EXPECT_EQ(r.header_p1.number_of_reads, 2u);
    EXPECT_EQ(r.header_p1.header_length, 48u);  // 31 + 8 + 4 = 43, padded to 48
    EXPECT_EQ(r.header_p1.key_length, 4u);
    EXPECT_EQ(r.header_p1.number_of_flows_per_read, 8u);
    EXPECT_EQ(r.header_p1.flowgram_format_code, 1u);
    EXPECT_EQ(std::string(r.header_p2.flow_chars.begin(), r.header_p2.flow_chars.end()), "TACGTACG");
    EXPECT_EQ(std::string(r.header_p2.key_sequence.begin(), r.header_p2.key_sequence.end()), "TCAG");
    EXPECT_EQ(r.state().pos, 48);
    EXPECT_EQ(r.cur_read.numOfFlows, 8u);
    EXPECT_EQ(r.cur_read.flowgram_values.size(), 8u);
}

TEST(SffHeaderEdge, ReversedMagicDecodesLittleEndian) {
    sff_fixture f = two_reads(false);
    f.index_length = 0x01020304;
    reader r("in.sff", test::bytes_of(build_sff(f).bytes), test::std_console());
    ASSERT_EQ(r.get_header(), 1);
    EXPECT_EQ(r.swap_bytes, 0);
    EXPECT_EQ(r.header_p1.index_length, 0x01020304u);
    EXPECT_EQ(r.header_p1.number_of_reads, 2u);
    EXPECT_EQ(r.header_p1.header_length, 48u);
    EXPECT_EQ(r.header_p1.key_length, 4u);
    EXPECT_EQ(r.header_p1.number_of_flows_per_read, 8u);
}

TEST(SffHeaderEdge, OtherMagicIsNotSff) {
    const std::filesystem::path path = "bad.sff";
    std::string bytes = build_sff(two_reads(true)).bytes;
    bytes[0] = 'X';
    const std::vector<std::uint8_t> contents = test::bytes_of(bytes);
    auto io = test::run_captured([&] {
        reader r(path.string(), contents, test::std_console());
        r.get_header();
    });
    EXPECT_EQ(io.exit_status, 1);
    EXPECT_EQ(io.err, "The input file " + path.string() + " is not a SFF file\n");
    EXPECT_EQ(io.out, "");
}

TEST(SffHeaderEdge, MagicWithOnlyHalfReversedIsNotSff) {
    const std::filesystem::path path = "half.sff";
    std::string bytes = build_sff(two_reads(true)).bytes;
    bytes.replace(0, 4, "sf.f");
    const std::vector<std::uint8_t> contents = test::bytes_of(bytes);
    auto io = test::run_captured([&] {
        reader r(path.string(), contents, test::std_console());
        r.get_header();
    });
    EXPECT_EQ(io.exit_status, 1);
}

TEST(SffHeaderEdge, FileShorterThan31BytesGivesShortReadReport) {
    const std::string full = build_sff(two_reads(true)).bytes;
    for (std::size_t length = 0; length <= 30; ++length) {
        const std::filesystem::path path = "short.sff";
        const std::vector<std::uint8_t> contents = test::bytes_of(full.substr(0, length));
        int result = -1;
        auto io = test::run_captured([&] {
            reader r(path.string(), contents, test::std_console());
            result = r.get_header();
            EXPECT_TRUE(r.state().good()) << "state cleared after the report";
        });
        EXPECT_EQ(io.exit_status, std::nullopt) << length;
        EXPECT_EQ(result, 0);
        EXPECT_EQ(io.err, "Error ocurred while reading file " + path.string() + "\n");
        EXPECT_EQ(io.out, "Only got " + std::to_string(length) + " bytes while 31 is need\n");
    }
}

TEST(SffHeaderEdge, ShortHeaderKeepsWhatTheReadDelivered) {
    const std::filesystem::path path = "short.sff";
    const std::vector<std::uint8_t> contents = test::bytes_of(build_sff(two_reads(true)).bytes.substr(0, 24));
    test::run_captured([&] {
        reader r(path.string(), contents, test::std_console());
        r.get_header();
        EXPECT_EQ(std::string(reinterpret_cast<const char*>(r.header_p1.magic_number), 4), ".sff");
        // Not converted: the short read stops before the magic test and the byte swap.
        EXPECT_EQ(r.header_p1.number_of_reads, 0x02000000u);
        EXPECT_EQ(r.header_p1.header_length, 0u);
    });
}

TEST(SffHeaderEdge, ZeroKeyLengthGivesEmptyKeyLine) {
    sff_fixture f = two_reads(true);
    f.key = "";
    reader r("in.sff", test::bytes_of(build_sff(f).bytes), test::std_console());
    ASSERT_EQ(r.get_header(), 1);
    EXPECT_TRUE(r.header_p2.key_sequence.empty());
    std::ostringstream out;
    r.header_p2.print(out, static_cast<std::int16_t>(r.header_p1.number_of_flows_per_read),
                      static_cast<std::int16_t>(r.header_p1.key_length));
    EXPECT_EQ(out.str(), "TACGTACG\n\n");
}

TEST(SffHeaderEdge, PrintOfVersionOneHeader) {
    sff_fixture f = two_reads(true);
    f.index_length = 77;
    reader r("in.sff", test::bytes_of(build_sff(f).bytes), test::std_console());
    ASSERT_EQ(r.get_header(), 1);
    std::ostringstream out;
    r.header_p1.print(out);
    EXPECT_EQ(out.str(), ".sff\t0001\t0\t77\t2\t48\t4\t8\t1\n");
}

TEST(SffHeaderEdge, IndexOffsetIsNeverConverted) {
    sff_fixture f = two_reads(true);
    // The writer puts these eight bytes in file order 01 00 00 00 00 00 00 00.
    f.index_offset = 1;
    reader r("in.sff", test::bytes_of(build_sff(f).bytes), test::std_console());
    ASSERT_EQ(r.get_header(), 1);
    EXPECT_EQ(r.header_p1.index_offset, 1u);
    f.index_offset = 0x0100000000000000ull;
    reader big("second.sff", test::bytes_of(build_sff(f).bytes), test::std_console());
    ASSERT_EQ(big.get_header(), 1);
    EXPECT_EQ(big.header_p1.index_offset, 0x0100000000000000ull);
}

TEST(SffHeaderEdge, RealFilePrintsByteReversedIndexOffset) {
    reader r(test::data_file("greek.sff").string(), test::std_console());
    ASSERT_EQ(r.get_header(), 1);
    std::ostringstream out;
    r.header_p1.print(out);
    // File bytes 00 00 00 00 00 00 FE 10 at offset 8, read as a little-endian number.
    EXPECT_EQ(out.str(), ".sff\t0001\t" + std::to_string(0x10FE000000000000ull) + "\t256\t24\t840\t4\t800\t1\n");
}

TEST(SffHeaderEdge, FlowCountOf32768OrMoreIsSurvived) {
    // Outside the supported range: the flow characters get no space, nothing breaks.
    sff_fixture f;
    f.flows = 40000;
    f.reads.push_back(test::read_from_flows("r1", {0, 1}, {30, 31}, 40000));
    reader r("in.sff", test::bytes_of(build_sff(f).bytes), test::std_console());
    ASSERT_EQ(r.get_header(), 1);
    EXPECT_TRUE(r.header_p2.flow_chars.empty());
    EXPECT_EQ(std::string(r.header_p2.key_sequence.begin(), r.header_p2.key_sequence.end()), "TCAG");
    EXPECT_EQ(r.cur_read.numOfFlows, 40000u);
    read_index index;
    EXPECT_EQ(r.build_read_index(index), 1);
    ASSERT_EQ(index.size(), 1u);
    seqRead s;
    r.get_read(index.at("r1"), s);
    EXPECT_EQ(s.quals, (std::vector<std::int16_t>{30, 31}));
    EXPECT_EQ(r.cur_read.flowgram_values[1], 100u);
}

TEST(SffHeader, GetHeaderTwiceGivesTheSameResult) {
    reader r("in.sff", test::bytes_of(build_sff(two_reads(true)).bytes), test::std_console());
    ASSERT_EQ(r.get_header(), 1);
    const auto first = r.header_p1.number_of_reads;
    const auto chars = r.header_p2.flow_chars;
    ASSERT_EQ(r.get_header(), 1);
    EXPECT_EQ(r.header_p1.number_of_reads, first);
    EXPECT_EQ(r.header_p2.flow_chars, chars);
    EXPECT_EQ(r.state().pos, 48);
}

TEST(SffHeader, UnpaddedHeaderStartsReadsRightAfterTheKey) {
    sff_fixture f = two_reads(true);
    f.pad_headers = false;
    reader r("in.sff", test::bytes_of(build_sff(f).bytes), test::std_console());
    ASSERT_EQ(r.get_header(), 1);
    EXPECT_EQ(r.header_p1.header_length, 43u);
    EXPECT_EQ(r.state().pos, 43);
}

TEST(SffHeader, VarEndianSwapReversesOnlyTheConvertedFields) {
    sff_header_p1 h;
    h.index_offset = 0x1122334455667788ull;
    h.index_length = 0x01020304;
    h.number_of_reads = 0x0A0B0C0D;
    h.header_length = 0x0102;
    h.key_length = 0x0304;
    h.number_of_flows_per_read = 0x0506;
    h.flowgram_format_code = 7;
    h.var_endian_swap();
    EXPECT_EQ(h.index_offset, 0x1122334455667788ull);
    EXPECT_EQ(h.index_length, 0x04030201u);
    EXPECT_EQ(h.number_of_reads, 0x0D0C0B0Au);
    EXPECT_EQ(h.header_length, 0x0201u);
    EXPECT_EQ(h.key_length, 0x0403u);
    EXPECT_EQ(h.number_of_flows_per_read, 0x0605u);
    EXPECT_EQ(h.flowgram_format_code, 7u);
}

TEST(SffHeader, PrintOfVariablePartWritesCountsCharacters) {
    sff_header_p2 p2;
    p2.alloc_space(4, 2);
    p2.flow_chars = {'T', 'A', 'C', 'G'};
    p2.key_sequence = {'T', 'C'};
    std::ostringstream out;
    p2.print(out, 3, -1);
    EXPECT_EQ(out.str(), "TAC\n\n");
}

TEST(SffHeader, AllocSpaceGivesNegativeCountsNoSpace) {
    sff_header_p2 p2;
    p2.alloc_space(-5, 3);
    EXPECT_TRUE(p2.flow_chars.empty());
    EXPECT_EQ(p2.key_sequence.size(), 3u);
}

TEST(SffHeader, NeverReadHeaderIsHarmless) {
    sff_header_p2 p2;
    std::ostringstream out;
    p2.print(out, 10, 10);
    EXPECT_EQ(out.str(), "\n\n");
}

}  // namespace
}  // namespace pelkrin
