#include "sff/reader.h"

#include <gtest/gtest.h>

#include "capture.h"
#include "files.h"
#include "sff_writer.h"

namespace pelkrin {
namespace {

using test::build_sff;
using test::read_from_flows;
using test::sff_fixture;

sff_fixture three_reads(bool big_endian = true, bool pad = true) {
    sff_fixture f;
    f.big_endian = big_endian;
    f.pad_headers = pad;
    f.reads.push_back(read_from_flows("readA", {0, 2, 4, 4, 6}, {35, 35, 33, 33, 30}, 8));
    f.reads.push_back(read_from_flows("readB", {1, 3, 3}, {40, 38, 38}, 8));
    f.reads.push_back(read_from_flows("longer_name_C", {2, 5}, {32, 31}, 8));
    f.reads[0].flowgram = {101, 2, 98, 4, 197, 0, 103, 5};
    f.reads[2].clip_qual_left = 2;
    f.reads[2].clip_adapter_right = 2;
    return f;
}

TEST(ReaderEdge, ZeroReadsGivesEmptyIndexWithoutReadingPastTheHeader) {
    sff_fixture f = three_reads();
    f.claimed_reads = 0;
    reader r("in.sff", test::bytes_of(build_sff(f).bytes), test::std_console());
    read_index index;
    EXPECT_EQ(r.build_read_index(index), 1);
    EXPECT_TRUE(index.empty());
    EXPECT_EQ(r.read_count, 0);
    EXPECT_EQ(r.state().pos, build_sff(f).header_length);
}

TEST(ReaderEdge, LaterRecordOfANameWins) {
    sff_fixture f = three_reads();
    f.reads[2].name = "readA";
    auto sff = build_sff(f);
    reader r("in.sff", test::bytes_of(sff.bytes), test::std_console());
    read_index index;
    EXPECT_EQ(r.build_read_index(index), 1);
    ASSERT_EQ(index.size(), 2u);
    EXPECT_EQ(index.at("readA"), sff.record_offsets[2]);
    EXPECT_EQ(index.at("readB"), sff.record_offsets[1]);
}

TEST(ReaderEdge, HeaderClaimingMoreReadsThanTheFileHolds) {
    sff_fixture f = three_reads();
    f.claimed_reads = 7;
    auto sff = build_sff(f);
    const std::string path = "in.sff";
    const std::vector<std::uint8_t> contents = test::bytes_of(sff.bytes);
    read_index index;
    int result = -1;
    auto io = test::run_captured([&] {
        reader r(path, contents, test::std_console());
        result = r.build_read_index(index);
    });
    EXPECT_EQ(result, 0);
    EXPECT_EQ(io.exit_status, std::nullopt);
    EXPECT_EQ(io.err, "Error ocurred while reading file " + path + "\n");
    EXPECT_EQ(io.out, "Only got 0 bytes while 16 is need\n");
    ASSERT_EQ(index.size(), 3u);
    EXPECT_EQ(index.at("longer_name_C"), sff.record_offsets[2]);
}

// A file name alone: the reports that do not end the run go to the standard streams.
TEST(ReaderEdge, FromAFileNameAloneReportsToTheStandardStreams) {
    sff_fixture f = three_reads();
    f.claimed_reads = 7;
    const auto path = (test::scratch_dir() / "in.sff").string();
    test::write_file(path, build_sff(f).bytes);
    read_index index;
    auto io = test::run_captured([&] {
        reader r(path);
        EXPECT_EQ(r.get_header(), 1);
        EXPECT_EQ(r.build_read_index(index), 0);
    });
    EXPECT_EQ(io.exit_status, std::nullopt);
    EXPECT_EQ(io.err, "Error ocurred while reading file " + path + "\n");
    EXPECT_EQ(io.out, "Only got 0 bytes while 16 is need\n");
    EXPECT_EQ(index.size(), 3u);
}

TEST(ReaderEdge, DataLengthMultipleOfEightIsFollowedDirectlyByTheNextRecord) {
    sff_fixture f;
    f.flows = 8;  // 16 flowgram bytes + 3 x 8 bases = 40, no padding
    f.reads.push_back(read_from_flows("a", {0, 1, 2, 3, 4, 5, 6, 7}, {1, 2, 3, 4, 5, 6, 7, 8}, 8));
    f.reads.push_back(read_from_flows("b", {0, 3}, {9, 9}, 8));
    auto sff = build_sff(f);
    // Record a: 24-byte read header and 40 bytes of data.
    ASSERT_EQ(sff.record_offsets[1] - sff.record_offsets[0], 24 + 40);
    reader r("in.sff", test::bytes_of(sff.bytes), test::std_console());
    read_index index;
    EXPECT_EQ(r.build_read_index(index), 1);
    EXPECT_EQ(index.at("b"), sff.record_offsets[1]);
    seqRead s;
    r.get_read(index.at("b"), s);
    EXPECT_EQ(s.quals, (std::vector<std::int16_t>{9, 9}));
    EXPECT_EQ(s.flowIdx, (std::vector<std::int16_t>{0, 3}));
}

// Decodes every record with get_read through the index and with the sequential walk.
void expect_random_access_matches_walk(const sff_fixture& f) {
    auto sff = build_sff(f);
    const std::string path = f.big_endian ? "big.sff" : "little.sff";
    const std::vector<std::uint8_t> contents = test::bytes_of(sff.bytes);
    reader indexed(path, contents, test::std_console());
    read_index index;
    ASSERT_EQ(indexed.build_read_index(index), 1);
    reader walker(path, contents, test::std_console());
    walker.get_header();
    read_index walked;
    for (std::size_t i = 0; i < f.reads.size(); ++i) {
        ASSERT_EQ(walker.get_next_read(walked), 1);
        const seqRead from_walk(walker.cur_read);
        const std::string key(walker.cur_read.name.begin(), walker.cur_read.name.end());
        EXPECT_EQ(index.at(key), sff.record_offsets[i]);
        EXPECT_EQ(walked.at(key), sff.record_offsets[i]);
        seqRead from_index;
        indexed.get_read(index.at(key), from_index);
        EXPECT_EQ(from_index.name, from_walk.name);
        EXPECT_EQ(from_index.bases, from_walk.bases);
        EXPECT_EQ(from_index.quals, from_walk.quals);
        EXPECT_EQ(from_index.flowIdx, from_walk.flowIdx);
    }
    EXPECT_EQ(walker.get_next_read(walked), 0);
}

TEST(ReaderEdge, GetReadMatchesTheWalkBigEndian) { expect_random_access_matches_walk(three_reads(true)); }
TEST(ReaderEdge, GetReadMatchesTheWalkLittleEndian) { expect_random_access_matches_walk(three_reads(false)); }
TEST(ReaderEdge, GetReadMatchesTheWalkWithoutPadding) { expect_random_access_matches_walk(three_reads(true, false)); }

TEST(ReaderEdge, GetNextReadStopsSilentlyAtTheCount) {
    const std::string path = "in.sff";
    const std::vector<std::uint8_t> contents = test::bytes_of(build_sff(three_reads()).bytes);
    int results[4] = {};
    auto io = test::run_captured([&] {
        reader r(path, contents, test::std_console());
        r.get_header();
        for (int& result : results) result = r.get_next_read();
        EXPECT_EQ(r.read_count, 3);
    });
    EXPECT_EQ(results[0], 1);
    EXPECT_EQ(results[2], 1);
    EXPECT_EQ(results[3], 0);
    EXPECT_EQ(io.out, "");
    EXPECT_EQ(io.err, "");
}

// Both byte orders, with and without padding, clip fields set and unset: one seqRead.
TEST(ReaderByteOrder, BothByteOrdersDecodeToTheSameReads) {
    for (bool pad : {true, false}) {
        sff_fixture big = three_reads(true, pad);
        sff_fixture little = three_reads(false, pad);
        reader rb("big.sff", test::bytes_of(build_sff(big).bytes), test::std_console());
        reader rl("little.sff", test::bytes_of(build_sff(little).bytes), test::std_console());
        read_index ib, il;
        ASSERT_EQ(rb.build_read_index(ib), 1);
        ASSERT_EQ(rl.build_read_index(il), 1);
        ASSERT_EQ(ib.size(), 3u);
        for (const auto& [name, position] : ib) {
            seqRead sb, sl;
            rb.get_read(position, sb);
            rl.get_read(il.at(name), sl);
            EXPECT_EQ(sb.name, name);
            EXPECT_EQ(sl.name, name);
            EXPECT_EQ(sb.bases, sl.bases);
            EXPECT_EQ(sb.quals, sl.quals);
            EXPECT_EQ(sb.flowIdx, sl.flowIdx);
            EXPECT_EQ(rb.cur_read.flowgram_values, rl.cur_read.flowgram_values);
        }
    }
}

TEST(ReaderByteOrder, DecodedValuesOfEachRead) {
    for (bool big_endian : {true, false}) {
        reader r("in.sff", test::bytes_of(build_sff(three_reads(big_endian)).bytes), test::std_console());
        read_index index;
        ASSERT_EQ(r.build_read_index(index), 1);
        seqRead a;
        r.get_read(index.at("readA"), a);
        EXPECT_EQ(a.bases, (std::vector<char>{'T', 'C', 'T', 'T', 'C'}));
        EXPECT_EQ(a.quals, (std::vector<std::int16_t>{35, 35, 33, 33, 30}));
        EXPECT_EQ(a.flowIdx, (std::vector<std::int16_t>{0, 2, 4, 4, 6}));
        EXPECT_EQ(r.cur_read.flowgram_values, (std::vector<std::uint16_t>{101, 2, 98, 4, 197, 0, 103, 5}));
        seqRead c;
        r.get_read(index.at("longer_name_C"), c);  // clipped to its second base
        EXPECT_EQ(c.bases, (std::vector<char>{'A'}));
        EXPECT_EQ(c.quals, (std::vector<std::int16_t>{31}));
        EXPECT_EQ(c.flowIdx, (std::vector<std::int16_t>{5}));
    }
}

TEST(ReaderByteOrder, SequentialWalkTakesFlowgramsAsBigEndianInEitherOrder) {
    sff_fixture f = three_reads(false);
    reader r("in.sff", test::bytes_of(build_sff(f).bytes), test::std_console());
    r.get_header();
    ASSERT_EQ(r.get_next_read(), 1);
    // 101 = 0x0065 stored little-endian as 65 00, taken big-endian: 0x6500.
    EXPECT_EQ(r.cur_read.flowgram_values[0], 0x6500u);
    read_index index;
    r.build_read_index(index);
    seqRead s;
    r.get_read(index.at("readA"), s);
    EXPECT_EQ(r.cur_read.flowgram_values[0], 101u);
}

TEST(ReaderFailure, MissingFileEndsTheRun) {
    auto path = (test::scratch_dir() / "missing.sff").string();
    auto io = test::run_captured([&] { reader r(path, test::std_console()); });
    EXPECT_EQ(io.exit_status, 1);
    EXPECT_EQ(io.err, "fail to open file " + path + "\n");
    EXPECT_EQ(io.out, "");
}

TEST(ReaderFailure, FailedSeekLeavesTheReadUnchanged) {
    reader r("in.sff", test::bytes_of(build_sff(three_reads()).bytes), test::std_console());
    read_index index;
    r.build_read_index(index);
    seqRead s;
    r.get_read(index.at("readB"), s);
    const seqRead before = s;
    const auto flowgram = r.cur_read.flowgram_values;
    r.get_read(-5, s);
    EXPECT_EQ(s.quals, before.quals);
    EXPECT_EQ(s.name, before.name);
    EXPECT_EQ(r.cur_read.flowgram_values, flowgram);
}

TEST(ReaderFailure, TruncatedLastRecordDecodesWhatItHolds) {
    auto sff = build_sff(three_reads());
    // Cut record C inside its quality scores: its 2 padding bytes and its last score are missing.
    const std::string cut = sff.bytes.substr(0, sff.bytes.size() - 3);
    reader r("in.sff", test::bytes_of(cut), test::std_console());
    read_index index;
    ASSERT_EQ(r.build_read_index(index), 1);
    seqRead c;
    r.get_read(index.at("longer_name_C"), c);
    EXPECT_EQ(c.bases, (std::vector<char>{'A'}));
    EXPECT_EQ(c.quals, (std::vector<std::int16_t>{0}));
    // The stream stays failed, as a standard stream does: later look-ups return at once.
    seqRead b;
    r.get_read(index.at("readB"), b);
    EXPECT_TRUE(b.quals.empty());
}

TEST(ReaderFailure, NameLengthClaimingMoreThanTheFileHas) {
    auto sff = build_sff(three_reads());
    std::string bytes = sff.bytes;
    const auto at = static_cast<std::size_t>(sff.record_offsets[2]);
    bytes[at + 2] = '\xFF';  // name_length 0xFF0D
    const std::string path = "in.sff";
    const std::vector<std::uint8_t> contents = test::bytes_of(bytes);
    read_index index;
    test::run_captured([&] {
        reader r(path, contents, test::std_console());
        r.build_read_index(index);
        EXPECT_EQ(index.size(), 3u);
        seqRead s;
        r.get_read(index.rbegin()->second, s);
        EXPECT_LE(r.cur_read.name.size(), bytes.size());
        EXPECT_LE(r.cur_read.bases.size(), bytes.size());
    });
}

TEST(ReaderFailure, NumberOfBasesClaimingGigabytes) {
    auto sff = build_sff(three_reads());
    std::string bytes = sff.bytes;
    const auto at = static_cast<std::size_t>(sff.record_offsets[1]);
    bytes[at + 4] = '\x7F';  // number_of_bases 0x7F000003
    const std::string path = "in.sff";
    const std::vector<std::uint8_t> contents = test::bytes_of(bytes);
    read_index index;
    std::string err;
    auto io = test::run_captured([&] {
        reader r(path, contents, test::std_console());
        r.build_read_index(index);
        seqRead s;
        r.get_read(index.at("readB"), s);
        EXPECT_LE(r.cur_read.flow_index_per_base.size(), bytes.size());
        EXPECT_LE(r.cur_read.quality_scores.size(), bytes.size());
        EXPECT_EQ(s.name, "readB");
    });
    // The walk jumps far past the end: the next header read comes up empty.
    EXPECT_EQ(io.out, "Only got 0 bytes while 16 is need\n");
    EXPECT_EQ(index.size(), 2u);
}

// A read header length too small to hold the name is taken as no padding.
TEST(ReaderChoice, ReadHeaderLengthSmallerThanTheNameMeansNoPadding) {
    sff_fixture f = three_reads(true, false);
    auto sff = build_sff(f);
    std::string bytes = sff.bytes;
    const auto at = static_cast<std::size_t>(sff.record_offsets[0]);
    bytes[at] = 0;
    bytes[at + 1] = 10;  // read_header_length 10 < 16 + 5
    reader r("in.sff", test::bytes_of(bytes), test::std_console());
    read_index index;
    ASSERT_EQ(r.build_read_index(index), 1);
    ASSERT_EQ(index.size(), 3u);
    seqRead a;
    r.get_read(index.at("readA"), a);
    EXPECT_EQ(a.quals, (std::vector<std::int16_t>{35, 35, 33, 33, 30}));
    EXPECT_EQ(index.at("readB"), sff.record_offsets[1]);
}

TEST(ReaderPerformance, IndexWalkFetchesOnlyRecordHeaders) {
    sff_fixture f;
    f.flows = 4000;  // 8000 flowgram bytes per record
    for (int i = 0; i < 50; ++i) f.reads.push_back(read_from_flows(std::string("read").append(std::to_string(i)), {0, 5}, {30, 30}, 4000));
    auto sff = build_sff(f);
    reader r("in.sff", test::bytes_of(sff.bytes), test::std_console());
    read_index index;
    ASSERT_EQ(r.build_read_index(index), 1);
    ASSERT_EQ(index.size(), 50u);
    // The common header (4,040 bytes here) twice, by positioned reads; the
    // records are read in place, their data sections passed over.
    EXPECT_LE(r.sff_file.bytes_read(), 2u * sff.header_length);
}

TEST(ReaderPerformance, RandomAccessFetchesAboutOneRecord) {
    sff_fixture f = three_reads();
    for (int i = 0; i < 200; ++i) f.reads.push_back(read_from_flows(std::string("r").append(std::to_string(i)), {0, 1}, {20, 21}, 8));
    auto sff = build_sff(f);
    reader r("in.sff", test::bytes_of(sff.bytes), test::std_console());
    read_index index;
    r.build_read_index(index);
    const auto before = r.sff_file.bytes_read();
    seqRead s;
    r.get_read(index.at("r150"), s);
    EXPECT_LE(r.sff_file.bytes_read() - before, 512u + 8u * 4u);
    EXPECT_EQ(s.quals, (std::vector<std::int16_t>{20, 21}));
}

TEST(Reader, PrintFileSizeLeavesTheStreamAtTheEnd) {
    auto sff = build_sff(three_reads());
    const std::string path = "in.sff";
    const std::vector<std::uint8_t> contents = test::bytes_of(sff.bytes);
    auto io = test::run_captured([&] {
        reader r(path, contents, test::std_console());
        r.print_file_size();
        EXPECT_EQ(r.state().pos, static_cast<std::int64_t>(sff.bytes.size()));
        EXPECT_EQ(r.get_header(), 1);
    });
    EXPECT_EQ(io.out, std::string("input file size: ").append(std::to_string(sff.bytes.size())).append("\n"));
}

TEST(Reader, IndexKeyIsCutAtAZeroByte) {
    sff_fixture f = three_reads();
    f.reads[1].name = std::string("rea\0dB", 6);
    reader r("in.sff", test::bytes_of(build_sff(f).bytes), test::std_console());
    read_index index;
    ASSERT_EQ(r.build_read_index(index), 1);
    EXPECT_EQ(index.count("rea"), 1u);
    reader w("again.sff", test::bytes_of(build_sff(f).bytes), test::std_console());
    w.get_header();
    read_index walked;
    while (w.get_next_read(walked) == 1) {
    }
    EXPECT_EQ(walked.count(std::string("rea\0dB", 6)), 1u);  // the sequential walk keeps every byte
}

TEST(Reader, RebuildingTheIndexRestartsTheCount) {
    reader r("in.sff", test::bytes_of(build_sff(three_reads()).bytes), test::std_console());
    read_index index;
    ASSERT_EQ(r.build_read_index(index), 1);
    ASSERT_EQ(r.build_read_index(index), 1);
    EXPECT_EQ(r.read_count, 3);
    EXPECT_EQ(index.size(), 3u);
}

}  // namespace
}  // namespace pelkrin
