// An SFF file that another process shrinks while the reader has it mapped:
// the reader reads zeros past the new end instead of crashing, and says the
// file changed.
#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <string>

#include "capture.h"
#include "files.h"
#include "sff/reader.h"
#include "sff_writer.h"

namespace pelkrin {
namespace {

// 300 records of about 850 bytes: a few dozen pages.
test::sff_bytes many_reads() {
    test::sff_fixture f;
    f.flows = 400;
    for (int i = 0; i < 300; ++i) {
        std::vector<int> flows_of_bases;
        std::vector<std::uint8_t> quals;
        for (int b = 0; b < 20; ++b) {
            flows_of_bases.push_back(3 * b + i % 3);
            quals.push_back(static_cast<std::uint8_t>(20 + b));
        }
        f.reads.push_back(test::read_from_flows(std::string("read").append(std::to_string(i)), flows_of_bases, quals, 400));
    }
    return test::build_sff(f);
}

// many_reads() written to a file of the test's own.
std::filesystem::path many_reads_file() {
    const auto path = test::scratch_dir() / "reads.sff";
    test::write_file(path, many_reads().bytes);
    return path;
}

std::string changed_message(const std::filesystem::path& path) {
    return "Error: the SFF file " + path.string() + " changed while it was read\n";
}

TEST(ReaderShrink, FileCutBetweenTheIndexWalkAndTheReads) {
    const test::sff_bytes sff = many_reads();
    const auto path = many_reads_file();
    auto io = test::run_captured([&] {
        reader r(path.string(), test::std_console());
        ASSERT_EQ(r.get_header(), 1);
        read_index index;
        ASSERT_EQ(r.build_read_index(index), 1);
        r.check_unchanged();
        ASSERT_EQ(::truncate(path.c_str(), sff.record_offsets[20]), 0);

        // Read at once, still in the file: as before.
        record_view view;
        ASSERT_TRUE(r.view_read(index.at("read3"), view));
        EXPECT_EQ(view.quality[0], 20);
        r.check_unchanged();
        // Past the new end: zeros, whether read in place or decoded.
        ASSERT_TRUE(r.view_read(index.at("read250"), view));
        EXPECT_EQ(view.quality[0], 0);
        seqRead s;
        r.get_read(index.at("read200"), s);
        EXPECT_TRUE(s.quals.empty()) << "a header of zeros: no bases";
        r.check_unchanged();
        ADD_FAILURE() << "the change went unnoticed";
    });
    EXPECT_EQ(io.exit_status, 1);
    EXPECT_EQ(io.err, changed_message(path));
}

TEST(ReaderShrink, FileEmptiedBeforeTheIndexWalk) {
    const auto path = many_reads_file();
    auto io = test::run_captured([&] {
        reader r(path.string(), test::std_console());
        ASSERT_EQ(r.get_header(), 1);
        ASSERT_EQ(::truncate(path.c_str(), 0), 0);
        read_index index;
        // Walks zeros (records without names or bases) until it finds them
        // running off the end, where it would report a short read.
        r.build_read_index(index);
        ADD_FAILURE() << "the change went unnoticed";
    });
    EXPECT_EQ(io.exit_status, 1);
    EXPECT_EQ(io.err, changed_message(path));
}

TEST(ReaderShrink, AFileThatKeepsItsSizeIsUnchanged) {
    const auto path = many_reads_file();
    reader r(path.string(), test::std_console());
    ASSERT_EQ(r.get_header(), 1);
    read_index index;
    ASSERT_EQ(r.build_read_index(index), 1);
    for (const auto& entry : index) {
        seqRead s;
        r.get_read(entry.second, s);
    }
    EXPECT_FALSE(r.sff_file.changed());
    EXPECT_NO_THROW(r.check_unchanged());
}

}  // namespace
}  // namespace pelkrin
