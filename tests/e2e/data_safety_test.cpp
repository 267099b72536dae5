// The run ends with status 0 only when both outputs hold every contig of a
// complete ACE file, each read decoded from a complete record of a complete SFF
// file: what happens when the disk fills, an output is an input, the SFF file
// carries its index block among the reads, is no regular file or is cut short,
// the ACE file is cut short, or the run is killed.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <map>
#include <sstream>
#include <filesystem>
#include <thread>

#include "capture.h"
#include "common/output_file.h"
#include "reads_format/reads_writer.h"
#include "ace/ace_reader.h"
#include "expected_texts.h"
#include "files.h"
#include "run_fixture.h"
#include "sff/reader.h"

namespace pelkrin::test {
namespace {

const std::string completion = expected_completion("asm.qdx", "asm.reads");

std::string worked_example_ace() {
    return ace_file({ace_contig("Contig1", {"readB", "readA"}), ace_contig("Contig2", {"readC"})});
}

const std::string worked_example_reads =
    ">Contig1\t2\t1\nreadA\t1\n35\t35\t33\t33\t30\nreadB\t1\n40\t38\t38\n>Contig2\t1\t1\nreadC\t1\n32\t31\n";
const std::string worked_example_index = "Contig1\t13\t2\t1\nContig2\t66\t1\t1\n";

// Every file in the folder but the inputs, with its contents.
std::map<std::string, std::string> outputs_in(const run_files& files) {
    std::map<std::string, std::string> found;
    for (const auto& entry : std::filesystem::directory_iterator(files.dir)) {
        const std::string leaf = entry.path().filename().string();
        if (leaf == files.ace || leaf == files.sff) continue;
        found[leaf] = entry.is_regular_file() ? read_file(entry.path()) : std::string("<not a file>");
    }
    return found;
}

// What the outputs must hold, written the plain way: one contig at a time, each
// read decoded where the index says, on one thread.
std::map<std::string, std::string> written_one_by_one(const std::string& ace_text, const std::string& sff_bytes,
                                                      bool flowgram) {
    std::ostringstream dropped;
    const console quiet{dropped, dropped};
    reader sff("reads.sff", bytes_of(sff_bytes), quiet);
    sff.get_header();
    read_index index;
    sff.build_read_index(index);
    aceReader ace("asm.ace", ace_text, quiet);
    const auto dir = scratch_subdir("expected");
    {
        output_file reads_out((dir / "asm.reads").string());
        output_file index_out((dir / "asm.qdx").string());
        seqRead decoded;
        while (true) {
            contig c;
            if (!ace.next_contig(c)) break;
            write_contig_header(reads_out, index_out, c, flowgram ? 3 : 1);
            for (const auto& entry : c.reads) {
                decoded = seqRead{};
                const sff_read& record = sff.get_read(index.position_of(entry.first), decoded);
                write_read_entry(reads_out, entry.first, decoded, record, flowgram);
            }
        }
    }
    return {{"asm.qdx", read_file(dir / "asm.qdx")}, {"asm.reads", read_file(dir / "asm.reads")}};
}

// ---- Write failures

TEST(DataSafetyWrites, FileSizeLimitEndsTheRunWithCanNotWrite) {
    // Many reads, so that the reads file outgrows the limit long before the end.
    sff_fixture f = worked_example_sff();
    std::vector<std::string> names;
    for (int i = 0; i < 4000; ++i) {
        const std::string name = std::string("r").append(std::to_string(i));  // GCC 12 warns wrongly about "r" + ...
        f.reads.push_back(read_from_flows(name, {0, 1, 2, 3, 4, 5}, {30, 31, 32, 33, 34, 35}, 8));
        names.push_back(name);
    }
    auto files = write_inputs(ace_file({ace_contig("Big", names)}), build_sff(f).bytes);
    write_file(files.dir / "asm.reads", "earlier reads\n");
    write_file(files.dir / "asm.qdx", "earlier index\n");
    run_limits limits;
    limits.file_size = 50000;
    auto r = run_pelkrin(files, {"-f"}, limits);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "can not write file asm.reads\n");
    EXPECT_EQ(r.out, "");
    // A failed write leaves nothing a user wants: the earlier pair stays.
    const auto found = outputs_in(files);
    ASSERT_EQ(found.size(), 2u) << "no temporary file left";
    EXPECT_EQ(found.at("asm.reads"), "earlier reads\n");
    EXPECT_EQ(found.at("asm.qdx"), "earlier index\n");
}

TEST(DataSafetyWrites, ReadsFileLinkedToDevFull) {
    auto files = write_inputs(worked_example_ace(), build_sff(worked_example_sff()).bytes);
    std::filesystem::create_symlink("/dev/full", files.dir / "asm.reads");
    write_file(files.dir / "asm.qdx", "earlier index\n");
    auto r = run_pelkrin(files);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "can not write file asm.reads\n");
    EXPECT_EQ(r.out, "");
    EXPECT_TRUE(std::filesystem::is_symlink(files.dir / "asm.reads"));
    // The index written is no use without its reads file: the earlier one stays.
    EXPECT_EQ(read_file(files.dir / "asm.qdx"), "earlier index\n");
    EXPECT_EQ(outputs_in(files).size(), 2u);
}

TEST(DataSafetyWrites, IndexFileLinkedToDevFull) {
    auto files = write_inputs(worked_example_ace(), build_sff(worked_example_sff()).bytes);
    std::filesystem::create_symlink("/dev/full", files.dir / "asm.qdx");
    write_file(files.dir / "asm.reads", "earlier reads\n");
    auto r = run_pelkrin(files);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "can not write file asm.qdx\n");
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(read_file(files.dir / "asm.reads"), "earlier reads\n");
    EXPECT_EQ(outputs_in(files).size(), 2u) << "no temporary file left";
}

TEST(DataSafetyWrites, CompletionMessageThatCannotBeWritten) {
    auto files = write_inputs(worked_example_ace(), build_sff(worked_example_sff()).bytes);
    run_limits limits;
    limits.stdout_path = "/dev/full";
    auto r = run_pelkrin(files, {}, limits);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "can not write standard output\n");
    EXPECT_EQ(read_file(files.dir / "asm.reads"), worked_example_reads);
    EXPECT_EQ(read_file(files.dir / "asm.qdx"), worked_example_index);
}

// ---- An output that is an input

TEST(DataSafetyOverwrite, IndexFileHardLinkedToTheSffFile) {
    auto files = write_inputs(worked_example_ace(), build_sff(worked_example_sff()).bytes);
    std::filesystem::create_hard_link(files.dir / files.sff, files.dir / "asm.qdx");
    const std::string sff_before = read_file(files.dir / files.sff);
    auto r = run_pelkrin(files);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "Error: output file asm.qdx would overwrite input file reads.sff\n");
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(read_file(files.dir / files.sff), sff_before);
    EXPECT_FALSE(std::filesystem::exists(files.dir / "asm.reads")) << "nothing created";
}

TEST(DataSafetyOverwrite, ReadsFileSymbolicLinkToTheAceFile) {
    auto files = write_inputs(worked_example_ace(), build_sff(worked_example_sff()).bytes);
    std::filesystem::create_symlink("asm.ace", files.dir / "asm.reads");
    auto r = run_pelkrin(files);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "Error: output file asm.reads would overwrite input file asm.ace\n");
    EXPECT_EQ(read_file(files.dir / files.ace), worked_example_ace());
    EXPECT_FALSE(std::filesystem::exists(files.dir / "asm.qdx"));
}

TEST(DataSafetyOverwrite, ReadsFileIsCheckedBeforeTheIndexFileAndTheAceFileBeforeTheSffFile) {
    auto files = write_inputs(worked_example_ace(), build_sff(worked_example_sff()).bytes);
    std::filesystem::create_symlink(files.sff, files.dir / "asm.reads");
    std::filesystem::create_symlink("asm.ace", files.dir / "asm.qdx");
    auto r = run_pelkrin(files);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "Error: output file asm.reads would overwrite input file reads.sff\n");
}

// ---- The SFF file's index block among the reads

class DataSafetyIndexBlock : public ::testing::TestWithParam<std::tuple<bool, std::size_t>> {};

TEST_P(DataSafetyIndexBlock, ReadsAroundTheIndexBlockAreWrittenAsWithoutIt) {
    const auto [big_endian, before] = GetParam();
    sff_fixture plain = worked_example_sff();
    plain.big_endian = big_endian;
    sff_fixture with_block = plain;
    with_block.index_block_before = before;
    for (const char* flag : {"", "-f"}) {
        const std::vector<std::string> options = *flag ? std::vector<std::string>{flag} : std::vector<std::string>{};
        auto expected_files = write_inputs(worked_example_ace(), build_sff(plain).bytes, "plain");
        auto expected = run_pelkrin(expected_files, options);
        ASSERT_EQ(expected.status, 0);
        auto files = write_inputs(worked_example_ace(), build_sff(with_block).bytes, "with-block");
        auto r = run_pelkrin(files, options);
        EXPECT_EQ(r.status, 0);
        EXPECT_EQ(r.err, "");
        EXPECT_EQ(r.out, completion);
        EXPECT_EQ(outputs_in(files), outputs_in(expected_files));
    }
}

INSTANTIATE_TEST_SUITE_P(StartMiddleEnd, DataSafetyIndexBlock,
                         ::testing::Combine(::testing::Bool(), ::testing::Values(0, 1, 2, 3)));

// ---- An SFF input that cannot be an SFF file

TEST(DataSafetySffKind, Fifo) {
    auto files = write_inputs(worked_example_ace(), "");
    std::filesystem::remove(files.dir / files.sff);
    ASSERT_EQ(::mkfifo((files.dir / files.sff).c_str(), 0600), 0);
    // No writer: the SFF file is read by position, so opening it must not
    // wait for one. (A writer that waited for the run to open the FIFO could
    // itself wait for ever, once the run has opened and left it.)
    auto r = run_pelkrin(files);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "Error: the SFF file reads.sff is not a regular file\n");
    EXPECT_EQ(r.out, "");
    EXPECT_TRUE(outputs_in(files).empty());
}

TEST(DataSafetySffKind, Directory) {
    auto files = write_inputs(worked_example_ace(), "");
    std::filesystem::remove(files.dir / files.sff);
    std::filesystem::create_directory(files.dir / files.sff);
    auto r = run_pelkrin(files);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "Error: the SFF file reads.sff is not a regular file\n");
    EXPECT_EQ(r.out, "");
}

TEST(DataSafetySffKind, DevNull) {
    auto files = write_inputs(worked_example_ace(), "");
    std::filesystem::remove(files.dir / files.sff);
    files.sff = "/dev/null";
    auto r = run_pelkrin(files);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "Error: the SFF file /dev/null is not a regular file\n");
    EXPECT_TRUE(outputs_in(files).empty());
}

TEST(DataSafetySffKind, EmptyFile) {
    auto files = write_inputs(worked_example_ace(), "");
    auto r = run_pelkrin(files);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "Error ocurred while reading file reads.sff\n");
    EXPECT_EQ(r.out, "Only got 0 bytes while 31 is need\n");
    EXPECT_TRUE(outputs_in(files).empty());
}

TEST(DataSafetySffKind, TwentyByteFile) {
    auto files = write_inputs(worked_example_ace(), build_sff(worked_example_sff()).bytes.substr(0, 20));
    auto r = run_pelkrin(files);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "Error ocurred while reading file reads.sff\n");
    EXPECT_EQ(r.out, "Only got 20 bytes while 31 is need\n");
    EXPECT_TRUE(outputs_in(files).empty());
}

// ---- An SFF file that ends early

TEST(DataSafetySffCut, EveryRecordBoundaryAndInsideEveryRecord) {
    const sff_bytes sff = build_sff(worked_example_sff());
    const std::int64_t total = static_cast<std::int64_t>(sff.bytes.size());
    const std::size_t n = sff.record_offsets.size();
    for (std::size_t i = 0; i < n; ++i) {
        const std::int64_t start = sff.record_offsets[i];
        const std::int64_t end = i + 1 < n ? sff.record_offsets[i + 1] : total;
        for (const std::int64_t cut : {start, start + 7, start + 16, start + 21, end - 9, end - 8, end - 7, end - 1}) {
            SCOPED_TRACE("cut at " + std::to_string(cut) + ", in record " + std::to_string(i));
            const std::string bytes = sff.bytes.substr(0, static_cast<std::size_t>(cut));
            auto files = write_inputs(worked_example_ace(), bytes, "run");
            auto r = run_pelkrin(files);
            // Where the walk stops: within a read header it reports the bytes it got;
            // past one, the record counts and the next header comes up empty. The
            // last record's own data has no header after it: the walk ends there.
            const bool last_data = i + 1 == n && cut >= start + 16;
            const std::int64_t padding_start = end - 7;  // the last record (3 bases of 8 flows) has 7 bytes of padding
            if (i + 1 == n && cut >= padding_start) {
                // Only the last record's padding is missing: every byte of data is there.
                EXPECT_EQ(r.status, 0);
                EXPECT_EQ(r.out, completion);
                continue;
            }
            std::size_t found = i;
            std::string out;
            if (!last_data) {
                const std::int64_t got = cut >= start + 16 ? 0 : cut - start;
                if (cut >= start + 16) found = i + 1;
                out = "Only got " + std::to_string(got) + " bytes while 16 is need\n";
            }
            EXPECT_EQ(r.status, 1);
            EXPECT_EQ(r.out, out);
            EXPECT_EQ(r.err, std::string(last_data ? "" : "Error ocurred while reading file reads.sff\n") +
                                 "Error: the SFF file reads.sff ends after " + std::to_string(found) + " of its 3 reads\n");
            EXPECT_EQ(outputs_in(files), written_one_by_one(worked_example_ace(), bytes, false));
        }
    }
}

// ---- An ACE file that ends inside a contig

TEST(DataSafetyAceCut, EveryLine) {
    const std::string ace = worked_example_ace();
    const std::string sff_text = build_sff(worked_example_sff()).bytes;
    std::vector<std::string> lines;
    for (std::size_t at = 0; at < ace.size();) {
        const std::size_t end = ace.find('\n', at);
        lines.push_back(ace.substr(at, end - at + 1));
        at = end + 1;
    }
    // Where each contig begins (its CO line) and the line after which it is
    // whole (the QA line of its last read: the DS line after it is read unseen).
    std::vector<std::pair<std::size_t, std::size_t>> contigs;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (lines[i].rfind("CO ", 0) == 0) contigs.push_back({i, i});
        if (lines[i].rfind("QA ", 0) == 0) contigs.back().second = i;
    }
    ASSERT_EQ(contigs.size(), 2u);
    const std::string contig1_reads = worked_example_reads.substr(0, worked_example_reads.find(">Contig2"));
    const std::string contig1_index = "Contig1\t13\t2\t1\n";
    std::string kept;
    for (std::size_t n = 0; n <= lines.size(); ++n) {
        SCOPED_TRACE("first " + std::to_string(n) + " lines");
        auto files = write_inputs(kept, sff_text);
        auto r = run_pelkrin(files);
        std::size_t whole = 0;
        std::string inside;
        for (std::size_t k = 0; k < contigs.size(); ++k) {
            if (n > contigs[k].second) ++whole;
            else if (n > contigs[k].first && inside.empty()) inside = std::string("Contig").append(std::to_string(k + 1));
        }
        if (n == 0) {
            EXPECT_EQ(r.status, 1);  // not even "AS"
            EXPECT_EQ(r.err, "Error: the input file asm.ace does not like an ACE file\n");
        } else if (inside.empty()) {
            EXPECT_EQ(r.status, 0);
            EXPECT_EQ(r.err, "");
            EXPECT_EQ(r.out, completion);
        } else {
            EXPECT_EQ(r.status, 1);
            EXPECT_EQ(r.err, "Error: the ACE file asm.ace ends inside contig " + inside + "\n");
            EXPECT_EQ(r.out, "");
        }
        if (n > 0) {
            EXPECT_EQ(read_file(files.dir / "asm.reads"), whole == 0 ? "" : whole == 1 ? contig1_reads : worked_example_reads);
            EXPECT_EQ(read_file(files.dir / "asm.qdx"), whole == 0 ? "" : whole == 1 ? contig1_index : worked_example_index);
        }
        if (n < lines.size()) kept += lines[n];
    }
}

TEST(DataSafetyAceCut, CrLfLineEnds) {
    std::string ace;
    for (char c : worked_example_ace()) {
        if (c == '\n') ace += '\r';
        ace += c;
    }
    auto files = write_inputs(ace, build_sff(worked_example_sff()).bytes);
    auto r = run_pelkrin(files);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "Error: the ACE file asm.ace ends inside contig Contig1 (its lines end with CR LF)\n");
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(read_file(files.dir / "asm.reads"), "");
    EXPECT_EQ(read_file(files.dir / "asm.qdx"), "");
}

TEST(DataSafetyAceCut, BothTheAceAndTheSffFileCutShort) {
    const std::string ace = worked_example_ace();
    const std::string cut_ace = ace.substr(0, ace.find("CO Contig2") + 20);
    sff_fixture f = worked_example_sff();
    f.claimed_reads = 4;
    auto files = write_inputs(cut_ace, build_sff(f).bytes);
    auto r = run_pelkrin(files);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err,
              "Error ocurred while reading file reads.sff\n"
              "Error: the ACE file asm.ace ends inside contig Contig2\n"
              "Error: the SFF file reads.sff ends after 3 of its 4 reads\n");
}

// ---- A killed run

TEST(DataSafetyKilled, SigtermWhileWritingLeavesTheOldPairAndNoTemporaryFile) {
    // About 60 MB of output with the flowgrams.
    sff_fixture f;
    f.flows = 800;
    std::vector<std::string> names;
    std::vector<int> flows_of_bases;
    std::vector<std::uint8_t> quals;
    for (int b = 0; b < 250; ++b) {
        flows_of_bases.push_back(3 * b);
        quals.push_back(static_cast<std::uint8_t>(20 + b % 20));
    }
    for (int i = 0; i < 15000; ++i) {
        const std::string name = std::string("read").append(std::to_string(i));
        f.reads.push_back(read_from_flows(name, flows_of_bases, quals, 800));
        names.push_back(name);
    }
    auto files = write_inputs(ace_file({ace_contig("Big", names)}), build_sff(f).bytes);
    write_file(files.dir / "asm.reads", "old reads\n");
    write_file(files.dir / "asm.qdx", "old index\n");

    const pid_t pid = ::fork();
    ASSERT_GE(pid, 0);
    if (pid == 0) {
        if (::chdir(files.dir.c_str()) != 0) ::_exit(126);
        const int null = ::open("/dev/null", O_WRONLY);
        ::dup2(null, 1);
        ::execl(pelkrin_binary().c_str(), "Pelkrin", "-f", "asm.ace", "reads.sff", static_cast<char*>(nullptr));
        ::_exit(127);
    }
    // Wait until a temporary reads file holds some megabytes, then stop the run.
    bool seen = false;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (!seen && std::chrono::steady_clock::now() < deadline) {
        for (const auto& entry : std::filesystem::directory_iterator(files.dir)) {
            const std::string leaf = entry.path().filename().string();
            std::error_code ec;
            if (leaf.rfind(".asm.reads.", 0) == 0 && std::filesystem::file_size(entry.path(), ec) > 4000000) seen = true;
        }
        if (!seen) std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
    ::kill(pid, SIGTERM);
    int status = 0;
    ::waitpid(pid, &status, 0);
    ASSERT_TRUE(seen) << "the run ended before it had written 4 MB";
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM);
    EXPECT_EQ(outputs_in(files), (std::map<std::string, std::string>{{"asm.qdx", "old index\n"},
                                                                      {"asm.reads", "old reads\n"}}));
}

TEST(DataSafetyKilled, OutputsReplaceTheFilesTheirLinksName) {
    auto files = write_inputs(worked_example_ace(), build_sff(worked_example_sff()).bytes);
    std::filesystem::create_directory(files.dir / "kept");
    write_file(files.dir / "kept" / "real.reads", "old\n");
    std::filesystem::create_symlink("kept/real.reads", files.dir / "asm.reads");
    ::chmod((files.dir / "kept" / "real.reads").c_str(), 0640);
    auto r = run_pelkrin(files);
    EXPECT_EQ(r.status, 0);
    EXPECT_TRUE(std::filesystem::is_symlink(files.dir / "asm.reads"));
    EXPECT_EQ(read_file(files.dir / "kept" / "real.reads"), worked_example_reads);
    struct stat st {};
    ASSERT_EQ(::stat((files.dir / "kept" / "real.reads").c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 07777, 0640u) << "the replaced file keeps its mode";
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(files.dir / "kept"), {}), 1);
}

TEST(DataSafetyKilled, AFolderThatAdmitsNoNewFileIsWrittenInPlace) {
    // The other user must reach the folder and the program: both stand
    // outside the build tree, which may lie where only its owner can enter.
    const shared_scratch shared;
    const std::filesystem::path& dir = shared.path();
    shared.write("asm.ace", worked_example_ace());
    shared.write("reads.sff", build_sff(worked_example_sff()).bytes);
    shared.write("Pelkrin", read_file(pelkrin_binary()), true);
    write_file(dir / "asm.reads", "old\n");
    write_file(dir / "asm.qdx", "old\n");
    for (const char* leaf : {"asm.reads", "asm.qdx"}) ::chmod((dir / leaf).c_str(), 0666);
    ::chmod(dir.c_str(), 0555);
    const std::string program = (dir / "Pelkrin").string();
    // Run as a user other than the folder's owner (root may create files anywhere).
    const pid_t pid = ::fork();
    ASSERT_GE(pid, 0);
    if (pid == 0) {
        if (::geteuid() == 0 && (::setgid(65534) != 0 || ::setuid(65534) != 0)) ::_exit(125);
        if (::chdir(dir.c_str()) != 0) ::_exit(126);
        const int null = ::open("/dev/null", O_WRONLY);
        ::dup2(null, 1);
        ::execl(program.c_str(), "Pelkrin", "asm.ace", "reads.sff", static_cast<char*>(nullptr));
        ::_exit(127);
    }
    int status = 0;
    ::waitpid(pid, &status, 0);
    ::chmod(dir.c_str(), 0755);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0) << "125: no other user; 126: the folder cannot be entered; 127: nor the program run";
    EXPECT_EQ(read_file(dir / "asm.reads"), worked_example_reads);
    EXPECT_EQ(read_file(dir / "asm.qdx"), worked_example_index);
}

}  // namespace
}  // namespace pelkrin::test
