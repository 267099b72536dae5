#pragma once
// Writes the contigs of a run on a thread of its own, in the order they are
// handed over. Parsing the assembly and looking reads up by name stay with the
// caller; decoding each read from the SFF file and writing its entry happen
// here, so the two halves of the job run side by side.
//
// Each read costs one positioned read of the SFF file (the reads lie anywhere
// in it), the largest part of the writer's work. When the writer falls behind,
// the caller's thread, which would otherwise wait, fetches the records of the
// contigs it queues ahead of time, so the work evens out over both threads.
//
// Nothing here prints or ends the process. When the process ends early (a bad
// line in the assembly), finish() runs first through end_process and writes
// every contig handed over before the error, so the output files hold exactly
// what a run on one thread would have written.
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

#include "ace/contig.h"
#include "common/end_process.h"
#include "driver/output_file.h"
#include "sff/reader.h"
#include "sff/seq_read.h"

namespace pelkrin {

class contig_writer : public flushable {
public:
    // A contig with the SFF position of each of its reads, in the order of contig::reads.
    struct job {
        contig c;
        std::vector<std::int64_t> positions;
        // The records of the first reads, fetched ahead: block_lengths.size()
        // blocks of the reader's record_block() bytes, each holding what came.
        std::vector<unsigned char> blocks;
        std::vector<std::uint32_t> block_lengths;
    };

    // The writer counts as behind while this many reads wait for it.
    static constexpr std::size_t default_behind_at = 512;

    // Uses `reads_out` and `index_out` from its own thread until finish(), first
    // emptying them if they were opened to be emptied later; the caller must
    // leave them alone until then. Uses `sff` from the first add() on.
    contig_writer(reader& sff, output_file& reads_out, output_file& index_out, bool flowgram,
                  std::size_t behind_at = default_behind_at);
    ~contig_writer();
    contig_writer(const contig_writer&) = delete;
    contig_writer& operator=(const contig_writer&) = delete;

    // Queues a contig, first fetching its records when the writer is behind;
    // waits while the queue already holds many reads, so that memory stays
    // bounded however far parsing runs ahead.
    void add(job&& j);
    // Writes everything queued, then stops the thread. Safe to call more than once.
    void finish();
    void flush_before_exit() override { finish(); }

    // Reads written with a record fetched ahead, of all reads written.
    std::uint64_t reads_fetched_ahead() const { return fetched_ahead_; }
    std::uint64_t reads_written() const { return written_; }

private:
    void fetch_ahead(job& j);
    void work();
    void write(job& j);

    reader& sff_;
    output_file& reads_out_;
    output_file& index_out_;
    const bool flowgram_;
    const std::size_t block_size_;
    const std::size_t behind_at_;
    seqRead decoded_;
    std::vector<std::vector<unsigned char>> spare_blocks_;  // the caller's, for reuse

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<job> queue_;
    std::size_t queued_reads_ = 0;
    bool closing_ = false;
    std::vector<job> done_;  // written contigs, freed by the caller's thread, which has time to spare
    std::uint64_t fetched_ahead_ = 0;
    std::uint64_t written_ = 0;
    std::thread thread_;
};

}  // namespace pelkrin
