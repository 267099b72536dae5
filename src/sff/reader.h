#pragma once
// An open SFF file: its common header, an index of its reads by name built by one
// walk over the records, and decoding of any record by position.
//
// The reader keeps the state of an input stream over the file (a position, and
// the eof and fail flags), which the decoders of record_decode.h advance: a
// get_read that runs off the end of the file leaves it failed, and later
// get_read calls then leave their read as it was, as a file stream would.
#include <cstdint>
#include <ostream>
#include <span>
#include <string>
#include <vector>

#include "../common/console.h"
#include "byte_cursor.h"
#include "read_index.h"
#include "record_view.h"
#include "seq_read.h"
#include "sff_header.h"
#include "sff_read.h"
#include "sff_source.h"

namespace pelkrin {

class reader {
public:
    sff_source sff_file;
    std::string file_name;
    int swap_bytes = 1;  // 1: the file's integers are big-endian; 0: little-endian
    sff_header_p1 header_p1;
    sff_header_p2 header_p2;
    sff_read cur_read;  // every record is decoded here (after view_read, only by the next get_read)
    std::int64_t read_count = 0;

    // Opens the file; throws fatal_error when it cannot. Reports that do not end
    // the run (short reads, the end of the file) go to `messages`.
    explicit reader(std::string name, console messages = standard_console());
    // Reads `bytes` as the file named `name`; they must outlive the reader.
    reader(std::string name, std::span<const std::uint8_t> bytes, console messages);
    // Reads `bytes`, which the reader keeps, as the file named `name`.
    reader(std::string name, std::vector<std::uint8_t> bytes, console messages);

    std::ostream& print_file_size();
    int check_magic_number();
    int get_header();
    int build_read_index(read_index& index);
    // Decodes the record at `pos` into cur_read and `out`; returns cur_read.
    const sff_read& get_read(const std::int64_t& pos, seqRead& out);
    // What get_read would decode at `pos`, read in place, when the record lies
    // whole in the file and the stream has not failed; false otherwise (then
    // get_read must be used). Moves the stream as get_read would; cur_read is
    // brought up to this record by the next call that needs it.
    bool view_read(std::int64_t pos, record_view& out);
    // The bytes one positioned read takes at a record: most records fit whole.
    std::size_t record_block() const { return 512 + std::size_t{cur_read.numOfFlows} * 4; }
    int get_next_read(read_index& index);
    int get_next_read();

    // The file is a regular file (not a pipe, a directory or a device).
    bool is_regular_file() const { return sff_file.size() >= 0; }
    // The last build_read_index found every record the header announces, the
    // last one whole: the file was not cut short.
    bool walk_complete() const { return walk_complete_; }

    // Throws fatal_error ("Error: the SFF file NAME changed while it was
    // read") when another process shrank the file and a read met its new end:
    // what was read cannot be trusted.
    void check_unchanged() const;

    // Where the reader's stream stands.
    const stream_state& state() const { return state_; }

private:
    console messages_;
    stream_state state_;
    bool walk_complete_ = false;
    std::int64_t viewed_ = -1;  // the record view_read read last, not yet decoded into cur_read
    // Bytes read for the header, a record's first block, the rest of a long record; reused.
    std::vector<std::uint8_t> header_;
    std::vector<std::uint8_t> block_;
    std::vector<std::uint8_t> record_;

    bool big_endian() const { return swap_bytes == 1; }
    // The bytes of the record at `pos`, from `first` (its first record_block()
    // bytes, or fewer at the end of the file), reading the rest when it is longer.
    std::span<const std::uint8_t> record_bytes(std::int64_t pos, std::span<const std::uint8_t> first);
    // Seeks the stream to `pos`; false when it failed (it stays failed).
    bool seek_to(std::int64_t pos);
    const sff_read& decode_at(std::int64_t pos, std::span<const std::uint8_t> bytes, seqRead& out);
    // Decodes into cur_read the record view_read read last, if any: what a
    // later record cut short keeps of its predecessor must be there.
    void settle_cur_read();
    int sequential_step(read_index* index);
    // Where a record found at `pos` begins: past the file's own index block
    // when that stands there (the format lets it stand among the records).
    std::int64_t past_index_block(std::int64_t pos) const;
    void report_short_read(std::size_t got, std::size_t block_size);
    void report_end_of_file();
};

}  // namespace pelkrin
