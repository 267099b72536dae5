#pragma once
// A read record that lies whole within the file's bytes, read in place: its
// header's counts and clip points, and where its arrays begin. Decoding such
// a record gives the same read whatever was decoded before it, so it can be
// read straight from the file's bytes without decoding it into a sff_read.
#include <cstddef>
#include <cstdint>
#include <span>

namespace pelkrin {

struct record_view {
    std::uint32_t number_of_bases = 0;
    std::uint16_t clip_qual_left = 0;
    std::uint16_t clip_qual_right = 0;
    std::uint16_t clip_adapter_left = 0;
    std::uint16_t clip_adapter_right = 0;
    std::uint16_t flows = 0;
    bool big_endian = true;
    const std::uint8_t* flowgram = nullptr;    // `flows` values of two bytes, in the file's byte order
    const std::uint8_t* flow_index = nullptr;  // number_of_bases bytes each: flow index per base, bases, scores
    const std::uint8_t* bases = nullptr;
    const std::uint8_t* quality = nullptr;
    std::uint64_t extent = 0;  // bytes from the record's first byte to the end of its quality scores
};

// Fills `out` with the record at `pos` of `file` (all of the file's bytes),
// whose flowgrams have `flows` values; false when the record does not lie
// whole in the file (or `pos` is outside it).
bool view_record(std::span<const std::uint8_t> file, std::int64_t pos, bool big_endian, std::uint16_t flows,
                 record_view& out);

}  // namespace pelkrin
