#include "driver/contig_writer.h"

#include <algorithm>
#include <utility>

#include "common/fatal_error.h"
#include "driver/reads_writer.h"

namespace pelkrin {
namespace {

// Reads queued before add() waits: at a few dozen bytes a read, some megabytes.
constexpr std::size_t most_queued_reads = std::size_t{1} << 18;
// Records fetched ahead and not yet written, about 3.7 KB each with 800 flows.
constexpr std::size_t most_fetched_reads = 6144;
// Records fetched ahead for one contig: bounds what a huge contig takes.
constexpr std::size_t most_fetched_per_contig = 2048;

}  // namespace

contig_writer::job contig_writer::job::of(const contig& c) {
    job j;
    j.contig_name = c.name;
    j.name_ends.reserve(c.reads.size());
    for (const auto& entry : c.reads) {
        j.names += entry.first;
        j.name_ends.push_back(j.names.size());
    }
    return j;
}

std::string_view contig_writer::job::name(std::size_t i) const {
    const std::size_t begin = i == 0 ? 0 : name_ends[i - 1];
    return std::string_view(names).substr(begin, name_ends[i] - begin);
}

contig_writer::contig_writer(reader& sff, output_file& reads_out, output_file& index_out, bool flowgram,
                             std::size_t behind_at, bool start_now)
    : sff_(sff),
      reads_out_(reads_out),
      index_out_(index_out),
      flowgram_(flowgram),
      behind_at_(behind_at) {
    if (start_now) start();
}

void contig_writer::start() {
    if (!thread_.joinable() && !finished_) thread_ = std::thread([this] { work(); });
}

contig_writer::~contig_writer() {
    try {
        finish();
    } catch (const fatal_error&) {
        // Only while an error already ends the run: its own failure is not news.
    }
}

void contig_writer::fetch_ahead(job& j, std::size_t n) {
    if (!spare_blocks_.empty()) {
        j.blocks.swap(spare_blocks_.back());
        spare_blocks_.pop_back();
    }
    j.blocks.resize(n * block_size_);
    j.block_lengths.resize(n);
    for (std::size_t i = 0; i < n; ++i) {
        j.block_lengths[i] = static_cast<std::uint32_t>(sff_.fetch_block(j.positions[i], j.blocks.data() + i * block_size_));
    }
}

void contig_writer::add(job&& j) {
    {
        std::unique_lock lock(mutex_);
        if (!failed_file_.empty()) throw fatal_error(1, "can not write file " + failed_file_ + "\n");
        if (block_size_ == 0) block_size_ = sff_.record_block();
        changed_.wait(lock, [&] { return queue_.empty() || queued_reads_ + j.reads() <= most_queued_reads; });
        queued_reads_ += j.reads();
        queue_.push_back(queued{std::move(j)});
    }
    changed_.notify_all();
    help();
}

bool contig_writer::help() { return help_once(false); }

bool contig_writer::help_once(bool wait_for_room) {
    queued* target = nullptr;
    std::size_t n = 0;
    std::vector<std::vector<unsigned char>> returned;
    {
        std::unique_lock lock(mutex_);
        while (true) {
            for (auto& blocks : done_blocks_) returned.push_back(std::move(blocks));
            done_blocks_.clear();
            if (queued_reads_ < behind_at_) return false;
            // Never the first: the writer may be about to take it. Contigs are
            // claimed in queue order, so the next one to claim is at fetch_next_.
            fetch_next_ = std::max<std::size_t>(fetch_next_, 1);
            if (fetch_next_ >= queue_.size()) return false;
            queued& candidate = queue_[fetch_next_];
            n = std::min(candidate.j.reads(), most_fetched_per_contig);
            if (fetched_reads_ + n <= most_fetched_reads) {
                candidate.state = fetch_state::fetching;
                target = &candidate;  // stays put: the writer only takes from the front, and waits for it
                ++fetch_next_;
                break;
            }
            if (!wait_for_room) return false;
            changed_.wait(lock);  // the writer finishes a contig and gives its records' room back
        }
        fetched_reads_ += n;
    }
    for (auto& blocks : returned) {
        // Kept for reuse unless large (blocks of a huge contig).
        if (spare_blocks_.size() < 16 && blocks.capacity() <= (std::size_t{1} << 19)) {
            spare_blocks_.push_back(std::move(blocks));
        }
    }
    fetch_ahead(target->j, n);
    {
        std::lock_guard lock(mutex_);
        target->state = fetch_state::done;
    }
    changed_.notify_all();
    return true;
}

void contig_writer::finish() {
    if (finished_) return;
    // Started first: helping may wait for the writer to give room back.
    start();
    while (help_once(true)) {
    }
    {
        std::lock_guard lock(mutex_);
        closing_ = true;
    }
    changed_.notify_all();
    thread_.join();
    finished_ = true;
    if (!failed_file_.empty()) throw fatal_error(1, "can not write file " + failed_file_ + "\n");
}

void contig_writer::work() {
    while (true) {
        job j;
        {
            std::unique_lock lock(mutex_);
            changed_.wait(lock, [&] {
                return (!queue_.empty() && queue_.front().state != fetch_state::fetching) || (closing_ && queue_.empty());
            });
            if (queue_.empty()) return;  // closing, and everything is written
            j = std::move(queue_.front().j);
            queue_.pop_front();
            if (fetch_next_ > 0) --fetch_next_;
            queued_reads_ -= j.reads();
        }
        changed_.notify_all();
        // After a failed write the rest is dropped: the run is over.
        if (failed_file_.empty()) write(j);
        {
            std::lock_guard lock(mutex_);
            if (failed_file_.empty()) {
                if (reads_out_.write_failed()) failed_file_ = reads_out_.name();
                else if (index_out_.write_failed()) failed_file_ = index_out_.name();
            }
            written_ += j.reads();
            fetched_ahead_ += j.block_lengths.size();
            fetched_reads_ -= j.block_lengths.size();
            if (j.blocks.capacity() != 0) done_blocks_.push_back(std::move(j.blocks));
        }
        changed_.notify_all();
    }
}

void contig_writer::write(job& j) {
    const std::int32_t linesPerRead = flowgram_ ? 3 : 1;
    write_contig_header(reads_out_, index_out_, j.contig_name, j.reads(), linesPerRead);
    for (std::size_t i = 0; i < j.reads(); ++i) {
        const std::int64_t position = j.positions[i];
        // Emptied, not rebuilt: its storage is reused from read to read.
        decoded_.name.clear();
        decoded_.bases.clear();
        decoded_.quals.clear();
        decoded_.flowIdx.clear();
        const sff_read& record =
            i < j.block_lengths.size()
                ? sff_.get_read(position, {j.blocks.data() + i * block_size_, j.block_lengths[i]}, decoded_)
                : sff_.get_read(position, decoded_);
        write_read_entry(reads_out_, j.name(i), decoded_, record, flowgram_);
    }
}

}  // namespace pelkrin
