#pragma once
// An open SFF file: its common header, an index of its reads by name built by one
// walk over the records, and decoding of any record by position.
#include <cstdint>
#include <ostream>
#include <string>

#include "sff/binary_input.h"
#include "sff/read_index.h"
#include "sff/seq_read.h"
#include "sff/sff_header.h"
#include "sff/sff_read.h"

namespace pelkrin {

class reader {
public:
    binary_input sff_file;
    std::string file_name;
    int swap_bytes = 1;  // 1: the file's integers are big-endian; 0: little-endian
    sff_header_p1 header_p1;
    sff_header_p2 header_p2;
    sff_read cur_read;  // every record is decoded here; callers read its flowgram directly
    std::int64_t read_count = 0;

    // Ends the process when the file cannot be opened.
    explicit reader(std::string name);

    std::ostream& print_file_size();
    int check_magic_number();
    int get_header();
    int build_read_index(read_index& index);
    void get_read(const std::int64_t& pos, seqRead& out);
    // The block get_read fetches where it lands: a whole record should fit.
    std::size_t record_block() const { return 512 + std::size_t{cur_read.numOfFlows} * 4; }
    int get_next_read(read_index& index);
    int get_next_read();

private:
    // The block fetched where a walk lands on a record: its header and name fit.
    static constexpr std::size_t walk_block = 512;
    // The flowgram's bytes as read, before they become values; kept to be reused.
    std::vector<unsigned char> flowgram_bytes_;

    // Reads the 16-byte read header into cur_read as file-order numbers; false when short.
    bool read_record_header();
    // Padding between a record's name and its data; a header length too small to
    // hold the name is taken as no padding, so a walk never goes backwards.
    std::int64_t header_padding() const;
    // Sizes cur_read for its record and reads the name (into cur_read.name).
    void read_name();
    // Reads the data section: flowgram values as the file's little-endian numbers, then the per-base arrays.
    void read_data();
    int sequential_step(read_index* index);
    // Leaves the forward walk's way of reading; returns `result`.
    int finish_walk(int result);
};

}  // namespace pelkrin
