// check's verdict on an SFF file Pelkrin refuses: the file's section quotes
// the message Pelkrin itself gives for it, and the last line names the file
// and why, with status 1. Before, a missing file or a FASTA file named .sff
// got "Pelkrin writes placeholder entries", and a pipe "Pelkrin will read
// this pair correctly", status 0, while Pelkrin refused all three.
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <filesystem>
#include <sstream>

#include "files.h"
#include "pipe_input.h"
#include "prep_fixture.h"

namespace pelkrin::test {
namespace {

namespace fs = std::filesystem;

bool has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

std::string first_line(const std::string& text) { return text.substr(0, text.find('\n')); }

std::string last_line(const std::string& text) {
    std::string t = text;
    while (!t.empty() && t.back() == '\n') t.pop_back();
    return t.substr(t.rfind('\n') + 1);
}

struct refused_sff {
    std::string kind;
    std::string path;
    std::string reason;  // in the verdict, after the name
};

TEST(PrepCheckVerdict, NamesEachSffFilePelkrinRefusesInItsOwnWords) {
    const fs::path dir = scratch_dir();
    const std::string sff = read_file(source_file("example/example.sff"));
    write_file(dir / "a.ace", read_file(source_file("example/example.ace")));
    write_file(dir / "reads.fasta.sff", read_file(data_file("E3MFGYR02_random_10_reads.fasta")));
    write_file(dir / "short.sff", sff.substr(0, 20));
    write_file(dir / "empty.sff", "");
    write_file(dir / "a.sff.gz", gzipped(sff));
    fs::create_directory(dir / "folder.sff");
    ASSERT_EQ(::mkfifo((dir / "fifo.sff").c_str(), 0600), 0);
    pipe_input pipe(sff);
    const std::vector<refused_sff> files = {
        {"a missing file", "none.sff", "it cannot be opened: No such file or directory"},
        {"a FASTA file", "reads.fasta.sff", "not an SFF file"},
        {"gzip data", "a.sff.gz", "not an SFF file but gzip data, which Pelkrin-prep sff inflates"},
        {"a file shorter than the header", "short.sff", "too short for an SFF header: 20 of its 31 bytes"},
        {"an empty file", "empty.sff", "too short for an SFF header: 0 of its 31 bytes"},
        {"a pipe", pipe.path(), "not a regular file: a pipe or FIFO"},
        {"a FIFO", "fifo.sff", "not a regular file: a pipe or FIFO"},
        {"a directory", "folder.sff", "not a regular file: a directory"},
        {"a device", "/dev/zero", "not a regular file: a device"},
    };
    for (const refused_sff& f : files) {
        SCOPED_TRACE(f.kind);
        const auto pelkrin = run_program({pelkrin_binary(), "a.ace", f.path}, dir);
        ASSERT_EQ(pelkrin.status, 1) << "Pelkrin refuses it";
        const auto r = run_prep_bounded({"check", "a.ace", f.path}, dir);
        EXPECT_EQ(r.status, 1);
        EXPECT_EQ(r.err, "");
        EXPECT_TRUE(has(r.out, "  problem: Pelkrin refuses it: " + first_line(pelkrin.err) + "\n")) << r.out;
        EXPECT_EQ(last_line(r.out), "Pelkrin will not read this pair correctly as it stands: it refuses the SFF file " +
                                        f.path + " (" + f.reason + ").");
        EXPECT_FALSE(has(r.out, "placeholder")) << r.out;
    }
    // Every refused file is named, each with its reason, beside one Pelkrin reads.
    write_file(dir / "a.sff", sff);
    const auto r = run_prep_bounded({"check", "a.ace", "a.sff", "none.sff", "folder.sff"}, dir);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(last_line(r.out),
              "Pelkrin will not read this pair correctly as it stands: it refuses the SFF file none.sff (it cannot be "
              "opened: No such file or directory); it refuses the SFF file folder.sff (not a regular file: a directory).");
    EXPECT_FALSE(has(r.out, "Pelkrin refuses it: " + std::string("fail to open file a.sff"))) << r.out;
}

// The file Pelkrin reads gets no refusal, and the pair its plain verdict.
TEST(PrepCheckVerdict, AFilePelkrinReadsIsNotRefused) {
    const fs::path dir = scratch_dir();
    write_file(dir / "a.ace", read_file(source_file("example/example.ace")));
    write_file(dir / "a.sff", read_file(source_file("example/example.sff")));
    ASSERT_EQ(run_program({pelkrin_binary(), "a.ace", "a.sff"}, dir).status, 0);
    const auto r = run_prep_bounded({"check", "a.ace", "a.sff"}, dir);
    EXPECT_EQ(r.status, 0) << r.out;
    EXPECT_FALSE(has(r.out, "refuses")) << r.out;
    EXPECT_EQ(last_line(r.out), "Pelkrin will read this pair correctly as it stands.");
}

}  // namespace
}  // namespace pelkrin::test
