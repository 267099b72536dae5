// Every input is opened the one shared way, for reading by position: a
// folder, a FIFO, a pipe or a device is refused naming the file, with
// status 1, never read without end, and nothing thrown leaves the program.
// Before, a folder aborted the program (std::ios_failure, status 134), and
// /dev/zero or a pipe was read into memory until it ran out.
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <filesystem>
#include <memory>

#include "files.h"
#include "folder_state.h"
#include "pipe_input.h"
#include "prep_fixture.h"

namespace pelkrin::test {
namespace {

namespace fs = std::filesystem;

bool has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

// An input of some kind, and the words the shared opener refuses it with.
struct odd_input {
    std::string kind;
    std::string path;     // as given on the command line
    std::string problem;  // after "Pelkrin-prep: PATH: "
};

class PrepInputs : public ::testing::Test {
protected:
    void SetUp() override {
        dir = scratch_dir();
        write_file(dir / "a.ace", read_file(source_file("example/example.ace")));
        write_file(dir / "a.sff", read_file(source_file("example/example.sff")));
        fs::create_directory(dir / "folder");
        ASSERT_EQ(::mkfifo((dir / "fifo").c_str(), 0600), 0);  // no writer: opening must not wait for one
        pipe = std::make_unique<pipe_input>(read_file(source_file("example/example.sff")));
        inputs = {
            {"a folder", "folder", "cannot read: Is a directory"},
            {"a FIFO", "fifo", "is a pipe, not a regular file: it cannot be read by position"},
            {"a pipe", pipe->path(), "is a pipe, not a regular file: it cannot be read by position"},
            {"an endless device", "/dev/zero", "is a device, not a file"},
            {"an empty device", "/dev/null", "is a device, not a file"},
            {"a missing file", "none.sff", "cannot open: No such file or directory"},
        };
    }

    // Runs and checks what every refusal shares: status 1, within the time
    // and memory bounds, and the folder as it was.
    program_result refused(const std::vector<std::string>& args) {
        const auto before = folder_state(dir);
        const auto r = run_prep_bounded(args, dir);
        EXPECT_FALSE(r.timed_out);
        EXPECT_EQ(r.status, 1) << r.err;
        const auto after = folder_state(dir);
        EXPECT_TRUE(after == before) << state_difference(before, after);
        return r;
    }

    fs::path dir;
    std::unique_ptr<pipe_input> pipe;
    std::vector<odd_input> inputs;
};

TEST_F(PrepInputs, AceAndSffRefuseWhatIsNoRegularFile) {
    for (const odd_input& in : inputs) {
        SCOPED_TRACE(in.kind);
        const std::string message = "Pelkrin-prep: " + in.path + ": " + in.problem + "\n";
        auto r = refused({"ace", in.path, "o.ace"});
        EXPECT_EQ(r.err, message);
        r = refused({"sff", "o.sff", in.path});
        EXPECT_EQ(r.err, message);
        // After a file that is read whole.
        r = refused({"sff", "o.sff", "a.sff", in.path});
        EXPECT_EQ(r.err, message);
    }
}

TEST_F(PrepInputs, CheckReportsWhatIsNoRegularFileAndGoesOn) {
    for (const odd_input& in : inputs) {
        SCOPED_TRACE(in.kind);
        auto r = refused({"check", in.path, "a.sff"});
        EXPECT_EQ(r.err, "");
        EXPECT_TRUE(has(r.out, "ACE file " + in.path + "\n  problem: " + in.path + ": " + in.problem + "\n")) << r.out;
        EXPECT_TRUE(has(r.out, "SFF file a.sff\n  byte order: big-endian\n")) << r.out;
        EXPECT_TRUE(has(r.out, "\nPelkrin will not read this pair correctly as it stands: the ACE file " + in.path +
                                   " cannot be read (" + in.problem + ").\n"))
            << r.out;
        r = refused({"check", "a.ace", in.path});
        EXPECT_EQ(r.err, "");
        EXPECT_TRUE(has(r.out, "ACE file a.ace\n  dialect: the layout Pelkrin reads\n")) << r.out;
        EXPECT_TRUE(has(r.out, "SFF file " + in.path + "\n  problem: " + in.path + ": " + in.problem + "\n")) << r.out;
    }
}

// gzip files are regular files too: mapped, then inflated.
TEST_F(PrepInputs, GzipFilesAreStillRead) {
    const std::string ace = read_file(dir / "a.ace");
    const std::string sff = read_file(dir / "a.sff");
    write_file(dir / "a.ace.gz", gzipped(ace));
    write_file(dir / "a.sff.gz", gzipped(sff));
    auto r = run_prep_bounded({"ace", "a.ace.gz", "o.ace"}, dir);
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_TRUE(read_file(dir / "o.ace") == ace);
    r = run_prep_bounded({"sff", "o.sff", "a.sff.gz"}, dir);
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_TRUE(read_file(dir / "o.sff") == sff);
    // gzip data in a pipe is refused as any pipe is.
    pipe_input gz(gzipped(sff));
    r = refused({"sff", "p.sff", gz.path()});
    EXPECT_EQ(r.err, "Pelkrin-prep: " + gz.path() + ": is a pipe, not a regular file: it cannot be read by position\n");
}

}  // namespace
}  // namespace pelkrin::test
