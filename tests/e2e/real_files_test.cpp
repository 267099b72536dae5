// Runs on real assemblies and on cut-off copies of them.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <sstream>

#include "expected_texts.h"
#include "files.h"
#include "run_fixture.h"

namespace pelkrin::test {
namespace {

// Copies a real assembly into a scratch folder (the outputs are written beside it).
run_files real_inputs(const std::string& ace_leaf, const std::string& sff_leaf) {
    run_files files{scratch_dir(), ace_leaf, sff_leaf};
    write_file(files.dir / ace_leaf, read_file(data_file(ace_leaf)));
    write_file(files.dir / sff_leaf, read_file(data_file(sff_leaf)));
    return files;
}

std::vector<std::string> lines_of(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

TEST(RealAssemblies, Contig1ReadsComeFromOffsetZero) {
    // None of its reads is in the SFF file: each is decoded from offset 0, all alike.
    auto files = real_inputs("contig1.ace", "greek.sff");
    auto r = run_pelkrin(files);
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.err, "");
    EXPECT_EQ(r.out, expected_completion("contig1.qdx", "contig1.reads"));
    const auto index = lines_of(read_file(files.dir / "contig1.qdx"));
    ASSERT_EQ(index.size(), 2u);
    EXPECT_EQ(index[0].substr(0, 8), "Contig1\t");
    EXPECT_EQ(index[0].substr(index[0].size() - 4), "\t2\t1");
    EXPECT_EQ(index[1].substr(0, 8), "Contig2\t");
    EXPECT_EQ(index[1].substr(index[1].size() - 5), "\t13\t1");
    const auto reads = lines_of(read_file(files.dir / "contig1.reads"));
    ASSERT_EQ(reads.size(), 2u + 2 * 2 + 2 * 13);
    const std::string quality_at_zero = reads[2];
    EXPECT_FALSE(quality_at_zero.empty());
    for (std::size_t i = 1; i < reads.size(); ++i) {
        if (reads[i][0] == '>') continue;
        if (reads[i].find("\t1") != std::string::npos && reads[i + 1] == quality_at_zero) {
            ++i;
            continue;
        }
        ADD_FAILURE() << "line " << i << ": " << reads[i];
    }
}

TEST(RealAssemblies, ConsedSampleReadToTheEnd) {
    auto files = real_inputs("consed_sample.ace", "greek.sff");
    auto r = run_pelkrin(files, {"-f"});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.err, "");
    const auto index = lines_of(read_file(files.dir / "consed_sample.qdx"));
    ASSERT_EQ(index.size(), 1u);
    EXPECT_EQ(index[0].substr(index[0].size() - 4), "\t8\t3");
    EXPECT_EQ(lines_of(read_file(files.dir / "consed_sample.reads")).size(), 1u + 8 * 4);
}

TEST(RealAssemblies, Cap3FileWithoutBaseSegmentsStopsAtRd) {
    auto files = real_inputs("seq.cap.ace", "greek.sff");
    auto r = run_pelkrin(files);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "Error: tag 'RD' should be not in the ACE file!\n");
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(read_file(files.dir / "seq.cap.reads"), "");
}

TEST(RealAssemblies, ExampleAssemblyRunsWholly) {
    run_files files{scratch_dir(), "example.ace", "example.sff"};
    write_file(files.dir / files.ace, read_file(source_file("example/example.ace")));
    write_file(files.dir / files.sff, read_file(source_file("example/example.sff")));
    auto r = run_pelkrin(files, {"-f"});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.err, "");
    EXPECT_EQ(r.out, expected_completion("example.qdx", "example.reads"));
    const auto index = lines_of(read_file(files.dir / "example.qdx"));
    ASSERT_EQ(index.size(), 3u);
    const std::string reads = read_file(files.dir / "example.reads");
    // Every index line points just behind its own contig's header line.
    for (const auto& line : index) {
        std::istringstream fields(line);
        std::string name;
        std::size_t offset, count;
        int lines;
        fields >> name >> offset >> count >> lines;
        const std::string header = ">" + name + "\t" + std::to_string(count) + "\t3\n";
        ASSERT_GE(offset, header.size());
        EXPECT_EQ(reads.substr(offset - header.size(), header.size()), header);
        EXPECT_EQ(lines, 3);
    }
    // 57 reads, each a header line and three data lines, none of them empty.
    const auto all = lines_of(reads);
    EXPECT_EQ(all.size(), 3u + 57 * 4);
    for (const auto& line : all) EXPECT_FALSE(line.empty());
}

// An assembly cut off anywhere ends in bounded time with status 0 or 1.
void expect_every_cut_ends(const std::string& ace_text, const std::string& sff_bytes, bool every_line) {
    std::vector<std::size_t> cuts;
    for (std::size_t i = 0; i < ace_text.size(); ++i) {
        if (!every_line || ace_text[i] == '\n') cuts.push_back(i + (every_line ? 1 : 0));
    }
    const auto dir = scratch_dir();
    write_file(dir / "reads.sff", sff_bytes);
    for (std::size_t cut : cuts) {
        write_file(dir / "cut.ace", ace_text.substr(0, cut));
        const auto start = std::chrono::steady_clock::now();
        auto r = run_program({pelkrin_binary(), "cut.ace", "reads.sff"}, dir);
        const auto seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        ASSERT_TRUE(r.status == 0 || r.status == 1) << "cut at " << cut << ": status " << r.status;
        ASSERT_LT(seconds, 5.0) << "cut at " << cut;
        if (r.status == 1) {
            EXPECT_TRUE(r.err.rfind("Error: ", 0) == 0) << "cut at " << cut << ": " << r.err;
        }
    }
}

TEST(TruncatedAssemblies, ExampleCutAtEveryLineOfItsFirstContigEnds) {
    // Every record kind, the RD section included, is in the first contig; the
    // cuts stop at the second one.
    const std::string ace = read_file(source_file("example/example.ace"));
    expect_every_cut_ends(ace.substr(0, ace.find("\nCO Contig2") + 1), read_file(source_file("example/example.sff")),
                          true);
}

TEST(TruncatedAssemblies, ConsedSampleCutAtEveryLineEnds) {
    expect_every_cut_ends(read_file(data_file("consed_sample.ace")), read_file(data_file("greek.sff")), true);
}

TEST(TruncatedAssemblies, WorkedExampleCutAtEveryByteEnds) {
    expect_every_cut_ends(ace_file({ace_contig("Contig1", {"readB", "readA"}), ace_contig("Contig2", {"readC"})}),
                          build_sff(worked_example_sff()).bytes, false);
}

}  // namespace
}  // namespace pelkrin::test
