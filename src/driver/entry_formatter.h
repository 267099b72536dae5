#pragma once
// Decodes the assembly's reads and formats their entries, contig by contig, on
// a thread of its own; the reads file's text is handed over a buffer at a time
// (batch_buffer.h) to the thread that writes it. Each read is looked up in the
// index and, when its record lies whole in the SFF file, read in place;
// otherwise it is decoded by get_read, so that the reads of a cut or damaged
// file come out as they always have.
//
// A read of the SFF file that met its end after another process shrank it
// ends the run: "Error: the SFF file NAME changed while it was read".
#include <cstdint>
#include <span>
#include <string_view>
#include <thread>
#include <vector>

#include "driver/batch_buffer.h"
#include "driver/contig_feed.h"
#include "driver/entry_values.h"
#include "sff/read_index.h"
#include "sff/reader.h"

namespace pelkrin {

class entry_formatter {
public:
    // Starts at once. `sff` and `index` are the formatter's until the last
    // batch has been taken; the index must be complete.
    entry_formatter(contig_feed& feed, reader& sff, const read_index& index, bool flowgram);
    ~entry_formatter();
    entry_formatter(const entry_formatter&) = delete;
    entry_formatter& operator=(const entry_formatter&) = delete;

    // The next buffer of the reads file (see batch_buffer::next).
    void next(text_batch& out) { text_.next(out); }

private:
    void format_all();
    void format_contig(contig_names& c);
    void format_entry(std::string_view name, std::int64_t position);
    // Asks for the memory that reading the records at positions_[i] will need.
    void ask_for_header(std::size_t i) const;
    void ask_for_data(std::size_t i) const;

    contig_feed& feed_;
    reader& sff_;
    const read_index& index_;
    const bool flowgram_;
    batch_buffer text_;
    std::vector<std::string_view> names_;
    std::vector<std::int64_t> positions_;
    std::span<const std::uint8_t> file_;  // the SFF file's bytes
    entry_values values_;
    seqRead decoded_;
    std::thread thread_;
};

}  // namespace pelkrin
