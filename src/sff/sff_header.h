#pragma once
// The SFF common header: its fixed 31-byte part and its variable part (flow
// characters and key sequence).
#include <cstdint>
#include <ostream>
#include <vector>

namespace pelkrin {

struct sff_header_p1 {
    static constexpr std::size_t size = 31;

    unsigned char magic_number[4] = {0, 0, 0, 0};
    unsigned char version[4] = {0, 0, 0, 0};
    std::uint64_t index_offset = 0;  // the file bytes as a little-endian number, never converted
    std::uint32_t index_length = 0;
    std::uint32_t number_of_reads = 0;
    std::uint16_t header_length = 0;
    std::uint16_t key_length = 0;
    std::uint16_t number_of_flows_per_read = 0;
    std::uint8_t flowgram_format_code = 0;

    // Lays the first `delivered` bytes of `raw` over the header as it stands: a
    // short read changes only the fields (or parts of fields) that it reached.
    void load(const unsigned char* raw, std::size_t delivered);
    // Converts the big-endian fields of a standard file to their values.
    void var_endian_swap();
    std::ostream& print(std::ostream& out) const;
};

struct sff_header_p2 {
    std::vector<char> flow_chars;
    std::vector<char> key_sequence;

    // Replaces whatever an earlier call allocated. A negative count (a header
    // count of 32768 or more) gets no space.
    void alloc_space(std::int16_t n_flows, std::int16_t n_key);
    std::ostream& print(std::ostream& out, std::int16_t n_flows, std::int16_t n_key) const;
};

}  // namespace pelkrin
