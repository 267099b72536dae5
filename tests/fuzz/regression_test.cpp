// Replays every input that once broke a fuzz target (fuzz/regressions/ace, sff,
// run and views), and the example assembly, through the same target functions
// as the fuzzers. A folder that is missing or holds no input fails its test:
// the replay would otherwise pass without replaying anything.
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>

#include "files.h"
#include "targets/fuzz_targets.h"

namespace pelkrin::test {
namespace {

using target_function = void (*)(const std::uint8_t*, std::size_t);

void call(target_function f, const std::string& bytes) {
    f(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

// Replays every input of fuzz/regressions/FOLDER (files whose names start
// with '.' are not inputs); fails when there is none.
void replay(const std::string& folder, target_function f) {
    const auto dir = source_file("fuzz/regressions/" + folder);
    ASSERT_TRUE(std::filesystem::is_directory(dir)) << dir << " is missing";
    std::size_t n = 0;
    for (const auto& entry : std::filesystem::directory_iterator(dir)) {
        if (!entry.is_regular_file() || entry.path().filename().string().front() == '.') continue;
        SCOPED_TRACE(entry.path().string());
        call(f, read_file(entry.path()));
        ++n;
    }
    EXPECT_GT(n, 0u) << dir << " holds no regression input";
}

std::string example(const char* leaf) { return read_file(source_file(std::string("example/") + leaf)); }

std::string run_input(const std::string& ace, const std::string& sff) {
    const auto n = static_cast<std::uint32_t>(ace.size());
    std::string packed(4, '\0');
    for (int i = 0; i < 4; ++i) packed[static_cast<std::size_t>(i)] = static_cast<char>((n >> (8 * i)) & 0xFF);
    return packed + ace + sff;
}

TEST(FuzzRegressions, AceReader) {
    call(fuzz::ace_reader, example("example.ace"));
    call(fuzz::ace_reader, "");
    replay("ace", fuzz::ace_reader);
}

TEST(FuzzRegressions, SffReader) {
    call(fuzz::sff_reader, example("example.sff"));
    call(fuzz::sff_reader, "");
    replay("sff", fuzz::sff_reader);
}

TEST(FuzzRegressions, WholeRun) {
    call(fuzz::whole_run, run_input(example("example.ace"), example("example.sff")));
    call(fuzz::whole_run, "");
    replay("run", fuzz::whole_run);
}

TEST(FuzzRegressions, ContigViews) {
    call(fuzz::contig_views, example("example.ace"));
    call(fuzz::contig_views, read_file(data_file("contig1.ace")));
    replay("views", fuzz::contig_views);
}

TEST(FuzzRegressions, ReadsFile) {
    call(fuzz::reads_file, "");
    call(fuzz::reads_file, run_input("C\t0\t1\t3\n", "r\t1\n1\n2\n3\n"));
    replay("reads", fuzz::reads_file);
}

TEST(FuzzRegressions, PrepAce) {
    call(fuzz::prep_ace, example("example.ace"));
    call(fuzz::prep_ace, read_file(data_file("mira/sim454_out.ace")));
    call(fuzz::prep_ace, read_file(data_file("seq.cap.ace")));
    call(fuzz::prep_ace, "");
    replay("prep_ace", fuzz::prep_ace);
}

TEST(FuzzRegressions, PrepSff) {
    call(fuzz::prep_sff, example("example.sff"));
    call(fuzz::prep_sff, read_file(data_file("E3MFGYR02_random_10_reads.sff")));
    call(fuzz::prep_sff, "");
    replay("prep_sff", fuzz::prep_sff);
}

}  // namespace
}  // namespace pelkrin::test
