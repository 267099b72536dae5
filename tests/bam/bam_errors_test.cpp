// Pelkrin-bam keeps the promise every program keeps: status 0 only when all
// four outputs are complete; no output over an input; a failed run leaves
// the outputs of an earlier run as they were, and no temporary file.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "bam_fixture.h"
#include "files.h"
#include "folder_state.h"

namespace pelkrin::test {
namespace {

namespace fs = std::filesystem;

// The example in a fresh folder, with the outputs of an earlier run.
fs::path example_with_earlier_outputs() {
    const fs::path dir = scratch_dir();
    fs::copy_file(source_file("example/example.ace"), dir / "asm.ace");
    fs::copy_file(source_file("example/example.sff"), dir / "reads.sff");
    for (const char* leaf : {"asm.bam", "asm.bam.bai", "asm.fa", "asm.fa.fai"}) write_file(dir / leaf, "earlier\n");
    return dir;
}

program_result bam(const fs::path& dir, std::vector<std::string> args, const run_limits& limits = {}) {
    args.insert(args.begin(), pelkrin_bam_binary());
    return run_program(args, dir, limits);
}

TEST(BamErrors, UsageVersionAndHelp) {
    const fs::path dir = scratch_dir();
    for (const std::vector<std::string>& args : std::vector<std::vector<std::string>>{
             {}, {"a.ace"}, {"-x", "a.ace", "b.sff"}, {"--threads", "0", "a.ace", "b.sff"}, {"-o"}}) {
        const program_result r = bam(dir, args);
        EXPECT_EQ(r.status, 2);
        EXPECT_EQ(r.out, "");
        EXPECT_NE(r.err.find("Usage: Pelkrin-bam"), std::string::npos) << r.err;
    }
    program_result r = bam(dir, {"--version"});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, "Pelkrin-bam (Pelkrin) " PELKRIN_VERSION "\n");
    r = bam(dir, {"--help"});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out.rfind("Usage: Pelkrin-bam", 0), 0u);
}

TEST(BamErrors, TheOutputsNamedByThePrefix) {
    const fs::path dir = example_with_earlier_outputs();
    fs::create_directory(dir / "out");
    const program_result r = bam(dir, {"-o", "out/x", "--sample", "S1", "asm.ace", "reads.sff"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, "Pelkrin-bam: 57 reads of 3 contigs written to out/x.bam (0 unmapped), the reference to out/x.fa\n");
    EXPECT_EQ(r.err, "");
    for (const char* leaf : {"x.bam", "x.bam.bai", "x.fa", "x.fa.fai"}) EXPECT_TRUE(fs::exists(dir / "out" / leaf)) << leaf;
    EXPECT_EQ(read_file(dir / "asm.bam"), "earlier\n") << "the default prefix's files are not touched";
    const std::string header = bam_header(dir / "out" / "x.bam");
    EXPECT_NE(header.find("@RG\tID:reads\tPL:LS454\tFO:TACG"), std::string::npos) << header;
    EXPECT_NE(header.find("\tKS:TCAG\tSM:S1\n"), std::string::npos) << header;
    EXPECT_NE(header.find("@PG\tID:Pelkrin-bam\tPN:Pelkrin-bam\tVN:" PELKRIN_VERSION "\tCL:Pelkrin-bam -o out/x --sample S1 asm.ace reads.sff\n"),
              std::string::npos) << header;
}

TEST(BamErrors, AnOutputOverAnInputIsRefused) {
    const fs::path dir = example_with_earlier_outputs();
    fs::create_symlink("asm.ace", dir / "x.fa");
    const auto before = folder_state(dir);
    const program_result r = bam(dir, {"-o", "x", "asm.ace", "reads.sff"});
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "Pelkrin-bam: Error: output file x.fa would overwrite input file asm.ace\n");
    const auto after = folder_state(dir);
    EXPECT_TRUE(after == before) << state_difference(before, after);
}

// Inputs that cannot be read: a message naming the file (and the place),
// status 1, the earlier outputs as they were and no temporary file left.
TEST(BamErrors, InputsThatCannotBeReadLeaveTheEarlierOutputs) {
    const fs::path dir = example_with_earlier_outputs();
    const std::string sff = read_file(dir / "reads.sff");
    write_file(dir / "cut.sff", sff.substr(0, sff.size() / 2));
    write_file(dir / "cut.ace", read_file(dir / "asm.ace").substr(0, 9000));
    fs::create_directory(dir / "folder");
    struct attempt {
        std::vector<std::string> args;
        std::string message;
    };
    const std::vector<attempt> attempts = {
        {{"none.ace", "reads.sff"}, "Pelkrin-bam: none.ace: cannot open: No such file or directory\n"},
        {{"asm.ace", "folder"}, "Pelkrin-bam: folder: cannot read: Is a directory\n"},
        {{"asm.ace", "/dev/zero"}, "Pelkrin-bam: /dev/zero: is a device, not a file\n"},
        {{"asm.ace", "asm.ace"}, "Pelkrin-bam: asm.ace: byte 0: not an SFF file (no \".sff\" magic number)\n"},
        {{"cut.ace", "reads.sff"}, ""},
        {{"asm.ace", "cut.sff"}, ""},
    };
    const auto before = folder_state(dir);
    for (const attempt& a : attempts) {
        std::vector<std::string> args = {"-o", "asm"};
        args.insert(args.end(), a.args.begin(), a.args.end());
        const program_result r = bam(dir, args);
        EXPECT_EQ(r.status, 1) << a.args[0] << " " << a.args[1];
        if (!a.message.empty()) {
            EXPECT_EQ(r.err, a.message);
        } else {
            EXPECT_EQ(r.err.rfind("Pelkrin-bam: cut.", 0), 0u) << r.err;
        }
        EXPECT_EQ(r.out, "");
        const auto after = folder_state(dir);
        EXPECT_TRUE(after == before) << a.args[0] << " " << a.args[1] << ": " << state_difference(before, after);
    }
}

// A write that fails: the files of the earlier run stay, none is left half written.
TEST(BamErrors, AFailedWriteLeavesTheEarlierOutputs) {
    const fs::path dir = example_with_earlier_outputs();
    const auto before = folder_state(dir);
    run_limits limits;
    limits.file_size = 4096;  // the example's BAM file takes about 14 KB
    const program_result r = bam(dir, {"asm.ace", "reads.sff"}, limits);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err.rfind("Pelkrin-bam: can not write file asm.", 0), 0u) << r.err;
    EXPECT_NE(r.err.find("File too large"), std::string::npos) << r.err;
    const auto after = folder_state(dir);
    EXPECT_TRUE(after == before) << state_difference(before, after);
}

// A read of the assembly that no SFF file holds keeps its place, without
// qualities and flow signals; the count is told.
TEST(BamErrors, AReadNoSffFileHoldsIsWrittenWithoutQualities) {
    const fs::path dir = scratch_dir();
    const std::string text = read_file(source_file("example/example.ace"));
    write_file(dir / "asm.ace", text);
    std::vector<contig> contigs = contigs_of(text);
    contigs[0].reads.erase(contigs[0].reads.begin());  // its first read is in no SFF file
    write_file(dir / "reads.sff", sff_of_reads(contigs));
    const program_result r = bam(dir, {"asm.ace", "reads.sff"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.err, "Pelkrin-bam: 1 reads of the assembly are in no SFF file: written without qualities and flow signals\n");
    std::size_t without = 0;
    for (const bam_read& b : read_bam(dir / "asm.bam")) {
        if (!b.quals.empty()) continue;
        ++without;
        EXPECT_TRUE(b.flowgram.empty());
        EXPECT_EQ(b.read_group, "");
        EXPECT_EQ(b.first_flow, -1);
    }
    EXPECT_EQ(without, 1u);
}

}  // namespace
}  // namespace pelkrin::test
