// Pelkrin-prep on damaged copies of real inputs, cut short and with bytes
// changed, through all three commands: each run ends within 10 seconds with
// status 0, 1 or 2, and a failing run says why.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <sstream>

#include "files.h"
#include "prep_fixture.h"

#if defined(__SANITIZE_ADDRESS__)
#define PELKRIN_PREP_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define PELKRIN_PREP_SANITIZED 1
#endif
#endif

namespace pelkrin::test {
namespace {

namespace fs = std::filesystem;

// Cut lengths and changed bytes spread evenly over the file.
std::vector<std::string> damaged(const std::string& bytes) {
    std::vector<std::string> out;
    for (std::size_t k = 1; k <= 12; ++k) out.push_back(bytes.substr(0, bytes.size() * k / 13 + k));
    for (std::size_t k = 0; k < 10; ++k) {
        std::string copy = bytes;
        const std::size_t at = (k * 7919 + k * k * 31 + 13) % bytes.size();
        copy[at] = static_cast<char>(copy[at] ^ (k % 2 == 0 ? 0xFF : 0x5A));
        out.push_back(std::move(copy));
    }
    return out;
}

void expect_sane(const std::vector<std::string>& args, const fs::path& dir) {
    std::vector<std::string> argv{pelkrin_prep_binary()};
    argv.insert(argv.end(), args.begin(), args.end());
    run_limits limits;
    limits.seconds = 10;
#ifdef PELKRIN_PREP_SANITIZED
    ::setenv("ASAN_OPTIONS", "detect_leaks=1:max_allocation_size_mb=1024:hard_rss_limit_mb=2048", 1);
#else
    limits.address_space = std::uint64_t{4} << 30;
#endif
    const program_result r = run_program(argv, dir, limits);
    std::string what;
    for (const auto& a : args) what += a + " ";
    ASSERT_FALSE(r.timed_out) << what;
    ASSERT_TRUE(r.status == 0 || r.status == 1 || r.status == 2) << what << "status " << r.status << "\n" << r.err;
    if (r.status != 0) {
        EXPECT_FALSE(r.err.empty() && r.out.empty()) << what << ": no message";
    }
    std::istringstream err(r.err);
    for (std::string line; std::getline(err, line);)
        EXPECT_TRUE(line.rfind("Pelkrin-prep", 0) == 0 || line.rfind("\rPelkrin-prep", 0) == 0) << what << line;
}

TEST(PrepRobustness, DamagedAceFiles) {
    const fs::path dir = scratch_dir();
    write_file(dir / "reads.sff", read_file(data_file("mira/sim454.sff")));
    for (const char* leaf : {"mira/sim454_out.ace", "seq.cap.ace", "contig1.ace"}) {
        const auto copies = damaged(read_file(data_file(leaf)));
        for (std::size_t i = 0; i < copies.size(); ++i) {
            SCOPED_TRACE(std::string(leaf) + " case " + std::to_string(i));
            write_file(dir / "in.ace", i % 3 == 2 ? gzipped(copies[i]).substr(0, copies[i].size() / 3 + 20) : copies[i]);
            expect_sane({"check", "in.ace", "reads.sff"}, dir);
            expect_sane({"ace", "in.ace", "out.ace"}, dir);
            expect_sane({"ace", "--keep-complete", "in.ace", "out.ace"}, dir);
        }
    }
}

TEST(PrepRobustness, DamagedSffFiles) {
    const fs::path dir = scratch_dir();
    write_file(dir / "asm.ace", read_file(data_file("mira/sim454_out.ace")));
    write_file(dir / "greek.sff", read_file(data_file("greek.sff")));
    for (const char* leaf : {"mira/sim454.sff", "E3MFGYR02_random_10_reads.sff"}) {
        std::string bytes = read_file(data_file(leaf));
        const auto copies = damaged(bytes);
        for (std::size_t i = 0; i < copies.size(); ++i) {
            SCOPED_TRACE(std::string(leaf) + " case " + std::to_string(i));
            write_file(dir / "in.sff", i % 4 == 3 ? gzipped(copies[i]) : copies[i]);
            expect_sane({"check", "asm.ace", "in.sff"}, dir);
            expect_sane({"sff", "out.sff", "greek.sff", "in.sff"}, dir);
        }
    }
}

}  // namespace
}  // namespace pelkrin::test
