// Another process cuts the SFF file short while the run reads it: the run
// ends with a message naming the file and status 1, never with a crash. The
// ACE file is a FIFO, so that the test knows how far the run has come: it
// opens the ACE file only once the SFF file is open and its header read, and
// reads no contig before the test writes it.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include "files.h"
#include "run_fixture.h"

namespace pelkrin::test {
namespace {

struct big_run {
    run_files files;
    std::vector<std::string> contigs;  // ACE text of each contig
    std::int64_t cut_at = 0;           // where the SFF file is cut: about a tenth of it stays
};

// 2,000 reads of 400 flows in contigs of 50, in file order.
big_run make_run() {
    sff_fixture f;
    f.flows = 400;
    std::vector<std::string> names;
    for (int i = 0; i < 2000; ++i) {
        std::vector<int> flows_of_bases;
        std::vector<std::uint8_t> quals;
        for (int b = 0; b < 40; ++b) {
            flows_of_bases.push_back(2 * b + i % 2);
            quals.push_back(static_cast<std::uint8_t>(10 + b));
        }
        names.push_back(std::string("read").append(std::to_string(i)));
        f.reads.push_back(read_from_flows(names.back(), flows_of_bases, quals, 400));
    }
    const sff_bytes sff = build_sff(f);
    big_run r;
    r.files = write_inputs("", sff.bytes);
    r.cut_at = sff.record_offsets[200];
    for (std::size_t c = 0; c < names.size(); c += 50) {
        r.contigs.push_back(ace_contig(std::string("Contig").append(std::to_string(c / 50)),
                                       std::vector<std::string>(names.begin() + static_cast<std::ptrdiff_t>(c),
                                                                names.begin() + static_cast<std::ptrdiff_t>(c + 50))));
    }
    std::filesystem::remove(r.files.dir / r.files.ace);
    EXPECT_EQ(::mkfifo((r.files.dir / r.files.ace).c_str(), 0600), 0);
    return r;
}

// Opens the FIFO for writing once the run has opened it for reading.
int open_when_read(const std::filesystem::path& fifo) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (std::chrono::steady_clock::now() < deadline) {
        const int fd = ::open(fifo.c_str(), O_WRONLY | O_NONBLOCK);
        if (fd >= 0) {
            ::fcntl(fd, F_SETFL, 0);  // blocking writes from here on
            return fd;
        }
        if (errno != ENXIO) return -1;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return -1;
}

void write_all(int fd, const std::string& text) {
    for (std::size_t at = 0; at < text.size();) {
        const ssize_t n = ::write(fd, text.data() + at, text.size() - at);
        if (n <= 0) return;
        at += static_cast<std::size_t>(n);
    }
}

void expect_changed_message(const program_result& r, const run_files& files) {
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "Error: the SFF file reads.sff changed while it was read\n");
    EXPECT_EQ(r.out, "");
    // The outputs are put in place as after any other error: no temporary file stays.
    std::vector<std::string> leaves;
    for (const auto& entry : std::filesystem::directory_iterator(files.dir)) leaves.push_back(entry.path().filename());
    std::sort(leaves.begin(), leaves.end());
    EXPECT_EQ(leaves, (std::vector<std::string>{"asm.ace", "asm.qdx", "asm.reads", "reads.sff"}));
}

// Starts Pelkrin (with `flag`, "" for none) on `run` and waits until it has
// opened the ACE FIFO; returns the run's result to come and the FIFO's
// writing end, or -1 when it could not be opened.
std::future<program_result> start_run(const big_run& run, const char* flag, int& fd) {
    const std::vector<std::string> options = *flag ? std::vector<std::string>{flag} : std::vector<std::string>{};
    run_limits limits;
    limits.seconds = 60;
    auto result = std::async(std::launch::async, [&run, options, limits] { return run_pelkrin(run.files, options, limits); });
    fd = open_when_read(run.files.dir / run.files.ace);
    return result;
}

void cut_sff(const big_run& run) { ASSERT_EQ(::truncate((run.files.dir / run.files.sff).c_str(), run.cut_at), 0); }

TEST(SffShrinks, CutBeforeTheIndexWalk) {
    for (const char* flag : {"", "-f"}) {
        const big_run run = make_run();
        int fd = -1;
        auto result = start_run(run, flag, fd);
        ASSERT_GE(fd, 0);
        // The run has the SFF file open and mapped from its header; it has
        // not walked it yet: that comes once the ACE file's first line is read.
        cut_sff(run);
        write_all(fd, "AS " + std::to_string(run.contigs.size()) + " 2000\n\n");
        for (const std::string& contig : run.contigs) write_all(fd, contig);
        ::close(fd);
        expect_changed_message(result.get(), run.files);
    }
}

TEST(SffShrinks, CutWhileTheReadsAreWritten) {
    for (const char* flag : {"", "-f"}) {
        const big_run run = make_run();
        int fd = -1;
        auto result = start_run(run, flag, fd);
        ASSERT_GE(fd, 0);
        // The first contigs, whose reads stay in the file, then a pause in which
        // the run indexes the SFF file and writes them; then the cut, and the
        // contigs whose reads are gone. (Had the cut come before the walk
        // ended, the walk would meet it: the run ends the same way.)
        write_all(fd, "AS " + std::to_string(run.contigs.size()) + " 2000\n\n");
        for (std::size_t c = 0; c < 3; ++c) write_all(fd, run.contigs[c]);
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        cut_sff(run);
        for (std::size_t c = 3; c < run.contigs.size(); ++c) write_all(fd, run.contigs[c]);
        ::close(fd);
        expect_changed_message(result.get(), run.files);
    }
}

}  // namespace
}  // namespace pelkrin::test
