#pragma once
// Writes the contigs of a run on a thread of its own, in the order they are
// handed over. Parsing the assembly and looking reads up by name stay with the
// caller; decoding each read from the SFF file and writing its entry happen
// here, so the two halves of the job run side by side.
//
// A queued contig is only what its entries need (its name, its reads' names
// and positions), a few dozen bytes a read, so parsing can run far ahead.
// Each read costs one positioned read of the SFF file (the reads lie anywhere
// in it), the largest part of the writer's work. While the writer is behind,
// the caller's thread fetches the records of queued contigs ahead (help()),
// so that the work evens out over both threads.
//
// Nothing here prints or ends the process. When the run ends early (a bad
// line in the assembly throws), the destructor finishes: every contig handed
// over before the error is written before the output files close, so they
// hold exactly what a run on one thread would have written.
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "ace/contig.h"
#include "driver/output_file.h"
#include "sff/reader.h"
#include "sff/seq_read.h"

namespace pelkrin {

class contig_writer {
public:
    // What the output files need of a contig.
    struct job {
        std::string contig_name;
        std::string names;                     // the reads' names one after another, in contig::reads order
        std::vector<std::size_t> name_ends;    // where each name ends in `names`
        std::vector<std::int64_t> positions;   // each read's SFF position, filled by the caller
        // The records of the first reads, fetched ahead: block_lengths.size()
        // blocks of `block_size` bytes, each holding what came.
        std::vector<unsigned char> blocks;
        std::vector<std::uint32_t> block_lengths;

        // The contig's name and reads' names; positions left to the caller.
        static job of(const contig& c);
        std::size_t reads() const { return name_ends.size(); }
        std::string_view name(std::size_t i) const;
    };

    // The writer counts as behind while this many reads wait for it.
    static constexpr std::size_t default_behind_at = 512;

    // Uses `reads_out` and `index_out` from its own thread until finish(), first
    // emptying them if they were opened to be emptied later; the caller must
    // leave them alone until then. Uses `sff`, whose header must be read by
    // then, from the first add() on.
    // The thread starts at once unless `start_now` is false; then start() or
    // finish() starts it (tests use this to fill the queue first).
    contig_writer(reader& sff, output_file& reads_out, output_file& index_out, bool flowgram,
                  std::size_t behind_at = default_behind_at, bool start_now = true);
    ~contig_writer();
    contig_writer(const contig_writer&) = delete;
    contig_writer& operator=(const contig_writer&) = delete;

    void start();
    // Queues a contig, then helps once; waits while the queue already holds
    // very many reads, so that memory stays bounded. Throws fatal_error ("can
    // not write file") once a write to either output has failed.
    void add(job&& j);
    // Fetches ahead the records of one queued contig the writer has not reached,
    // if it is behind and the memory for fetched records allows; false when
    // there was nothing to do.
    bool help();
    // Helps while there is work, writes everything queued, then stops the
    // thread; throws fatal_error when a write failed. Safe to call more than
    // once: later calls do nothing.
    void finish();

    // Reads written with a record fetched ahead, of all reads written.
    std::uint64_t reads_fetched_ahead() const { return fetched_ahead_; }
    std::uint64_t reads_written() const { return written_; }

private:
    enum class fetch_state { none, fetching, done };
    struct queued {
        job j;
        fetch_state state = fetch_state::none;
    };

    bool help_once(bool wait_for_room);
    void fetch_ahead(job& j, std::size_t n);
    void work();
    void write(job& j);

    reader& sff_;
    output_file& reads_out_;
    output_file& index_out_;
    const bool flowgram_;
    std::size_t block_size_ = 0;  // the reader's record_block(), taken at the first add()
    const std::size_t behind_at_;
    seqRead decoded_;
    std::vector<std::vector<unsigned char>> spare_blocks_;  // the caller's, for reuse

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<queued> queue_;
    std::size_t queued_reads_ = 0;
    std::size_t fetch_next_ = 1;     // queue index of the next contig to fetch ahead; those before it are claimed
    std::size_t fetched_reads_ = 0;  // records fetched ahead, or being fetched, and not yet written
    bool closing_ = false;
    std::vector<std::vector<unsigned char>> done_blocks_;  // blocks of written contigs, back to the caller
    std::uint64_t fetched_ahead_ = 0;
    std::uint64_t written_ = 0;
    bool finished_ = false;
    std::string failed_file_;  // the output whose write failed first, by the writer's thread
    std::thread thread_;
};

}  // namespace pelkrin
