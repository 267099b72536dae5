#pragma once
// One SFF read record as stored: the 16-byte read header, the name and the data
// section (flowgram values, flow index per base, bases, quality scores).
#include <cstdint>
#include <limits>
#include <ostream>
#include <vector>

namespace pelkrin {

struct sff_read {
    static constexpr std::size_t header_size = 16;

    std::uint16_t read_header_length = 0;
    std::uint16_t name_length = 0;
    std::uint32_t number_of_bases = 0;
    std::uint16_t clip_qual_left = 0;
    std::uint16_t clip_qual_right = 0;
    std::uint16_t clip_adapter_left = 0;
    std::uint16_t clip_adapter_right = 0;
    std::uint16_t numOfFlows = 0;  // from the common header; the length of flowgram_values

    std::vector<char> name;
    std::vector<std::uint16_t> flowgram_values;
    std::vector<std::uint8_t> flow_index_per_base;
    std::vector<char> bases;
    std::vector<std::uint8_t> quality_scores;

    sff_read();
    explicit sff_read(std::uint16_t n);

    void set_numOfFlows(std::uint16_t n);
    // Sizes the per-read arrays from name_length and number_of_bases, each to at
    // most `available` elements: a record can never hold more than the bytes left
    // in its file, whatever its header claims. New elements are 0.
    void set_read_space(std::uint64_t available = std::numeric_limits<std::uint64_t>::max());
    void free_space();

    // Lays the first `delivered` bytes of a 16-byte read header over the fields as
    // they stand: a short read changes only what it reached.
    void load_header(const unsigned char* raw, std::size_t delivered);
    // Converts the big-endian header fields of a standard file to their values.
    void var_endian_swap();

    // The kept range, 1-based and inclusive: the tighter clip wins at each end, 0 means unset.
    std::int16_t get_base_start() const;
    std::int16_t get_base_end() const;

    // Run-length view of the flow indexes: each flow that called bases, and how many.
    void map_flow_num(std::vector<std::int16_t>& flows, std::vector<std::int16_t>& counts) const;

    std::ostream& print_header(std::ostream& out) const;
    std::ostream& print_read(std::ostream& out) const;
};

}  // namespace pelkrin
