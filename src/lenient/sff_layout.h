#pragma once
// What an SFF file holds, found by one walk over it that trusts nothing: one
// or more SFF files one after the other, each with its common header, its
// byte order and where its index block stands, and where each read record
// lies. Problems are noted with their byte offsets; the walk stops at the
// first that leaves the rest unreadable (a record cut off, a header that
// makes no sense).
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace pelkrin {

// Where a part's index block stands.
enum class index_place { none, before_reads, among_reads, after_reads, elsewhere };

// One SFF file within the file: its common header and what the walk found.
struct sff_part {
    std::uint64_t start = 0;  // the byte offset of its common header
    bool big_endian = true;
    unsigned char version[4] = {0, 0, 0, 0};
    std::uint64_t index_offset = 0;  // a value, counted from `start`
    std::uint32_t index_length = 0;
    std::uint32_t announced_reads = 0;
    std::uint16_t header_length = 0;
    std::uint16_t flows = 0;
    std::uint8_t format_code = 0;
    std::string flow_chars;
    std::string key;
    index_place index = index_place::none;
    std::uint64_t reads_found = 0;  // records that lie whole in the file
    // The walk stopped inside a record whose read header lies whole in the
    // file (its name or data cut short): the record Pelkrin's walk counts too.
    bool cut_inside_read = false;
    std::uint64_t end = 0;  // one past its last record (padding included) or its index block
    // One past the last byte of its last record or index block, padding left
    // out: where another SFF file may begin.
    std::uint64_t content_end = 0;
};

// One read record, in place in the file's bytes.
struct sff_record {
    std::uint64_t offset = 0;  // its first byte
    std::uint64_t length = 0;  // to the end of its data section's padding, or of the file
    std::uint32_t part = 0;
    std::uint16_t read_header_length = 0;
    std::uint16_t name_length = 0;
    std::uint32_t number_of_bases = 0;
    std::uint64_t data_offset = 0;  // where its flowgram values begin
    std::uint64_t key_hash = 0;     // the hash of its name as Pelkrin's index keys it
};

struct sff_layout {
    std::vector<sff_part> parts;
    std::vector<sff_record> records;
    // Bytes after the last part that are no SFF file (0: none), and where they begin.
    std::uint64_t stray_bytes = 0;
    std::uint64_t stray_offset = 0;
    // The first problem that stopped the walk, with its byte offset; empty when
    // the whole file was read.
    std::string stopped;
    std::uint64_t stopped_at = 0;

    // The read's name as Pelkrin's index keys it: up to its first zero byte.
    std::string_view key(std::span<const std::uint8_t> bytes, const sff_record& r) const;
    // The read's bases, in place.
    std::string_view bases(std::span<const std::uint8_t> bytes, const sff_record& r) const;
};

class progress;

// Walks `bytes`, the file's contents. Throws fatal_error (status 1) naming
// `name` (after `program`, file_label.h) when the file does not begin with an
// SFF header. `shown`, when given, follows the walk.
sff_layout scan_sff(std::span<const std::uint8_t> bytes, const std::string& name, progress* shown = nullptr,
                    std::string_view program = {});

// The name of where an index block stands, for reports.
std::string_view index_place_text(index_place p);

}  // namespace pelkrin
