// Decoding one record from bytes in memory: complete records in both byte
// orders, and what a record cut short leaves in each array.
#include "sff/record_decode.h"

#include <gtest/gtest.h>

#include <span>
#include <string>
#include <vector>

#include "sff_writer.h"

namespace pelkrin {
namespace {

using test::build_sff;
using test::read_from_flows;
using test::sff_fixture;

constexpr std::uint16_t flows = 8;

struct one_file {
    test::sff_bytes sff;
    sff_header_p1 header;
    std::span<const std::uint8_t> bytes() const {
        return {reinterpret_cast<const std::uint8_t*>(sff.bytes.data()), sff.bytes.size()};
    }
    // The bytes of record i to the end of the file, cut `cut` bytes before the end.
    std::span<const std::uint8_t> record(std::size_t i, std::size_t cut = 0) const {
        const auto all = bytes();
        const auto at = static_cast<std::size_t>(sff.record_offsets[i]);
        return all.subspan(at, all.size() - at - cut);
    }
};

one_file two_reads(bool big_endian) {
    sff_fixture f;
    f.big_endian = big_endian;
    f.flows = flows;
    f.reads.push_back(read_from_flows("first", {0, 2, 4, 4, 6}, {35, 35, 33, 33, 30}, flows));
    f.reads[0].flowgram = {101, 2, 298, 4, 197, 0, 103, 5};
    f.reads.push_back(read_from_flows("second", {1, 3, 3}, {40, 38, 38}, flows));
    f.reads[1].flowgram = {11, 112, 13, 214, 15, 16, 17, 18};
    one_file o{build_sff(f), {}};
    o.header.number_of_flows_per_read = flows;
    return o;
}

sff_read scratch() {
    sff_read r;
    r.set_numOfFlows(flows);
    return r;
}

TEST(RecordDecode, CompleteRecordInBothByteOrders) {
    for (bool big_endian : {true, false}) {
        const one_file o = two_reads(big_endian);
        sff_read r = scratch();
        const record_outcome out =
            decode_record(o.record(1), o.sff.record_offsets[1], o.header, big_endian, record_decoding::at_position, r);
        EXPECT_EQ(out.header_bytes, 16u);
        EXPECT_TRUE(out.after.good());
        EXPECT_EQ(std::string(r.name.begin(), r.name.end()), "second");
        EXPECT_EQ(r.number_of_bases, 3u);
        EXPECT_EQ(r.flowgram_values, (std::vector<std::uint16_t>{11, 112, 13, 214, 15, 16, 17, 18}));
        EXPECT_EQ(r.quality_scores, (std::vector<std::uint8_t>{40, 38, 38}));
        EXPECT_EQ(r.flow_index_per_base, (std::vector<std::uint8_t>{2, 2, 0}));
        // The stream stands at the end of the data, before its padding.
        EXPECT_EQ(static_cast<std::uint64_t>(out.after.pos - o.sff.record_offsets[1]),
                  record_extent(o.record(1), big_endian, flows));
    }
}

TEST(RecordDecode, ExtentIsTheRecordWithoutItsDataPadding) {
    const one_file o = two_reads(true);
    const std::uint64_t extent = record_extent(o.record(0), true, flows);
    const std::uint64_t data = flows * 2u + 3u * 5u;
    EXPECT_EQ(extent + data_padding(data), static_cast<std::uint64_t>(o.sff.record_offsets[1] - o.sff.record_offsets[0]));
}

TEST(RecordDecode, BytesCutAtTheExtentDecodeAsTheWholeFile) {
    const one_file o = two_reads(true);
    const auto whole = o.record(0);
    const auto exact = whole.first(static_cast<std::size_t>(record_extent(whole, true, flows)));
    sff_read a = scratch();
    sff_read b = scratch();
    decode_record(whole, 0, o.header, true, record_decoding::at_position, a);
    decode_record(exact, 0, o.header, true, record_decoding::at_position, b);
    EXPECT_EQ(a.flowgram_values, b.flowgram_values);
    EXPECT_EQ(a.bases, b.bases);
    EXPECT_EQ(a.quality_scores, b.quality_scores);
}

TEST(RecordDecode, ShortFlowgramKeepsThePreviousRecordsValuesBeyondIt) {
    const one_file o = two_reads(true);
    sff_read r = scratch();
    decode_record(o.record(0), 0, o.header, true, record_decoding::at_position, r);
    // The second record, cut after its name, its padding and 5 flowgram bytes.
    const auto whole = o.record(1);
    const std::size_t keep = 16 + 6 + 2 + 5;  // header, name, padding to 24, two values and a half
    const record_outcome out = decode_record(whole.first(keep), 0, o.header, true, record_decoding::at_position, r);
    EXPECT_TRUE(out.after.eof && out.after.fail);
    // Two values of the second record, converted. The half value took only its
    // low byte in memory order (0x00 of 13's 0x00 0x0D) over the first record's
    // 298 (0x012A). Every value is then converted once more, the first record's
    // values beyond the cut too, as the header's count of flows says.
    EXPECT_EQ(r.flowgram_values[0], 11u);
    EXPECT_EQ(r.flowgram_values[1], 112u);
    EXPECT_EQ(r.flowgram_values[2], 0x0001u);
    EXPECT_EQ(r.flowgram_values[3], 0x0400u);
    EXPECT_EQ(r.flowgram_values[7], 0x0500u);
    // The per-base arrays are sized anew to what the file could still hold: nothing.
    EXPECT_EQ(r.bases.size(), 3u);
    EXPECT_EQ(r.bases, (std::vector<char>{0, 0, 0}));
}

TEST(RecordDecode, ArraysNeverLargerThanWhatTheBytesCanFill) {
    const one_file o = two_reads(true);
    std::vector<std::uint8_t> bytes(o.record(1).begin(), o.record(1).end());
    bytes[4] = 0x7F;  // number_of_bases 0x7F000003
    sff_read r = scratch();
    decode_record(bytes, 0, o.header, true, record_decoding::at_position, r);
    EXPECT_LE(r.bases.size(), bytes.size());
    EXPECT_LE(r.quality_scores.size(), bytes.size());
    EXPECT_LE(r.flow_index_per_base.size(), bytes.size());
}

TEST(RecordDecode, ShortHeaderAtPositionChangesOnlyWhatItReached) {
    const one_file o = two_reads(true);
    sff_read r = scratch();
    decode_record(o.record(0), 0, o.header, true, record_decoding::at_position, r);
    const auto cut = o.record(1).first(3);  // read_header_length and half of name_length
    const record_outcome out = decode_record(cut, 0, o.header, true, record_decoding::at_position, r);
    EXPECT_EQ(out.header_bytes, 3u);
    EXPECT_TRUE(out.after.fail);
    // Kept from the first record, whose converted value is converted again.
    EXPECT_EQ(r.number_of_bases, 0x05000000u);
    EXPECT_TRUE(r.name.empty()) << "nothing left in the bytes to hold a name";
}

TEST(RecordDecode, SequentialStopsAfterAShortHeader) {
    const one_file o = two_reads(true);
    sff_read r = scratch();
    decode_record(o.record(0), 0, o.header, true, record_decoding::at_position, r);
    const record_outcome out =
        decode_record(o.record(1).first(10), 0, o.header, true, record_decoding::sequential, r);
    EXPECT_EQ(out.header_bytes, 10u);
    EXPECT_EQ(std::string(r.name.begin(), r.name.end()), "first") << "the arrays are left alone";
    EXPECT_EQ(out.after.pos, 10);
}

TEST(RecordDecode, SequentialTakesFlowgramsAsBigEndianInALittleEndianFile) {
    const one_file o = two_reads(false);
    sff_read r = scratch();
    decode_record(o.record(1), o.sff.record_offsets[1], o.header, false, record_decoding::sequential, r);
    EXPECT_EQ(r.flowgram_values[0], static_cast<std::uint16_t>(11u << 8));
    EXPECT_EQ(r.flowgram_values[1], static_cast<std::uint16_t>(112u << 8));
}

TEST(RecordDecode, SequentialPassesOverTheDataPadding) {
    const one_file o = two_reads(true);
    sff_read r = scratch();
    const record_outcome out = decode_record(o.record(0), o.sff.record_offsets[0], o.header, true,
                                             record_decoding::sequential, r);
    EXPECT_EQ(out.after.pos, o.sff.record_offsets[1]);
}

TEST(RecordDecode, HeaderTooShortForItsNameHasNoPadding) {
    sff_read r;
    r.read_header_length = 10;
    r.name_length = 5;
    EXPECT_EQ(header_padding(r), 0);
    r.read_header_length = 24;
    EXPECT_EQ(header_padding(r), 3);
}

TEST(RecordDecode, EmptyBytesDecodeNothingAndFail) {
    const one_file o = two_reads(true);
    sff_read r = scratch();
    const record_outcome out = decode_record({}, 100, o.header, true, record_decoding::at_position, r);
    EXPECT_EQ(out.header_bytes, 0u);
    // The seek past the name's padding cleared eof; fail stays.
    EXPECT_TRUE(out.after.fail);
    EXPECT_FALSE(out.after.eof);
    EXPECT_EQ(out.after.pos, 100);
}

}  // namespace
}  // namespace pelkrin
