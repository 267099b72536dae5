#include "view_tool/report/report_run.h"

#include <algorithm>
#include <cerrno>
#include <exception>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "ace/ace_reader.h"
#include "ace/reading_end.h"
#include "common/fatal_error.h"
#include "common/input_file.h"
#include "common/work_queue.h"
#include "reads_format/output_names.h"
#include "reads_format/qdx_index.h"
#include "view_tool/report/report_assets.h"
#include "view_tool/report/report_contig_data.h"
#include "view_tool/report/interrupt_guard.h"
#include "view_tool/report/reads_file_range.h"
#include "view_tool/report/report_flowgrams.h"
#include "view_tool/report/report_folder.h"
#include "view_tool/report/report_pages.h"
#include "view_tool/report/report_summary.h"

namespace pelkrin {
namespace {

constexpr std::size_t depth_bins = 1000;
constexpr std::size_t reads_per_flowgram_file = 250;
// Script text up to this size goes into the page itself: one file a contig
// rather than several, since creating files is much of the report's time.
constexpr std::size_t inline_bytes = std::size_t{2} << 20;
// Contigs waiting for a worker, by the bytes of their reads' bases.
constexpr std::size_t queued_bytes = std::size_t{64} << 20;

// Pelkrin's outputs for this ACE file, found as the viewer finds them:
// PREFIX.qdx, and through it PREFIX.reads.
class reads_source {
public:
    explicit reads_source(const std::string& ace_file) {
        const std::string prefix = output_prefix(ace_file);
        const std::string index_name = index_file_name(prefix);
        // Both are read at positions: a FIFO would hold the report, a device would never end.
        input_file index;
        if (!index.open(index_name, input_reading::by_position)) {
            note_ = index.error() == ENOENT
                        ? "No flowgrams: there is no " + index_name + " beside the ACE file (run Pelkrin -f on it)."
                        : "No flowgrams: " + index_name + " is not a regular file that can be read.";
            return;
        }
        index_ = make_qdx_table(parse_qdx(read_file_range(index.descriptor(), 0, index.size())));
        index.close();
        if (!reads_.open(reads_file_name(prefix), input_reading::by_position)) {
            note_ = "No flowgrams: " + reads_file_name(prefix) + " can not be read.";
            reads_.close();
            index_ = {};
            return;
        }
        for (const qdx_entry& e : index_.entries) offsets_.push_back(e.offset);
        std::sort(offsets_.begin(), offsets_.end());
        // Pelkrin writes every entry with the same lines per read: 3 with -f, 1 without.
        const bool flows = std::any_of(index_.entries.begin(), index_.entries.end(),
                                       [](const qdx_entry& e) { return e.lines_per_read >= 3; });
        if (flows) {
            reads_file_ = reads_file_name(prefix);
        } else if (index_.entries.empty()) {
            note_ = "No flowgrams: " + index_name + " lists no contigs.";
        } else {
            note_ = "No flowgrams: Pelkrin wrote " + reads_file_name(prefix) +
                    " without -f, so it holds qualities only (run Pelkrin -f on the ACE file).";
        }
    }
    reads_source(const reads_source&) = delete;
    reads_source& operator=(const reads_source&) = delete;

    // The flowgrams of the contig that comes `ordinal`-th (from 0) in the ACE
    // file, read from its part of the reads file only. Any thread may ask.
    contig_flowgrams flowgrams(const contig& c, std::size_t ordinal) const {
        if (!reads_.is_open()) return no_flowgrams(c, note_);
        const qdx_entry* entry = find_qdx_entry(index_, ordinal, c.name);
        if (!entry) return no_flowgrams(c, "No flowgrams: the location index has no entry for this contig.");
        const auto next = std::upper_bound(offsets_.begin(), offsets_.end(), entry->offset);
        const int64_t end = next == offsets_.end() ? -1 : *next;
        // A header line and the data lines of each read; a count beyond any
        // file's lines stands for "up to the next contig".
        const uint64_t per_read = static_cast<uint64_t>(entry->lines_per_read) + 1;
        const uint64_t lines = entry->read_count > UINT64_MAX / per_read ? UINT64_MAX : entry->read_count * per_read;
        const std::string block = read_contig_block(reads_.descriptor(), entry->offset, end, lines);
        return contig_flowgram_files(c, block, *entry, reads_per_flowgram_file);
    }

    // What the index page says of the flowgrams.
    flowgram_state state() const { return {reads_file_, note_}; }

private:
    qdx_table index_;
    std::vector<int64_t> offsets_;  // of the entries, sorted, to find where a block ends
    input_file reads_;
    std::string reads_file_;  // the flowgrams' file, when it holds any
    std::string note_;        // why there are no flowgrams, when there are none
};

struct contig_job {
    contig c;
    std::size_t ordinal = 0;  // from 1; 0 tells a worker to stop
    bool last = false;        // no contig follows
};

// The text of a contig's page and of its alignment script, kept by a worker
// from one contig to the next: buffers used afresh for every contig would be
// taken from the system and given back each time, and their pages faulted in
// again.
struct page_buffers {
    std::string alignment;
    std::string page;
};

// The files of one contig: its page, and the files of its scripts that are
// too large to go into the page.
contig_summary write_contig_files(report_folder& folder, contig_job& job, const std::string& ace_file,
                                  const colour_map& colours, const reads_source& source, page_buffers& buffers) {
    contig_summary s = summarise_contig(job.c, depth_bins);
    contig_flowgrams flowgrams = source.flowgrams(job.c, job.ordinal - 1);
    const std::string stem = contig_file_stem(job.ordinal);
    contig_scripts scripts;
    scripts.alignment = std::move(buffers.alignment);
    scripts.alignment.clear();
    append_contig_data_js(scripts.alignment, job.c, colours, flowgrams.places);
    if (scripts.alignment.size() > inline_bytes) {
        folder.write(stem + ".js", scripts.alignment);
        scripts.alignment.clear();
    }
    std::size_t flowgram_bytes = 0;
    for (const std::string& file : flowgrams.files) flowgram_bytes += file.size();
    if (flowgram_bytes > inline_bytes) {
        for (std::size_t k = 0; k < flowgrams.files.size(); ++k) {
            folder.write(stem + "-flowgrams-" + std::to_string(k) + ".js", flowgrams.files[k]);
        }
    } else {
        scripts.flowgrams = std::move(flowgrams.files);
    }
    buffers.page.clear();
    append_contig_page(buffers.page, s, job.ordinal, job.last, ace_file, scripts);
    folder.write(stem + ".html", buffers.page);
    buffers.alignment = std::move(scripts.alignment);
    s.depth_bins = {};
    return s;
}

// Workers that write the contigs' files while the reader goes on through the
// ACE file. The first failure stops everything and is thrown again by finish().
class contig_workers {
public:
    contig_workers(report_folder& folder, const std::string& ace_file, const colour_map& colours,
                   const reads_source& source)
        : queue_(queued_bytes) {
        const unsigned count = std::clamp(std::thread::hardware_concurrency(), 1u, 4u);
        for (unsigned i = 0; i < count; ++i) {
            threads_.emplace_back([this, &folder, &ace_file, &colours, &source] {
                work(folder, ace_file, colours, source);
            });
        }
    }
    ~contig_workers() {
        queue_.cancel();
        for (std::thread& t : threads_) t.join();
    }
    contig_workers(const contig_workers&) = delete;
    contig_workers& operator=(const contig_workers&) = delete;

    // False once a worker has failed.
    bool add(contig_job&& job) {
        std::size_t bytes = 1;
        for (const auto& named : job.c.reads) bytes += named.second.seq.size();
        return queue_.push(std::move(job), bytes);
    }

    // Waits for every contig to be written; the summaries in file order.
    std::vector<contig_summary> finish() {
        for (std::size_t i = 0; i < threads_.size(); ++i) queue_.push(contig_job{}, 0);
        for (std::thread& t : threads_) t.join();
        threads_.clear();
        if (failure_) std::rethrow_exception(failure_);
        return std::move(summaries_);
    }

private:
    void work(report_folder& folder, const std::string& ace_file, const colour_map& colours,
              const reads_source& source) {
        contig_job job;
        page_buffers buffers;
        while (queue_.pop(job) && job.ordinal != 0) {
            try {
                contig_summary s = write_contig_files(folder, job, ace_file, colours, source, buffers);
                std::lock_guard lock(mutex_);
                if (summaries_.size() < job.ordinal) summaries_.resize(job.ordinal);
                summaries_[job.ordinal - 1] = std::move(s);
            } catch (...) {
                {
                    std::lock_guard lock(mutex_);
                    if (!failure_) failure_ = std::current_exception();
                }
                queue_.cancel();
                return;
            }
            job = contig_job{};
        }
    }

    work_queue<contig_job> queue_;
    std::vector<std::thread> threads_;
    std::mutex mutex_;
    std::vector<contig_summary> summaries_;
    std::exception_ptr failure_;
};

}  // namespace

std::vector<std::string> report_inputs(const std::string& ace_file, const std::optional<std::string>& colour_file) {
    std::vector<std::string> inputs = {ace_file};
    if (colour_file) inputs.push_back(*colour_file);
    const std::string prefix = output_prefix(ace_file);
    inputs.push_back(index_file_name(prefix));
    inputs.push_back(reads_file_name(prefix));
    return inputs;
}

void write_report(const std::string& ace_file, const std::string& folder_name, const colour_map& colours,
                  console messages, const std::vector<std::string>& inputs) {
    // Before any thread starts, so that every thread leaves the signals to it.
    interrupt_guard guard;
    aceReader reader(ace_file, messages);
    const reads_source source(ace_file);
    report_folder folder(folder_name, guard, inputs);
    folder.write("pelkrin-report.css", report_style());
    folder.write("pelkrin-report.js", report_script());

    std::vector<contig_summary> summaries;
    std::string unread;  // why the contigs read are not all the file holds
    {
        contig_workers workers(folder, ace_file, colours, source);
        // One contig ahead, to know which is the last.
        contig_job job;
        job.ordinal = 1;
        bool job_whole = false;  // `job` holds a contig read to its end, not yet handed on
        try {
            bool have = job_whole = reader.next_contig(job.c);
            while (have) {
                contig_job next;
                next.ordinal = job.ordinal + 1;
                have = reader.next_contig(next.c);
                job.last = !have;
                job_whole = false;
                if (!workers.add(std::move(job))) break;
                job = std::move(next);
                job_whole = have;
            }
        } catch (...) {
            // A contig the ACE reader cannot read ends the run, as in Pelkrin:
            // every contig before it gets its page, the same pages every time
            // (workers stopped at once would leave whichever they had reached),
            // and the report of those pages takes the earlier report's place;
            // then the reader's error stands.
            const std::exception_ptr reading = std::current_exception();
            if (job_whole) {
                job.last = true;  // no page follows it
                workers.add(std::move(job));
            }
            try {
                folder.write("index.html", index_page(workers.finish(), ace_file, source.state()));
                folder.put_in_place();
            } catch (...) {  // the reader's error is the one to tell; the earlier report stays
            }
            std::rethrow_exception(reading);
        }
        summaries = workers.finish();
        // The reader ended without an error: at the end of the file, or where
        // the file stops short of what it began, as Pelkrin tells it.
        unread = incomplete_reading(reader);
    }
    folder.write("index.html", index_page(summaries, ace_file, source.state()));
    folder.put_in_place();
    if (!unread.empty()) throw fatal_error(1, unread);
    messages.out << "Pelkrin-view: report of " << summaries.size() << " contigs written to "
                 << folder.shown("index.html") << std::endl;
    if (!messages.out) throw fatal_error(1, "Pelkrin-view: can not write standard output\n");
}

}  // namespace pelkrin
