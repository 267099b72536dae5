// A second SFF file appended to a first, on whatever byte after the first
// file's last record or index block it begins: check finds it (its place and
// its reads) and sff takes both whole. Biopython's invalid_paired_E3MFGYR02.sff
// is paired.sff's bytes up to the 4-byte boundary after its index block (byte
// 54,372) and then E3MFGYR02_random_10_reads.sff; it was missed, as any file
// joined off an 8-byte boundary was.
#include <gtest/gtest.h>

#include <filesystem>
#include <map>

#include "files.h"
#include "prep_fixture.h"

namespace pelkrin::test {
namespace {

namespace fs = std::filesystem;

bool has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

using entries = std::map<std::string, std::vector<std::string>>;

// The entries Pelkrin writes for both files' reads, once merged: the reads of
// a file with fewer flows get zero values for the flows they lack.
entries merged_entries(const std::string& first, const std::string& second, int zeros_for_second) {
    entries all = sff_entries(first);
    for (auto [name, lines] : sff_entries(second)) {
        for (int k = 0; k < zeros_for_second; ++k) lines[2] += "\t0";
        all[name] = lines;
    }
    return all;
}

// `first` up to `end` (where its last record or index block ends, padding
// left out) and `gap` of its zero padding bytes after it, then `second`.
std::string joined(const std::string& first, std::size_t end, std::size_t gap, const std::string& second) {
    std::string bytes = first.substr(0, end);
    bytes.append(gap, '\0');
    return bytes + second;
}

// Checks the joined file through check, then merges it and reads the merge
// with Pelkrin's own reader.
void expect_both_found(const fs::path& dir, const std::string& bytes, std::size_t second_at,
                       std::size_t first_reads, std::size_t second_reads, const entries& expected) {
    SCOPED_TRACE("second file at byte " + std::to_string(second_at));
    write_file(dir / "two.sff", bytes);
    auto r = run_prep({"check", "asm.ace", "two.sff"}, dir);
    EXPECT_EQ(r.status, 1);
    const std::string first_count = std::to_string(first_reads);
    const std::string second_count = std::to_string(second_reads);
    EXPECT_TRUE(has(r.out, "  part 1, at byte 0:\n")) << r.out;
    EXPECT_TRUE(has(r.out, "  reads: " + first_count + " announced, " + first_count + " found\n")) << r.out;
    EXPECT_TRUE(has(r.out, "  part 2, at byte " + std::to_string(second_at) + ":\n")) << r.out;
    EXPECT_TRUE(has(r.out, "  reads: " + second_count + " announced, " + second_count + " found\n")) << r.out;
    EXPECT_TRUE(has(r.out, "problem: data after the last read: 1 more SFF file(s) appended, the first at byte " +
                               std::to_string(second_at) + "; Pelkrin reads the first only\n"))
        << r.out;
    EXPECT_FALSE(has(r.out, "that are no SFF file")) << r.out;
    EXPECT_TRUE(has(r.out, "reads of the assembly that no SFF file holds: 0\n")) << r.out;

    fs::remove(dir / "one.sff");
    r = run_prep({"sff", "one.sff", "two.sff"}, dir);
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_FALSE(has(r.err, "left out")) << r.err;
    const std::string merged = read_file(dir / "one.sff");
    EXPECT_TRUE(sff_entries(merged) == expected);
    r = run_prep({"check", "asm.ace", "one.sff"}, dir);
    const std::string all = std::to_string(first_reads + second_reads);
    EXPECT_TRUE(has(r.out, "SFF file one.sff\n  byte order: big-endian\n  reads: " + all + " announced, " + all +
                               " found\n"))
        << r.out;
    EXPECT_TRUE(has(r.out, "  data after the last read: none\n")) << r.out;
    EXPECT_TRUE(has(r.out, "reads of the assembly that no SFF file holds: 0\n")) << r.out;
}

// An assembly naming every read of the entries.
std::string assembly_of(const entries& e) {
    std::vector<std::string> names;
    for (const auto& [name, lines] : e) names.push_back(name);
    return ace_of_reads({names});
}

sff_fixture reads_named(const std::string& prefix, int n) {
    sff_fixture f;
    f.flows = 16;
    for (int i = 0; i < n; ++i)
        f.reads.push_back(read_from_flows(prefix + std::to_string(i), {0, 1, 2, 5, 6, 9, 12}, {30, 31, 32, 33, 34, 35, 36}, 16));
    return f;
}

// Written by the test SFF writer: a first file whose index block ends 3 bytes
// past a multiple of 8 (as paired.sff's does), so that its padding of 5 bytes
// holds a 4-byte boundary; the second file begins on every byte from the end
// of the index block to 8 bytes past the padding, 4- and 8-byte boundaries among them.
TEST(PrepAppendedSff, AfterAnIndexBlockOnEveryByte) {
    const fs::path dir = scratch_dir();
    sff_fixture first = reads_named("first", 3);
    first.index_block_before = first.reads.size();
    first.index_block_length = 35;
    const sff_bytes a = build_sff(first);
    const std::size_t end = a.bytes.size() - 5;
    ASSERT_EQ(end % 8, 3u);
    sff_fixture second = reads_named("second", 4);
    second.big_endian = false;
    const std::string b = build_sff(second).bytes;
    const entries expected = merged_entries(a.bytes, b, 0);
    write_file(dir / "asm.ace", assembly_of(expected));
    bool on_4 = false;
    bool on_8 = false;
    for (std::size_t gap = 0; gap <= 13; ++gap) {
        const std::size_t at = end + gap;
        on_4 = on_4 || (at % 4 == 0 && at % 8 != 0);
        on_8 = on_8 || at % 8 == 0;
        expect_both_found(dir, joined(a.bytes, end, gap, b), at, 3, 4, expected);
    }
    EXPECT_TRUE(on_4 && on_8);
}

// After the last record, without an index block: the record's data section
// ends 5 bytes past a multiple of 8, and the second file begins on every byte
// of its padding and of 8 zero bytes more.
TEST(PrepAppendedSff, AfterTheLastRecordOnEveryByte) {
    const fs::path dir = scratch_dir();
    const sff_fixture first = reads_named("first", 2);
    const sff_bytes a = build_sff(first);
    // 16 flows of 2 bytes and 7 bases of 3 bytes: 53 bytes of data, 3 of padding.
    const std::size_t end = a.bytes.size() - 3;
    const sff_fixture second = reads_named("second", 3);
    const std::string b = build_sff(second).bytes;
    const entries expected = merged_entries(a.bytes, b, 0);
    write_file(dir / "asm.ace", assembly_of(expected));
    for (std::size_t gap = 0; gap <= 11; ++gap) expect_both_found(dir, joined(a.bytes, end, gap, b), end + gap, 2, 3, expected);
}

// The real pair: paired.sff's index block ends at byte 54,371 and its file at
// 54,376; E3MFGYR02_random_10_reads.sff joined right after the index block, on
// the 4-byte boundary (Biopython's invalid_paired_E3MFGYR02.sff), on the
// 8-byte boundary, and after 8 zero bytes more.
TEST(PrepAppendedSff, BiopythonsPairedAndE3mfgyr02Joined) {
    const fs::path dir = scratch_dir();
    const std::string paired = read_file(data_file("paired.sff"));
    const std::string e3 = read_file(data_file("E3MFGYR02_random_10_reads.sff"));
    ASSERT_EQ(paired.size(), 54376u);
    const entries expected = merged_entries(paired, e3, 400);
    write_file(dir / "asm.ace", assembly_of(expected));
    for (const std::size_t gap : {0, 1, 2, 5, 13})
        expect_both_found(dir, joined(paired, 54371, gap, e3), 54371 + gap, 20, 10, expected);
}

// Bytes after the first file that are no SFF file are still reported as such,
// and the search for a second file reads no further than the first byte that
// is not zero.
TEST(PrepAppendedSff, StrayBytesAreNoSecondFile) {
    const fs::path dir = scratch_dir();
    const std::string paired = read_file(data_file("paired.sff"));
    write_file(dir / "asm.ace", assembly_of(sff_entries(paired)));
    write_file(dir / "two.sff", paired + std::string(16, '\0') + "x.sff" + std::string(40, 'y'));
    const auto r = run_prep({"check", "asm.ace", "two.sff"}, dir);
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(has(r.out, "problem: data after the last read: 61 bytes at byte 54376 that are no SFF file\n")) << r.out;
    EXPECT_FALSE(has(r.out, "part 2")) << r.out;
}

}  // namespace
}  // namespace pelkrin::test
