#include "driver/contig_writer.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include "capture.h"
#include "common/fatal_error.h"
#include "driver/reads_writer.h"
#include "files.h"
#include "sff/read_index.h"
#include "sff_writer.h"

namespace pelkrin {
namespace {

constexpr std::uint16_t flows = 80;

// Names built by appending: GCC 12 warns wrongly about "r" + std::to_string(i).
std::string read_name(int i) {
    std::string name = "r";
    name += std::to_string(i);
    return name;
}

// 3,000 reads of 5 to 39 bases, some clipped, and contigs that use them out of
// file order: one contig larger than what is fetched ahead for a contig, and
// names the SFF file lacks (decoded from offset 0).
struct writer_fixture {
    std::filesystem::path sff;
    std::vector<contig> contigs;
};

writer_fixture make_fixture(const std::vector<std::size_t>& contig_sizes = {7, 2500, 1, 300, 150, 42}) {
    test::sff_fixture f;
    f.flows = flows;
    const int n = 3000;
    for (int i = 0; i < n; ++i) {
        std::vector<int> flows_of_bases;
        std::vector<std::uint8_t> quals;
        const int bases = 5 + i % 35;
        for (int b = 0; b < bases; ++b) {
            flows_of_bases.push_back(2 * b + i % 2);
            quals.push_back(static_cast<std::uint8_t>((i + 7 * b) % 41));
        }
        auto r = test::read_from_flows(read_name(i), flows_of_bases, quals, flows);
        if (i % 5 == 1) r.clip_qual_left = 3;
        if (i % 7 == 2) r.clip_qual_right = static_cast<std::uint16_t>(bases - 2);
        f.reads.push_back(r);
    }
    writer_fixture w;
    w.sff = test::scratch_dir() / "reads.sff";
    test::write_file(w.sff, test::build_sff(f).bytes);

    std::vector<int> order;  // every read once, by a stride through the file
    for (int i = 0; i < n; ++i) order.push_back(i * 1237 % n);
    std::size_t next = 0;
    for (const std::size_t size : contig_sizes) {
        contig c;
        c.name = "Contig";
        c.name += std::to_string(w.contigs.size() + 1);
        for (std::size_t k = 0; k < size && next < order.size(); ++k) {
            const std::string name = read_name(order[next++]);
            c.reads[name].name = name;
        }
        if (size == 7u) c.reads["absent"].name = "absent";
        w.contigs.push_back(std::move(c));
    }
    return w;
}

struct opened_sff {
    explicit opened_sff(const std::filesystem::path& path) : sff(path.string(), test::std_console()) {
        sff.get_header();
        sff.build_read_index(index);
    }
    reader sff;
    read_index index;
};

// What a run on one thread writes: every read decoded where the index says, in order.
void write_on_one_thread(const writer_fixture& w, bool flowgram, const std::filesystem::path& dir) {
    opened_sff in(w.sff);
    output_file reads_out((dir / "one.reads").string());
    output_file index_out((dir / "one.qdx").string());
    seqRead decoded;
    for (const contig& c : w.contigs) {
        write_contig_header(reads_out, index_out, c, flowgram ? 3 : 1);
        for (const auto& entry : c.reads) {
            decoded = seqRead{};
            in.sff.get_read(in.index.position_of(entry.first), decoded);
            write_read_entry(reads_out, entry.first, decoded, in.sff.cur_read, flowgram);
        }
    }
}

void hand_over(contig_writer& writer, const writer_fixture& w, const read_index& index) {
    for (const contig& c : w.contigs) {
        contig_writer::job j = contig_writer::job::of(c);
        for (const auto& entry : c.reads) j.positions.push_back(index.position_of(entry.first));
        writer.add(std::move(j));
    }
}

struct writer_counts {
    std::uint64_t written = 0;
    std::uint64_t fetched_ahead = 0;
};

// The same through a contig_writer, into two.reads and two.qdx.
// The writer starts once every contig is queued, so what is fetched ahead does not depend on timing.
writer_counts write_on_two_threads(const writer_fixture& w, bool flowgram, const std::filesystem::path& dir,
                                   std::size_t behind_at) {
    opened_sff in(w.sff);
    output_file reads_out((dir / "two.reads").string());
    output_file index_out((dir / "two.qdx").string());
    contig_writer writer(in.sff, reads_out, index_out, flowgram, behind_at, false);
    hand_over(writer, w, in.index);
    writer.finish();
    return {writer.reads_written(), writer.reads_fetched_ahead()};
}

void expect_same_outputs(const std::filesystem::path& dir) {
    EXPECT_EQ(test::read_file(dir / "two.reads"), test::read_file(dir / "one.reads"));
    EXPECT_EQ(test::read_file(dir / "two.qdx"), test::read_file(dir / "one.qdx"));
}

class ContigWriter : public ::testing::TestWithParam<bool> {};

TEST_P(ContigWriter, RecordsFetchedAheadGiveTheBytesOfAOneThreadRun) {
    const writer_fixture w = make_fixture();
    const auto dir = w.sff.parent_path();
    write_on_one_thread(w, GetParam(), dir);
    const writer_counts counts = write_on_two_threads(w, GetParam(), dir, 0);  // always behind: fetch everything ahead
    EXPECT_EQ(counts.written, 3001u);
    // Every contig but the first (7 reads and a missing one), which the writer may
    // be taking at any moment, and no more than 2,048 of the large contig's.
    EXPECT_EQ(counts.fetched_ahead, 3001u - 8u - (2500u - 2048u));
    expect_same_outputs(dir);
    EXPECT_GT(test::read_file(dir / "one.reads").size(), 100000u);
}

TEST_P(ContigWriter, WithoutFetchingAheadTheBytesAreTheSame) {
    const writer_fixture w = make_fixture();
    const auto dir = w.sff.parent_path();
    write_on_one_thread(w, GetParam(), dir);
    const writer_counts counts = write_on_two_threads(w, GetParam(), dir, std::size_t{1} << 40);  // never behind
    EXPECT_EQ(counts.written, 3001u);
    EXPECT_EQ(counts.fetched_ahead, 0u);
    expect_same_outputs(dir);
}

TEST_P(ContigWriter, ManyOneReadContigsFetchedAheadWhileTheWriterRuns) {
    // Contigs are taken and fetched ahead at the same time: which ones are
    // fetched ahead depends on timing, the bytes must not.
    const writer_fixture w = make_fixture(std::vector<std::size_t>(3000, 1));
    const auto dir = w.sff.parent_path();
    write_on_one_thread(w, GetParam(), dir);
    {
        opened_sff in(w.sff);
        output_file reads_out((dir / "two.reads").string());
        output_file index_out((dir / "two.qdx").string());
        contig_writer writer(in.sff, reads_out, index_out, GetParam(), 0);
        hand_over(writer, w, in.index);
        writer.finish();
        EXPECT_EQ(writer.reads_written(), 3000u);
        EXPECT_LE(writer.reads_fetched_ahead(), 3000u);
    }
    expect_same_outputs(dir);
}

TEST_P(ContigWriter, AnErrorUnwindingTheRunWritesEveryContigHandedOverFirst) {
    const bool flowgram = GetParam();
    const writer_fixture w = make_fixture();
    const auto dir = w.sff.parent_path();
    write_on_one_thread(w, flowgram, dir);
    int status = -1;
    try {
        opened_sff in(w.sff);
        output_file reads_out((dir / "two.reads").string());
        output_file index_out((dir / "two.qdx").string());
        contig_writer writer(in.sff, reads_out, index_out, flowgram, 0);
        hand_over(writer, w, in.index);
        // As a bad line of the assembly does, with contigs still queued.
        throw fatal_error(1, "Error: tag 'XX' should be not in the ACE file!\n");
    } catch (const fatal_error& e) {
        status = e.status();
    }
    EXPECT_EQ(status, 1);
    EXPECT_EQ(test::read_file(dir / "two.reads"), test::read_file(dir / "one.reads"));
    EXPECT_EQ(test::read_file(dir / "two.qdx"), test::read_file(dir / "one.qdx"));
}

TEST_P(ContigWriter, FinishStartsAWriterNeverStartedWhileMoreReadsWaitThanCanBeFetchedAhead) {
    // More reads queued than may be fetched ahead at once (6,144): finishing must
    // start the writer before it waits for the writer to give room back.
    const bool flowgram = GetParam();
    const writer_fixture w = make_fixture();
    const auto dir = w.sff.parent_path();
    opened_sff in(w.sff);
    output_file reads_out((dir / "two.reads").string());
    output_file index_out((dir / "two.qdx").string());
    contig_writer writer(in.sff, reads_out, index_out, flowgram, 0, false);
    for (int round = 0; round < 3; ++round) hand_over(writer, w, in.index);
    std::promise<void> finished;
    std::future<void> done = finished.get_future();
    std::thread finishing([&] {
        writer.finish();
        finished.set_value();
    });
    if (done.wait_for(std::chrono::seconds(60)) != std::future_status::ready) {
        ADD_FAILURE() << "finish() still waiting after 60 s";
        std::_Exit(1);  // a deadlocked thread cannot be joined
    }
    finishing.join();
    EXPECT_EQ(writer.reads_written(), 3u * 3001u);
}

TEST_P(ContigWriter, AFailedWriteEndsTheRunNamingTheFile) {
    const writer_fixture w = make_fixture();
    opened_sff in(w.sff);
    output_file reads_out("/dev/full");
    output_file index_out((w.sff.parent_path() / "two.qdx").string());
    contig_writer writer(in.sff, reads_out, index_out, GetParam());
    std::string message;
    try {
        for (int round = 0; round < 20; ++round) hand_over(writer, w, in.index);  // far more than a buffer
        writer.finish();
    } catch (const fatal_error& e) {
        message = e.message();
    }
    EXPECT_EQ(message, "can not write file /dev/full\n");
}

INSTANTIATE_TEST_SUITE_P(WithAndWithoutFlowgram, ContigWriter, ::testing::Bool());

}  // namespace
}  // namespace pelkrin
