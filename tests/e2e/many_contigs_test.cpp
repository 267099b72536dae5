// Runs over many contigs, many buffers of output: the files are those that
// writing one contig at a time on one thread gives, also when the SFF file is
// cut short, when a write fails (the file-size limit, a full device) and when
// the ACE file has an error in its middle.
#include <gtest/gtest.h>

#include <sys/resource.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "ace/ace_reader.h"
#include "common/fatal_error.h"
#include "common/output_file.h"
#include "reads_format/reads_writer.h"
#include "files.h"
#include "run_fixture.h"
#include "sff/reader.h"

namespace pelkrin::test {
namespace {

struct assembly {
    std::string ace;
    std::string sff;
    std::vector<std::int64_t> record_offsets;
};

// 6,000 reads of 260 flows, their records in an order unrelated to the
// assembly; contigs of 0 to 60 reads and one of 2,500, some names the SFF
// file lacks; `contigs` more contigs of one read each.
assembly make_assembly(int single_read_contigs = 0) {
    std::mt19937 rng(5);
    sff_fixture f;
    f.flows = 260;
    std::vector<std::string> names;
    for (int i = 0; i < 6000; ++i) {
        std::vector<int> flows_of_bases;
        std::vector<std::uint8_t> quals;
        const int bases = 20 + static_cast<int>(rng() % 100);
        for (int b = 0; b < bases; ++b) {
            flows_of_bases.push_back(2 * b + static_cast<int>(rng() % 2));
            quals.push_back(static_cast<std::uint8_t>(rng() % 45));
        }
        names.push_back(std::string("r").append(std::to_string(i)));
        auto r = read_from_flows(names.back(), flows_of_bases, quals, 260);
        for (auto& v : r.flowgram) v = static_cast<std::uint16_t>(v * 97 + rng() % 1200);
        if (i % 5 == 1) r.clip_qual_left = 3;
        if (i % 7 == 2) r.clip_qual_right = static_cast<std::uint16_t>(bases - 2);
        f.reads.push_back(r);
    }
    std::shuffle(f.reads.begin(), f.reads.end(), rng);
    const sff_bytes sff = build_sff(f);

    std::vector<std::string> contigs;
    std::size_t next = 0;
    const auto take = [&](std::size_t n) {
        std::vector<std::string> reads;
        for (std::size_t k = 0; k < n; ++k) reads.push_back(names[(next++) % names.size()]);
        return reads;
    };
    for (int c = 0; c < 120; ++c) {
        std::vector<std::string> reads = take(rng() % 61);
        if (c % 9 == 4) reads.push_back(std::string("missing").append(std::to_string(c)));
        if (c == 60) reads = take(2500);
        contigs.push_back(ace_contig(std::string("Contig").append(std::to_string(c)), reads));
    }
    for (int c = 0; c < single_read_contigs; ++c) {
        contigs.push_back(ace_contig(std::string("Single").append(std::to_string(c)), take(1)));
    }
    return {ace_file(contigs), sff.bytes, sff.record_offsets};
}

// The outputs of writing one contig at a time on one thread, stopping after a
// contig in which a write failed, as the run always has.
std::map<std::string, std::string> one_contig_at_a_time(const run_files& files, const std::string& ace_text,
                                                        bool flowgram, const std::filesystem::path& out_dir) {
    std::ostringstream dropped;
    const console quiet{dropped, dropped};
    {
        reader sff((files.dir / files.sff).string(), quiet);
        sff.get_header();
        read_index index;
        sff.build_read_index(index);
        aceReader ace("asm.ace", ace_text, quiet);
        output_file reads_out((out_dir / "asm.reads").string());
        output_file index_out((out_dir / "asm.qdx").string());
        seqRead decoded;
        try {
            while (true) {
                contig c;
                if (!ace.next_contig(c)) break;
                write_contig_header(reads_out, index_out, c, flowgram ? 3 : 1);
                for (const auto& entry : c.reads) {
                    decoded = seqRead{};
                    const sff_read& record = sff.get_read(index.position_of(entry.first), decoded);
                    write_read_entry(reads_out, entry.first, decoded, record, flowgram);
                }
                if (reads_out.write_failed() || index_out.write_failed()) break;
            }
        } catch (const fatal_error&) {
            // A malformed contig: what came before it stays.
        }
    }
    std::map<std::string, std::string> found;
    for (const char* leaf : {"asm.reads", "asm.qdx"}) {
        if (std::filesystem::is_regular_file(out_dir / leaf)) found[leaf] = read_file(out_dir / leaf);
    }
    return found;
}

std::map<std::string, std::string> outputs(const run_files& files) {
    std::map<std::string, std::string> found;
    for (const char* leaf : {"asm.reads", "asm.qdx"}) {
        if (std::filesystem::is_regular_file(files.dir / leaf)) found[leaf] = read_file(files.dir / leaf);
    }
    return found;
}

// Compares files of megabytes without printing them: where they part, if they do.
void expect_same_files(const std::map<std::string, std::string>& found,
                       const std::map<std::string, std::string>& expected) {
    ASSERT_EQ(found.size(), expected.size());
    for (const auto& [leaf, text] : expected) {
        ASSERT_EQ(found.count(leaf), 1u) << leaf;
        const std::string& got = found.at(leaf);
        const auto parted = std::mismatch(got.begin(), got.end(), text.begin(), text.end());
        EXPECT_TRUE(got == text) << leaf << ": " << got.size() << " bytes, expected " << text.size()
                                 << "; they part at byte " << (parted.first - got.begin());
    }
}

// Runs `body` with every file this process writes limited to `bytes`.
template <typename Body>
void with_file_size_limit(std::uint64_t bytes, Body body) {
    rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{bytes, before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    body();
    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
}

const std::vector<std::vector<std::string>> both_ways = {{}, {"-f"}};

TEST(ManyContigs, OutputsAreThoseOfWritingOneContigAtATime) {
    const assembly a = make_assembly(3000);
    for (const auto& options : both_ways) {
        const bool flowgram = !options.empty();
        auto files = write_inputs(a.ace, a.sff, flowgram ? "f" : "plain");
        auto r = run_pelkrin(files, options);
        EXPECT_EQ(r.status, 0);
        EXPECT_EQ(r.err, "");
        const auto expected = one_contig_at_a_time(files, a.ace, flowgram, scratch_subdir(flowgram ? "f-ref" : "ref"));
        EXPECT_GT(expected.at("asm.reads").size(), flowgram ? 5000000u : 1500000u) << "several buffers";
        expect_same_files(outputs(files), expected);
    }
}

TEST(ManyContigs, SffFileCutShort) {
    const assembly a = make_assembly();
    std::mt19937 rng(3);
    for (int k = 0; k < 4; ++k) {
        const std::size_t cut = a.sff.size() / 2 + rng() % (a.sff.size() / 2);
        for (const auto& options : both_ways) {
            const bool flowgram = !options.empty();
            SCOPED_TRACE("cut at " + std::to_string(cut) + (flowgram ? ", -f" : ""));
            auto files = write_inputs(a.ace, a.sff.substr(0, cut), "run");
            auto r = run_pelkrin(files, options);
            EXPECT_EQ(r.status, 1);
            EXPECT_NE(r.err.find("Error: the SFF file reads.sff ends after "), std::string::npos);
            expect_same_files(outputs(files), one_contig_at_a_time(files, a.ace, flowgram, scratch_subdir("ref")));
        }
    }
}

TEST(ManyContigs, MalformedContigInTheMiddle) {
    const assembly a = make_assembly();
    std::string ace = a.ace;
    ace.replace(ace.find("CO Contig70 "), 2, "XX");
    for (const auto& options : both_ways) {
        const bool flowgram = !options.empty();
        auto files = write_inputs(ace, a.sff, "run");
        auto r = run_pelkrin(files, options);
        EXPECT_EQ(r.status, 1);
        EXPECT_EQ(r.err, "Error: tag 'XX' should be not in the ACE file!\n");
        expect_same_files(outputs(files), one_contig_at_a_time(files, ace, flowgram, scratch_subdir("ref")));
    }
}

TEST(ManyContigs, FileSizeLimitAnywhere) {
    const assembly a = make_assembly();
    // What a run without a limit writes, with and without -f.
    std::map<bool, std::map<std::string, std::string>> whole;
    for (const bool flowgram : {false, true}) {
        auto files = write_inputs(a.ace, a.sff, "run");
        whole[flowgram] = one_contig_at_a_time(files, a.ace, flowgram, scratch_subdir(flowgram ? "f-ref" : "ref"));
    }
    for (const std::uint64_t limit : {std::uint64_t{70000}, std::uint64_t{1048576}, std::uint64_t{1048576 + 300},
                                      std::uint64_t{2500000}, std::uint64_t{4200000}}) {
        for (const auto& options : both_ways) {
            const bool flowgram = !options.empty();
            SCOPED_TRACE("limit " + std::to_string(limit) + (flowgram ? ", -f" : ""));
            auto files = write_inputs(a.ace, a.sff, "run");
            const std::map<std::string, std::string> previous = {{"asm.reads", "earlier\n"}, {"asm.qdx", "earlier\n"}};
            for (const auto& [leaf, text] : previous) write_file(files.dir / leaf, text);
            run_limits limits;
            limits.file_size = limit;
            auto r = run_pelkrin(files, options, limits);
            const std::map<std::string, std::string>& expected = whole.at(flowgram);
            if (expected.at("asm.reads").size() < limit) {
                EXPECT_EQ(r.status, 0);
                expect_same_files(outputs(files), expected);
            } else {
                // A failed write leaves the pair of the earlier run as it was.
                EXPECT_EQ(r.status, 1);
                EXPECT_EQ(r.err, "can not write file asm.reads\n");
                expect_same_files(outputs(files), previous);
            }
            std::size_t entries = 0;
            for ([[maybe_unused]] const auto& e : std::filesystem::directory_iterator(files.dir)) ++entries;
            EXPECT_EQ(entries, 4u) << "the inputs and the two outputs, no temporary file";
        }
    }
}

TEST(ManyContigs, IndexFileOnAFullDevice) {
    // More than a buffer of index lines: the index fails in the middle.
    const assembly a = make_assembly(45000);
    auto files = write_inputs(a.ace, a.sff, "run");
    std::filesystem::create_symlink("/dev/full", files.dir / "asm.qdx");
    write_file(files.dir / "asm.reads", "earlier\n");
    auto r = run_pelkrin(files);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "can not write file asm.qdx\n");
    // The reads file written is no use without its index: the earlier one stays.
    EXPECT_EQ(read_file(files.dir / "asm.reads"), "earlier\n");
    EXPECT_TRUE(std::filesystem::is_symlink(files.dir / "asm.qdx"));
    std::size_t entries = 0;
    for ([[maybe_unused]] const auto& e : std::filesystem::directory_iterator(files.dir)) ++entries;
    EXPECT_EQ(entries, 4u) << "no temporary file";
}

}  // namespace
}  // namespace pelkrin::test
