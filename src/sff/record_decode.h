#pragma once
// Decoding one SFF read record from the file's bytes. Pure: the result depends
// only on the bytes, the common header and the record decoded before (a record
// cut short keeps, in each array, what the previous one left where the bytes
// do not reach), never on a file or a stream.
#include <cstddef>
#include <cstdint>
#include <span>

#include "byte_cursor.h"
#include "sff_header.h"
#include "sff_read.h"

namespace pelkrin {

// The two ways the reader decodes a record.
enum class record_decoding {
    // get_read: the read header is not checked, and flowgram values are
    // converted from the file's byte order.
    at_position,
    // The sequential walk: decoding stops after a read header that comes up
    // short; flowgram values are always taken as big-endian, in either byte
    // order; the data section's padding is passed over.
    sequential,
};

struct record_outcome {
    stream_state after;             // where a stream would stand after the record
    std::size_t header_bytes = 0;   // how much of the 16-byte read header came
};

// Decodes the record that begins at file offset `pos`. `bytes` are the file's
// bytes from `pos` to the end of the record, or to the end of the file when the
// record does not fit in it (record_extent tells how far is needed).
// `big_endian` is the file's byte order; `record` is decoded in place, its
// flowgram already sized for the header's flows.
record_outcome decode_record(std::span<const std::uint8_t> bytes, std::int64_t pos, const sff_header_p1& header,
                             bool big_endian, record_decoding how, sff_read& record);

// How many bytes from a record's start decoding it reads: the read header,
// the name, the padding and the data section (its own padding not included).
// `first` holds at least the 16-byte read header.
std::uint64_t record_extent(std::span<const std::uint8_t> first, bool big_endian, std::uint16_t flows);

// The padding after a record's name: read_header_length - name_length - 16, as
// a 16-bit number; a header too short to hold the name gives none, so that
// reading never goes backwards.
std::int64_t header_padding(const sff_read& r);
std::int64_t header_padding(std::uint16_t read_header_length, std::uint16_t name_length);

// Data sections are padded to a multiple of 8 bytes.
std::uint64_t data_padding(std::uint64_t data_length);

}  // namespace pelkrin
