// A write that fails (a full disk, a file-size limit) ends Pelkrin-prep with
// status 1 and a message naming the output and the system's reason, and
// leaves the folder as it was: the earlier output untouched, no temporary file.
#include <gtest/gtest.h>

#include <filesystem>

#include "files.h"
#include "folder_state.h"
#include "prep_fixture.h"

namespace pelkrin::test {
namespace {

namespace fs = std::filesystem;

// Pelkrin-prep run with every file it writes limited to `bytes`; SIGXFSZ is
// ignored, so a write past the limit fails as on a full disk.
program_result run_prep_limited(const std::vector<std::string>& args, const fs::path& dir, std::uint64_t bytes) {
    std::vector<std::string> argv{pelkrin_prep_binary()};
    argv.insert(argv.end(), args.begin(), args.end());
    run_limits limits;
    limits.seconds = 60;
    limits.file_size = bytes;
    return run_program(argv, dir, limits);
}

struct failing_write {
    const char* what;
    std::vector<std::string> args;
    std::string input;   // the input's leaf
    std::string output;  // the output's leaf
};

// The inputs: the example's files, and a little-endian copy of its SFF file,
// whose records the merge converts rather than copies.
fs::path inputs_dir() {
    const fs::path dir = scratch_dir();
    write_file(dir / "in.ace", read_file(source_file("example/example.ace")));
    const std::string sff = read_file(source_file("example/example.sff"));
    write_file(dir / "in.sff", sff);
    sff_fixture little = fixture_of(sff);
    little.big_endian = false;
    write_file(dir / "little.sff", build_sff(little).bytes);
    return dir;
}

const std::vector<failing_write> writes = {
    {"ace", {"ace", "in.ace", "m.ace"}, "in.ace", "m.ace"},
    {"sff, copied by the kernel", {"sff", "m.sff", "in.sff"}, "in.sff", "m.sff"},
    {"sff, converted", {"sff", "m.sff", "little.sff"}, "little.sff", "m.sff"},
};

TEST(PrepWriteFailure, AFileSizeLimitKeepsTheEarlierOutput) {
    const fs::path dir = inputs_dir();
    for (const failing_write& w : writes) {
        SCOPED_TRACE(w.what);
        write_file(dir / w.output, "the earlier output\n");
        // Half the output: the limit is met in the middle of the writing.
        const std::uint64_t limit = fs::file_size(dir / w.input) / 2;
        const auto before = folder_state(dir);
        const auto r = run_prep_limited(w.args, dir, limit);
        EXPECT_EQ(r.status, 1);
        EXPECT_EQ(r.err, "Pelkrin-prep: " + w.output + ": cannot write: File too large\n");
        EXPECT_EQ(r.out, "");
        const auto after = folder_state(dir);
        EXPECT_TRUE(after == before) << state_difference(before, after);
        fs::remove(dir / w.output);
    }
}

TEST(PrepWriteFailure, AFullDiskKeepsTheLinkAndEverythingElse) {
    const fs::path dir = inputs_dir();
    for (const failing_write& w : writes) {
        SCOPED_TRACE(w.what);
        fs::create_symlink("/dev/full", dir / w.output);
        const auto before = folder_state(dir);
        const auto r = run_prep(w.args, dir);
        EXPECT_EQ(r.status, 1);
        EXPECT_EQ(r.err, "Pelkrin-prep: " + w.output + ": cannot write: No space left on device\n");
        const auto after = folder_state(dir);
        EXPECT_TRUE(after == before) << state_difference(before, after);
        EXPECT_TRUE(fs::is_symlink(dir / w.output));
        fs::remove(dir / w.output);
    }
}

// The same runs without the limit write their outputs: the failures above
// come from the limit, not from the inputs.
TEST(PrepWriteFailure, WithoutTheLimitTheOutputsAreWritten) {
    const fs::path dir = inputs_dir();
    for (const failing_write& w : writes) {
        SCOPED_TRACE(w.what);
        write_file(dir / w.output, "the earlier output\n");
        const auto r = run_prep_limited(w.args, dir, std::uint64_t{1} << 30);
        EXPECT_EQ(r.status, 0) << r.err;
        EXPECT_EQ(r.err, "");
        EXPECT_GT(fs::file_size(dir / w.output), fs::file_size(dir / w.input) / 2);
    }
}

// An output whose folder admits no file: the system's reason, nothing written.
TEST(PrepWriteFailure, AnOutputThatCannotBeCreated) {
    const fs::path dir = inputs_dir();
    const auto before = folder_state(dir);
    const auto r = run_prep({"sff", "no/such/folder/m.sff", "in.sff"}, dir);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "Pelkrin-prep: no/such/folder/m.sff: cannot open for writing: No such file or directory\n");
    EXPECT_TRUE(folder_state(dir) == before);
}

}  // namespace
}  // namespace pelkrin::test
