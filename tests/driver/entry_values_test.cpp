// A read's numbers taken from its record in place are those decoding it gives,
// and a reader that reads in place whenever it can gives, read after read,
// what one that decodes every read gives: also on cut files, whose records
// cut short keep what the record before them left.
#include "driver/entry_values.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "capture.h"
#include "files.h"
#include "sff/reader.h"
#include "sff_writer.h"

namespace pelkrin {
namespace {

// Reads of 0 to 60 bases, with clip points anywhere (past the last base,
// reversed, of 16 bits), flows that may pass 32767, any quality score.
test::sff_fixture random_file(std::mt19937& rng, bool big_endian) {
    const auto below = [&rng](int n) { return static_cast<int>(rng() % static_cast<unsigned>(n)); };
    test::sff_fixture f;
    f.big_endian = big_endian;
    f.pad_headers = below(2) == 0;
    f.flows = static_cast<std::uint16_t>(1 + below(40));
    const int reads = 30;
    for (int i = 0; i < reads; ++i) {
        test::sff_fixture_read r;
        r.name = std::string("r").append(std::to_string(i));  // GCC 12 warns wrongly about "r" + ...
        const int bases = below(5) == 0 ? 0 : below(61);
        for (int b = 0; b < bases; ++b) {
            r.bases += "ACGT"[below(4)];
            r.quals.push_back(static_cast<std::uint8_t>(below(256)));
            r.flow_index.push_back(static_cast<std::uint8_t>(b == 0 ? 1 + below(3) : below(4) == 0 ? 255 : below(4)));
        }
        for (int k = 0; k < f.flows; ++k) r.flowgram.push_back(static_cast<std::uint16_t>(rng()));
        const auto clip = [&]() -> std::uint16_t {
            switch (below(6)) {
                case 0: return 0;
                case 1: return static_cast<std::uint16_t>(40000 + below(1000));
                default: return static_cast<std::uint16_t>(below(70));
            }
        };
        r.clip_qual_left = clip();
        r.clip_qual_right = clip();
        r.clip_adapter_left = below(2) == 0 ? 0 : clip();
        r.clip_adapter_right = below(2) == 0 ? 0 : clip();
        f.reads.push_back(r);
    }
    return f;
}

void expect_same(const entry_values& a, const entry_values& b, bool flowgram) {
    EXPECT_EQ(a.quals, b.quals);
    if (!flowgram) return;
    EXPECT_EQ(a.flowIdx, b.flowIdx);
    EXPECT_EQ(a.flowgram, b.flowgram);
}

// What the run took before records were read in place: get_read into an emptied read.
void decoded_values(reader& r, std::int64_t pos, bool flowgram, entry_values& out) {
    seqRead s;
    const sff_read& record = r.get_read(pos, s);
    values_of(s, record, flowgram, out);
}

// The run's way: in place when the reader allows it.
void values_in_place_if_possible(reader& r, std::int64_t pos, bool flowgram, entry_values& out, int& in_place) {
    record_view view;
    if (r.view_read(pos, view)) {
        values_of(view, flowgram, out);
        ++in_place;
        return;
    }
    decoded_values(r, pos, flowgram, out);
}

TEST(EntryValues, RecordsInPlaceGiveWhatDecodingThemGives) {
    std::mt19937 rng(7);
    for (int file = 0; file < 40; ++file) {
        const bool big_endian = file % 2 == 0;
        const test::sff_bytes sff = test::build_sff(random_file(rng, big_endian));
        const std::vector<std::uint8_t> bytes = test::bytes_of(sff.bytes);
        for (bool flowgram : {false, true}) {
            for (const std::int64_t pos : sff.record_offsets) {
                SCOPED_TRACE("file " + std::to_string(file) + ", record at " + std::to_string(pos));
                reader plain("in.sff", std::span<const std::uint8_t>(bytes), test::std_console());
                reader in_place("in.sff", std::span<const std::uint8_t>(bytes), test::std_console());
                ASSERT_EQ(plain.get_header(), 1);
                ASSERT_EQ(in_place.get_header(), 1);
                entry_values expected;
                entry_values got;
                decoded_values(plain, pos, flowgram, expected);
                record_view view;
                ASSERT_TRUE(in_place.view_read(pos, view));
                values_of(view, flowgram, got);
                expect_same(got, expected, flowgram);
                EXPECT_EQ(in_place.state().pos, plain.state().pos);
            }
        }
    }
}

TEST(EntryValues, ReadingInPlaceWhereverPossibleGivesWhatDecodingEveryReadGives) {
    std::mt19937 rng(11);
    int in_place_reads = 0;
    int decoded_reads = 0;
    for (int file = 0; file < 60; ++file) {
        const bool big_endian = file % 3 != 0;
        const test::sff_bytes sff = test::build_sff(random_file(rng, big_endian));
        // Cut anywhere in the last few records, or not at all.
        std::string cut_bytes = sff.bytes;
        if (file % 4 != 0) {
            const auto from = static_cast<std::size_t>(sff.record_offsets[sff.record_offsets.size() - 4]);
            cut_bytes.resize(from + rng() % (sff.bytes.size() - from));
        }
        const std::vector<std::uint8_t> bytes = test::bytes_of(cut_bytes);
        // Every record, offset 0 (a name the file lacks), places inside records
        // and past the end, in a random order, some twice.
        std::vector<std::int64_t> positions(sff.record_offsets.begin(), sff.record_offsets.end());
        positions.push_back(0);
        positions.push_back(static_cast<std::int64_t>(sff.bytes.size()) + 5);
        for (int k = 0; k < 6; ++k) positions.push_back(static_cast<std::int64_t>(rng() % cut_bytes.size()));
        for (int k = 0; k < 6; ++k) positions.push_back(positions[rng() % positions.size()]);
        std::shuffle(positions.begin(), positions.end(), rng);

        for (bool flowgram : {false, true}) {
            reader plain("in.sff", std::span<const std::uint8_t>(bytes), test::std_console());
            reader run_like("in.sff", std::span<const std::uint8_t>(bytes), test::std_console());
            ASSERT_EQ(plain.get_header(), 1);
            ASSERT_EQ(run_like.get_header(), 1);
            for (std::size_t i = 0; i < positions.size(); ++i) {
                SCOPED_TRACE("file " + std::to_string(file) + ", read " + std::to_string(i) + " at " +
                             std::to_string(positions[i]));
                entry_values expected;
                entry_values got;
                decoded_values(plain, positions[i], flowgram, expected);
                int in_place = 0;
                values_in_place_if_possible(run_like, positions[i], flowgram, got, in_place);
                in_place_reads += in_place;
                decoded_reads += 1 - in_place;
                expect_same(got, expected, flowgram);
                EXPECT_EQ(run_like.state().pos, plain.state().pos);
                EXPECT_EQ(run_like.state().fail, plain.state().fail);
                EXPECT_EQ(run_like.state().eof, plain.state().eof);
            }
        }
    }
    EXPECT_GT(in_place_reads, 250);
    EXPECT_GT(decoded_reads, 100) << "cut records and stale reads were met";
}

TEST(EntryValues, AStreamThatRanOffTheEndKeepsTheFlowgramOfTheLastRecordReadInPlace) {
    test::sff_fixture f;
    f.reads.push_back(test::read_from_flows("a", {0, 2}, {30, 31}, 8));
    f.reads.back().flowgram = {1, 2, 3, 4, 5, 6, 7, 8};
    f.reads.push_back(test::read_from_flows("b", {1, 3, 5}, {20, 21, 22}, 8));
    const test::sff_bytes sff = test::build_sff(f);
    // The second record (a header of 24 bytes with its padding) keeps 3 of its
    // 8 flowgram values: decoding it runs off the end.
    const auto cut = static_cast<std::size_t>(sff.record_offsets[1]) + 24 + 6;
    const std::vector<std::uint8_t> bytes = test::bytes_of(sff.bytes.substr(0, cut));
    reader r("in.sff", std::span<const std::uint8_t>(bytes), test::std_console());
    ASSERT_EQ(r.get_header(), 1);
    record_view view;
    ASSERT_TRUE(r.view_read(sff.record_offsets[0], view));
    EXPECT_FALSE(r.view_read(sff.record_offsets[1], view));
    seqRead s;
    const std::vector<std::uint16_t> cut_flowgram = r.get_read(sff.record_offsets[1], s).flowgram_values;
    EXPECT_TRUE(r.state().fail);
    // The cut record keeps what the first one left where its bytes do not
    // reach (and converts it again from big-endian), as decoding both gives.
    reader plain("in.sff", std::span<const std::uint8_t>(bytes), test::std_console());
    ASSERT_EQ(plain.get_header(), 1);
    seqRead first;
    plain.get_read(sff.record_offsets[0], first);
    seqRead second;
    EXPECT_EQ(cut_flowgram, plain.get_read(sff.record_offsets[1], second).flowgram_values);
    EXPECT_EQ(cut_flowgram.back(), 0x0800);
    // Failed: nothing more is read in place, and get_read leaves the read as it is.
    EXPECT_FALSE(r.view_read(sff.record_offsets[0], view));
    seqRead after;
    const sff_read& record = r.get_read(sff.record_offsets[0], after);
    EXPECT_TRUE(after.quals.empty());
    EXPECT_EQ(record.flowgram_values, cut_flowgram);
}

}  // namespace
}  // namespace pelkrin
