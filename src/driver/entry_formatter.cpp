#include "driver/entry_formatter.h"

#include <exception>

#include "driver/reads_writer.h"

namespace pelkrin {

entry_formatter::entry_formatter(contig_feed& feed, reader& sff, const read_index& index, bool flowgram)
    : feed_(feed), sff_(sff), index_(index), flowgram_(flowgram) {
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
    for (std::size_t i = 0; i < n; ++i) {
        format_entry(names_[i], positions_[i]);
        if (text_.cancelled()) return;
    }
    text_.mark_contig_end();
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
