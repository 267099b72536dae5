// An SFF file cut short: check counts the reads found as Pelkrin's message
// counts them ("ends after N of its M reads"). Pelkrin's walk counts a record
// whose read header lies whole, the one the cut falls in among them, except
// when that is the last record announced. Before, a file cut inside read 942
// of 6818 gave "ends after 942" from Pelkrin and "941 found" from check.
#include <gtest/gtest.h>

#include <filesystem>
#include <regex>

#include "files.h"
#include "prep_fixture.h"

namespace pelkrin::test {
namespace {

namespace fs = std::filesystem;

bool has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

// The counts of Pelkrin's message on a cut SFF file, or "" when it gave none.
std::string pelkrin_count(const std::string& err) {
    std::smatch m;
    static const std::regex message("ends after ([0-9]+) of its ([0-9]+) reads");
    return std::regex_search(err, m, message) ? m[2].str() + " announced, " + m[1].str() + " found" : "";
}

// Cuts `bytes` at each length in turn and compares what check says with what
// Pelkrin says; returns how many of the cuts Pelkrin reported.
std::size_t compare_cuts(const fs::path& dir, const std::string& bytes, const std::vector<std::size_t>& cuts,
                         std::size_t announced) {
    std::size_t reported = 0;
    for (const std::size_t cut : cuts) {
        SCOPED_TRACE("cut at " + std::to_string(cut));
        write_file(dir / "cut.sff", bytes.substr(0, cut));
        const auto pelkrin = run_program({pelkrin_binary(), "asm.ace", "cut.sff"}, dir);
        const auto check = run_prep({"check", "asm.ace", "cut.sff"}, dir);
        const std::string counts = pelkrin_count(pelkrin.err);
        if (counts.empty()) {
            // Pelkrin found every record whole: so does check.
            EXPECT_EQ(pelkrin.status, 0) << pelkrin.err;
            const std::string all = std::to_string(announced);
            EXPECT_TRUE(has(check.out, "  reads: " + all + " announced, " + all + " found\n")) << check.out;
            continue;
        }
        ++reported;
        EXPECT_EQ(pelkrin.status, 1);
        EXPECT_EQ(check.status, 1);
        // The count is the whole of the number, with or without its note.
        EXPECT_TRUE(has(check.out, "  reads: " + counts + "\n") ||
                    has(check.out, "  reads: " + counts + ", the last of them cut short\n"))
            << "Pelkrin: " << counts << "\n" << check.out;
        EXPECT_TRUE(has(check.out, "the file ends inside ")) << check.out;
    }
    return reported;
}

// Written by the test SFF writer, its index block among the reads: cuts at
// every byte of the records around the index block and of the last record,
// and at the edges of every other record (its read header, its name, its
// data and its padding).
TEST(PrepCutSff, CheckCountsTheReadsAsPelkrinsMessageDoes) {
    const fs::path dir = scratch_dir();
    sff_fixture f;
    f.flows = 12;
    std::vector<std::string> names;
    for (int i = 0; i < 8; ++i) {
        names.push_back("read" + std::to_string(i));
        f.reads.push_back(read_from_flows(names.back(), {0, 1, 3, 4, 6, 9}, {20, 21, 22, 23, 24, 25}, 12));
    }
    f.index_block_before = 4;
    const sff_bytes b = build_sff(f);
    write_file(dir / "asm.ace", ace_of_reads({names}));
    std::vector<std::size_t> cuts;
    const auto offset = [&](std::size_t i) { return static_cast<std::size_t>(b.record_offsets[i]); };
    // Around the index block (records 3 and 4, and the block between them) and the last record: every byte.
    for (std::size_t at = offset(3); at < offset(5); ++at) cuts.push_back(at);
    for (std::size_t at = offset(7); at <= b.bytes.size(); ++at) cuts.push_back(at);
    // The edges of the others: the read header (16 bytes), the name, the data and its padding.
    for (const std::size_t i : {0, 1, 2, 5, 6})
        for (const std::size_t d : {0, 1, 15, 16, 17, 21, 24, 25, 40, 70, 72, 73})
            if (offset(i) + d < offset(i + 1)) cuts.push_back(offset(i) + d);
    const std::size_t reported = compare_cuts(dir, b.bytes, cuts, names.size());
    EXPECT_GT(reported, cuts.size() / 2);
}

// The example's SFF file: inside the header of read 27, inside its data, and
// inside the last read, whose cut Pelkrin does not count.
TEST(PrepCutSff, TheExampleCutInThreePlaces) {
    const fs::path dir = scratch_dir();
    const std::string bytes = read_file(source_file("example/example.sff"));
    write_file(dir / "asm.ace", read_file(source_file("example/example.ace")));
    EXPECT_EQ(compare_cuts(dir, bytes, {20000, 20100, bytes.size() - 10}, 60), 3u);
    write_file(dir / "cut.sff", bytes.substr(0, 20100));
    const auto r = run_prep({"check", "asm.ace", "cut.sff"}, dir);
    EXPECT_TRUE(has(r.out, "  reads: 60 announced, 27 found, the last of them cut short\n")) << r.out;
    EXPECT_TRUE(has(r.out, "  problem: byte 19992: the file ends inside read 27 of 60 (98 bases)\n")) << r.out;
}

}  // namespace
}  // namespace pelkrin::test
