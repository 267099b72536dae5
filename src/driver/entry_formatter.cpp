#include "driver/entry_formatter.h"

#include <algorithm>
#include <exception>

#include "reads_format/reads_writer.h"

namespace pelkrin {
namespace {

// The records lie anywhere in the file: their memory is asked for this many
// reads ahead (first their headers, then, once a header is at hand, the data
// it locates), so that the cache misses of several reads overlap.
constexpr std::size_t headers_ahead = 8;
constexpr std::size_t data_ahead = 4;

void ask_for(const std::uint8_t* from, std::size_t n) {
    for (std::size_t at = 0; at < n; at += 64) __builtin_prefetch(from + at);
}

}  // namespace

entry_formatter::entry_formatter(contig_feed& feed, reader& sff, const read_index& index, bool flowgram)
    : feed_(feed), sff_(sff), index_(index), flowgram_(flowgram), file_(sff.sff_file.contents()) {
    thread_ = std::thread([this] { format_all(); });
}

entry_formatter::~entry_formatter() {
    text_.cancel();
    feed_.cancel();
    if (thread_.joinable()) thread_.join();
}

void entry_formatter::format_all() {
    std::exception_ptr error;
    try {
        contig_names c;
        while (!text_.cancelled() && feed_.next(c)) format_contig(c);
    } catch (...) {
        error = std::current_exception();
    }
    text_.end(error);
}

void entry_formatter::format_contig(contig_names& c) {
    const std::size_t n = c.reads();
    names_.clear();
    for (std::size_t i = 0; i < n; ++i) names_.push_back(c.read_name(i));
    // A name the SFF file lacks is decoded from offset 0, the index's default.
    positions_.resize(n);
    index_.positions_of(names_, positions_);

    write_contig_line(text_, c.name, n, flowgram_ ? 3 : 1);
    text_.mark_contig_start(std::move(c.name), n);
    for (std::size_t i = 0; i < std::min(n, headers_ahead); ++i) ask_for_header(i);
    for (std::size_t i = 0; i < std::min(n, data_ahead); ++i) ask_for_data(i);
    for (std::size_t i = 0; i < n; ++i) {
        if (i + headers_ahead < n) ask_for_header(i + headers_ahead);
        if (i + data_ahead < n) ask_for_data(i + data_ahead);
        format_entry(names_[i], positions_[i]);
        if (text_.cancelled()) return;
    }
    text_.mark_contig_end();
}

void entry_formatter::ask_for_header(std::size_t i) const {
    const std::int64_t pos = positions_[i];
    if (pos >= 0 && static_cast<std::uint64_t>(pos) < file_.size()) __builtin_prefetch(file_.data() + pos);
}

void entry_formatter::ask_for_data(std::size_t i) const {
    record_view r;
    if (!view_record(file_, positions_[i], sff_.swap_bytes == 1, sff_.cur_read.numOfFlows, r)) return;
    ask_for(r.quality, r.number_of_bases);
    if (!flowgram_) return;
    ask_for(r.flowgram, std::size_t{r.flows} * 2);
    ask_for(r.flow_index, r.number_of_bases);
}

void entry_formatter::format_entry(std::string_view name, std::int64_t position) {
    record_view view;
    if (sff_.view_read(position, view)) {
        values_of(view, flowgram_, values_);
    } else {
        // Emptied, not rebuilt: a read the stream cannot reach stays empty.
        decoded_.name.clear();
        decoded_.bases.clear();
        decoded_.quals.clear();
        decoded_.flowIdx.clear();
        const sff_read& record = sff_.get_read(position, decoded_);
        values_of(decoded_, record, flowgram_, values_);
    }
    sff_.check_unchanged();
    write_read_entry(text_, name, values_.quals, values_.flowIdx, values_.flowgram, flowgram_);
}

}  // namespace pelkrin
