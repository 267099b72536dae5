#include "driver/contig_writer.h"

#include <algorithm>
#include <utility>

#include "driver/reads_writer.h"

namespace pelkrin {
namespace {

// Reads queued before add() waits: a few contigs of a typical assembly.
constexpr std::size_t most_queued_reads = 6144;
// Records fetched ahead for one contig: bounds the memory a huge contig takes.
constexpr std::size_t most_fetched_per_contig = 2048;

}  // namespace

contig_writer::contig_writer(reader& sff, output_file& reads_out, output_file& index_out, bool flowgram,
                             std::size_t behind_at)
    : sff_(sff),
      reads_out_(reads_out),
      index_out_(index_out),
      flowgram_(flowgram),
      block_size_(sff.record_block()),
      behind_at_(behind_at) {
    register_flushable(this);
    thread_ = std::thread([this] { work(); });
}

contig_writer::~contig_writer() { finish(); }

void contig_writer::fetch_ahead(job& j) {
    const std::size_t n = std::min(j.positions.size(), most_fetched_per_contig);
    if (!spare_blocks_.empty() && j.blocks.capacity() == 0) {
        j.blocks.swap(spare_blocks_.back());
        spare_blocks_.pop_back();
    }
    j.blocks.resize(n * block_size_);
    j.block_lengths.resize(n);
    for (std::size_t i = 0; i < n; ++i) {
        const std::size_t got = sff_.sff_file.fetch_at(j.positions[i], j.blocks.data() + i * block_size_, block_size_);
        j.block_lengths[i] = static_cast<std::uint32_t>(got);
    }
}

void contig_writer::add(job&& j) {
    const std::size_t n = j.c.reads.size();
    bool behind;
    {
        std::lock_guard lock(mutex_);
        behind = queued_reads_ >= behind_at_;
    }
    if (behind) fetch_ahead(j);
    std::vector<job> written;
    {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return queue_.empty() || queued_reads_ + n <= most_queued_reads; });
        queue_.push_back(std::move(j));
        queued_reads_ += n;
        written.swap(done_);
    }
    changed_.notify_all();
    // Written contigs are freed here, on this thread; their blocks are kept for reuse.
    for (job& w : written) {
        if (w.blocks.capacity() != 0 && spare_blocks_.size() < 4) spare_blocks_.push_back(std::move(w.blocks));
    }
}

void contig_writer::finish() {
    if (!thread_.joinable()) return;
    {
        std::lock_guard lock(mutex_);
        closing_ = true;
    }
    changed_.notify_all();
    thread_.join();
    done_.clear();
    unregister_flushable(this);
}

void contig_writer::work() {
    reads_out_.empty_now();
    index_out_.empty_now();
    while (true) {
        job j;
        {
            std::unique_lock lock(mutex_);
            changed_.wait(lock, [&] { return !queue_.empty() || closing_; });
            if (queue_.empty()) return;  // closing, and everything is written
            j = std::move(queue_.front());
            queue_.pop_front();
            queued_reads_ -= j.c.reads.size();
        }
        changed_.notify_all();
        write(j);
        std::lock_guard lock(mutex_);
        written_ += j.c.reads.size();
        fetched_ahead_ += j.block_lengths.size();
        done_.push_back(std::move(j));
    }
}

void contig_writer::write(job& j) {
    const std::int32_t linesPerRead = flowgram_ ? 3 : 1;
    write_contig_header(reads_out_, index_out_, j.c, linesPerRead);
    std::size_t i = 0;
    for (const auto& entry : j.c.reads) {
        const std::int64_t position = j.positions[i];
        if (i < j.block_lengths.size()) {
            sff_.sff_file.use_block(position, {j.blocks.data() + i * block_size_, j.block_lengths[i]});
        }
        ++i;
        // Emptied, not rebuilt: its storage is reused from read to read.
        decoded_.name.clear();
        decoded_.bases.clear();
        decoded_.quals.clear();
        decoded_.flowIdx.clear();
        sff_.get_read(position, decoded_);
        write_read_entry(reads_out_, entry.first, decoded_, sff_.cur_read, flowgram_);
    }
    sff_.sff_file.drop_block();  // the blocks go back with the job
}

}  // namespace pelkrin
