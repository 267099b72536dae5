// The programs on damaged copies of every real input: cut at many lengths and
// with bytes changed at many places. Whatever the damage, a program must end
// within 5 seconds with status 0 or 1 (Pelkrin-prep also 2), say only its own
// messages, and (in the sanitizer build) draw no sanitizer report. The
// optimised build runs them under a 1 GB address-space limit; the sanitizer
// build, which cannot run under one, under the sanitizer's own limits on
// allocations and resident memory.
//
// Every case is a process of its own, so the full sets (every 7th byte of an
// SFF file, every line of an ACE file, 64 changed bytes each, about 35,000 cases)
// take long under the sanitizers. By default the tests run a fixed sample of
// them: cuts and changed bytes spread evenly over the whole of every file,
// every ACE case through Pelkrin and one of four Pelkrin-view modes (the report
// among them) in turn, and every case through one of Pelkrin-prep's commands
// in turn: check, then sff (SFF cases) or ace (ACE cases). PELKRIN_LONG=1 in
// the environment runs the full sets, each case through every mode and command.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <ostream>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "capture.h"
#include "files.h"
#include "program.h"
#include "sff/reader.h"

#if defined(__SANITIZE_ADDRESS__)
#define PELKRIN_TESTS_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define PELKRIN_TESTS_SANITIZED 1
#endif
#endif

namespace pelkrin::test {
namespace {

// The beginnings of every line either program may write to standard error.
const char* const known_messages[] = {
    "Error ocurred while reading file ", "reach end of file while read more data", "The input file ",
    "fail to open file ",                "The file: ",                             "Error: the input file ",
    "Error: tag '",                      "Error: AF tag for read ",                "can not open file ",
    "Pelkrin-view: ",                    "Error: the SFF file ",                   "Error: the ACE file ",
};

bool full_sets() {
    const char* v = std::getenv("PELKRIN_LONG");
    return v != nullptr && *v != '\0' && std::string_view(v) != "0";
}

run_limits limits() {
    run_limits l;
    l.seconds = 5;
#ifdef PELKRIN_TESTS_SANITIZED
    ::setenv("ASAN_OPTIONS", "detect_leaks=1:max_allocation_size_mb=256:hard_rss_limit_mb=1024", 1);
#else
    l.address_space = std::uint64_t{1} << 30;
#endif
    return l;
}

void check(const program_result& r, const std::string& what) {
    ASSERT_FALSE(r.timed_out) << what << ": still running after 5 s";
    ASSERT_TRUE(r.status == 0 || r.status == 1) << what << ": status " << r.status << "\n" << r.err;
    std::istringstream err(r.err);
    for (std::string line; std::getline(err, line);) {
        bool known = false;
        for (const char* m : known_messages) known = known || line.rfind(m, 0) == 0;
        ASSERT_TRUE(known) << what << ": unexpected line on standard error: " << line;
    }
}

// Pelkrin-prep's own rules: its messages all begin with its name; check always
// ends its report with the verdict its status gives; a command that fails says
// why and leaves no output, not even a temporary file.
void check_prep(const program_result& r, const std::string& what, const std::filesystem::path& dir,
                const std::string& output) {
    ASSERT_FALSE(r.timed_out) << what << ": still running after 5 s";
    ASSERT_TRUE(r.status == 0 || r.status == 1 || r.status == 2) << what << ": status " << r.status << "\n" << r.err;
    std::istringstream err(r.err);
    for (std::string line; std::getline(err, line);)
        ASSERT_EQ(line.rfind("Pelkrin-prep", 0), 0u) << what << ": unexpected line on standard error: " << line;
    if (output.empty()) {
        const char* verdict = r.status == 0 ? "\nPelkrin will read this pair correctly as it stands.\n"
                                            : "\nPelkrin will not read this pair correctly as it stands";
        const std::size_t at = r.out.rfind('\n', r.out.size() >= 2 ? r.out.size() - 2 : 0);
        ASSERT_TRUE(at != std::string::npos && r.out.compare(at, std::strlen(verdict), verdict) == 0)
            << what << ": status " << r.status << " without its verdict:\n" << r.out;
        return;
    }
    if (r.status == 0) return;
    ASSERT_FALSE(r.err.empty()) << what << ": status " << r.status << " without a message";
    for (const auto& entry : std::filesystem::directory_iterator(dir)) {
        const std::string leaf = entry.path().filename().string();
        ASSERT_TRUE(leaf != output && leaf.rfind("." + output + ".", 0) != 0) << what << ": left " << leaf;
    }
}

// Runs Pelkrin-prep's commands on a damaged case in `dir`: `commands` holds
// each command's arguments and its output's name (empty for check); the
// sample takes one of them a case, in turn.
void run_prep_commands(const std::vector<std::pair<std::vector<std::string>, std::string>>& commands,
                       std::size_t case_number, const std::filesystem::path& dir, const run_limits& l,
                       const std::string& what) {
    for (std::size_t c = 0; c < commands.size(); ++c) {
        if (!full_sets() && c != case_number % commands.size()) continue;
        const auto& [args, output] = commands[c];
        if (!output.empty()) std::filesystem::remove(dir / output);
        std::vector<std::string> argv = {pelkrin_prep_binary()};
        argv.insert(argv.end(), args.begin(), args.end());
        check_prep(run_program(argv, dir, l), what + " (Pelkrin-prep " + args[0] + ")", dir, output);
        if (::testing::Test::HasFatalFailure()) return;
    }
}

// An assembly of one contig naming every read of the SFF file (and one it lacks).
std::string assembly_of(const std::filesystem::path& sff) {
    reader r(sff.string(), test::std_console());
    read_index index;
    r.build_read_index(index);
    std::string reads;
    std::string af, rd;
    std::size_t n = 0;
    for (const auto& entry : index) {
        af += "AF " + entry.first + " U 1\n";
        rd += "RD " + entry.first + " 3 0 0\nACG\n\nQA 1 3 1 3\nDS x\n\n";
        ++n;
    }
    af += "AF missing_read U 1\n";
    rd += "RD missing_read 3 0 0\nACG\n\nQA 1 3 1 3\nDS x\n\n";
    ++n;
    return "AS 1 " + std::to_string(n) + "\n\nCO Contig1 10 " + std::to_string(n) + " 1 U\nACGTACGTAC\n\nBQ\n20\n\n" +
           af + "BS 1 10 x\n\n" + rd;
}

// Bytes changed at 64 places spread over the file, each a case of its own; the
// sample takes every 4th of those places.
std::vector<std::string> flipped_copies(const std::string& bytes) {
    std::vector<std::string> copies;
    if (bytes.empty()) return copies;
    const std::size_t step = full_sets() ? 1 : 4;
    for (std::size_t k = 0; k < 64; k += step) {
        std::string copy = bytes;
        const std::size_t at = (k * 7919 + k * k * 31) % bytes.size();
        copy[at] = static_cast<char>(copy[at] ^ (k % 2 == 0 ? 0xFF : 0x5A));
        copies.push_back(std::move(copy));
    }
    return copies;
}

// The lengths an SFF file of `size` bytes is cut to: every 7th byte, or in the
// sample every `sff_sample_stride`-th. Both strides are odd, so the cuts fall
// at every offset within the 8-byte steps that the SFF records are padded to.
constexpr std::size_t sff_sample_stride = 49;

std::vector<std::size_t> sff_cuts(std::size_t size) {
    const std::size_t stride = full_sets() ? 7 : sff_sample_stride;
    std::vector<std::size_t> cuts;
    for (std::size_t cut = 0; cut < size; cut += stride) cuts.push_back(cut);
    return cuts;
}

// The lengths an ACE file is cut to: the start of every line and the whole
// file, or in the sample `ace_sample_cuts` of them spread evenly over the file
// (the first and the whole file always among them).
constexpr std::size_t ace_sample_cuts = 120;

std::vector<std::size_t> ace_cuts(const std::string& text) {
    std::vector<std::size_t> all;
    for (std::size_t at = 0; at < text.size();) {
        all.push_back(at);
        const std::size_t end = text.find('\n', at);
        at = end == std::string::npos ? text.size() : end + 1;
    }
    all.push_back(text.size());
    if (full_sets() || all.size() <= ace_sample_cuts) return all;
    std::vector<std::size_t> cuts;
    for (std::size_t i = 0; i < ace_sample_cuts; ++i) cuts.push_back(all[i * (all.size() - 1) / (ace_sample_cuts - 1)]);
    return cuts;
}

// The SFF cases of one file are split into `parts` tests of about the same size:
// part k takes the cuts in the k-th stretch of the file; part 0 also the changes.
void damaged_sff(const std::string& leaf, const std::filesystem::path& source, std::size_t part, std::size_t parts) {
    const auto dir = scratch_dir();
    const std::string bytes = read_file(source);
    write_file(dir / "asm.ace", assembly_of(source));
    const run_limits l = limits();
    std::size_t cases = 0;
    auto run_case = [&](const std::string& sff, const std::string& what) {
        write_file(dir / "in.sff", sff);
        check(run_program({pelkrin_binary(), "-f", "asm.ace", "in.sff"}, dir, l), what);
        if (::testing::Test::HasFatalFailure()) return;
        run_prep_commands({{{"check", "asm.ace", "in.sff"}, ""}, {{"sff", "out.sff", "in.sff"}, "out.sff"}}, cases, dir,
                          l, what);
        ++cases;
    };
    const std::size_t first = bytes.size() * part / parts;
    const std::size_t last = bytes.size() * (part + 1) / parts;
    for (const std::size_t cut : sff_cuts(bytes.size())) {
        if (cut < first || cut >= last) continue;
        run_case(bytes.substr(0, cut), leaf + " cut at " + std::to_string(cut));
        if (::testing::Test::HasFatalFailure()) return;
    }
    if (part == 0) {
        std::size_t k = 0;
        for (const auto& copy : flipped_copies(bytes)) {
            run_case(copy, leaf + " changed, case " + std::to_string(k++));
            if (::testing::Test::HasFatalFailure()) return;
        }
    }
    ::testing::Test::RecordProperty("cases", static_cast<int>(cases));
    std::cout << leaf << " part " << part << ": " << cases << " damaged SFF files, no failure\n";
}

void damaged_ace(const std::string& leaf, const std::filesystem::path& source, const std::filesystem::path& sff) {
    const auto dir = scratch_dir();
    const std::string text = read_file(source);
    write_file(dir / "in.sff", read_file(sff));
    const run_limits l = limits();
    std::size_t cases = 0;
    const bool every_mode = full_sets();
    auto run_case = [&](const std::string& ace, const std::string& what) {
        write_file(dir / "in.ace", ace);
        check(run_program({pelkrin_binary(), "-f", "in.ace", "in.sff"}, dir, l), what + " (Pelkrin)");
        // The report reads what Pelkrin just wrote beside in.ace, through in.qdx.
        const std::vector<std::string> modes[] = {{"-m", "align", "in.ace", "Contig1"},
                                                  {"-m", "flow-html", "in.ace", "Contig1"},
                                                  {"-m", "layout", "in.ace", "Contig1"},
                                                  {"-m", "report", "-o", "report", "in.ace"}};
        for (std::size_t m = 0; m < 4; ++m) {
            if (!every_mode && m != cases % 4) continue;
            std::vector<std::string> args = {pelkrin_view_binary()};
            args.insert(args.end(), modes[m].begin(), modes[m].end());
            check(run_program(args, dir, l), what + " (Pelkrin-view -m " + modes[m][1] + ")");
        }
        if (::testing::Test::HasFatalFailure()) return;
        run_prep_commands({{{"check", "in.ace", "in.sff"}, ""}, {{"ace", "in.ace", "out.ace"}, "out.ace"}}, cases, dir,
                          l, what);
        ++cases;
    };
    for (const std::size_t at : ace_cuts(text)) {
        run_case(text.substr(0, at), leaf + " cut at " + std::to_string(at));
        if (::testing::Test::HasFatalFailure()) return;
    }
    std::size_t k = 0;
    for (const auto& copy : flipped_copies(text)) {
        run_case(copy, leaf + " changed, case " + std::to_string(k++));
        if (::testing::Test::HasFatalFailure()) return;
    }
    ::testing::Test::RecordProperty("cases", static_cast<int>(cases));
    std::cout << leaf << ": " << cases << " damaged ACE files, no failure\n";
}

struct sff_part {
    const char* leaf;
    bool in_project;  // the example; else a file of tests/data
    std::size_t part;
    std::size_t parts;
};

// Names the part in test listings instead of dumping its bytes.
void PrintTo(const sff_part& p, std::ostream* os) { *os << p.leaf << " part " << p.part << " of " << p.parts; }

class RobustnessSff : public ::testing::TestWithParam<sff_part> {};

TEST_P(RobustnessSff, DamagedFilesEndCleanly) {
    const sff_part& p = GetParam();
    const auto source = p.in_project ? source_file(std::string("example/") + p.leaf) : data_file(p.leaf);
    damaged_sff(p.leaf, source, p.part, p.parts);
}

// About 1,000 cases a test, so that each stays short under the sanitizers too.
std::vector<sff_part> sff_parts() {
    std::vector<sff_part> all;
    const std::pair<const char*, std::size_t> files[] = {
        {"E3MFGYR02_random_10_reads.sff", 3}, {"greek.sff", 10}, {"paired.sff", 8}};
    for (const auto& [leaf, parts] : files)
        for (std::size_t k = 0; k < parts; ++k) all.push_back({leaf, false, k, parts});
    for (std::size_t k = 0; k < 7; ++k) all.push_back({"example.sff", true, k, 7});
    return all;
}

INSTANTIATE_TEST_SUITE_P(Parts, RobustnessSff, ::testing::ValuesIn(sff_parts()),
                         [](const ::testing::TestParamInfo<sff_part>& info) {
                             std::string name = info.param.leaf;
                             name = name.substr(0, name.find('.'));
                             for (char& c : name)
                                 if (c == '_') c = 'x';
                             return name + "Part" + std::to_string(info.param.part);
                         });

TEST(Robustness, DamagedContig1Ace) { damaged_ace("contig1.ace", data_file("contig1.ace"), data_file("greek.sff")); }
TEST(Robustness, DamagedConsedSampleAce) {
    damaged_ace("consed_sample.ace", data_file("consed_sample.ace"), data_file("paired.sff"));
}
TEST(Robustness, DamagedCap3Ace) { damaged_ace("seq.cap.ace", data_file("seq.cap.ace"), data_file("greek.sff")); }
TEST(Robustness, DamagedExampleAce) {
    damaged_ace("example.ace", source_file("example/example.ace"), source_file("example/example.sff"));
}

}  // namespace
}  // namespace pelkrin::test
