#pragma once
// Writes small SFF files for tests, in either byte order, with or without the
// padding of the common header and of the read headers.
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace pelkrin::test {

struct sff_fixture_read {
    std::string name;
    std::string bases;
    std::vector<std::uint8_t> quals;         // one per base
    std::vector<std::uint8_t> flow_index;    // one per base: flows after the previous base's flow
    std::vector<std::uint16_t> flowgram;     // one per flow; missing values are written as 0
    std::uint16_t clip_qual_left = 0;
    std::uint16_t clip_qual_right = 0;
    std::uint16_t clip_adapter_left = 0;
    std::uint16_t clip_adapter_right = 0;
};

struct sff_fixture {
    bool big_endian = true;  // false: the byte-reversed magic and little-endian integers
    bool pad_headers = true; // pad the common header and read headers to multiples of 8
    std::uint16_t flows = 8;
    std::string flow_chars;  // empty: "TACG" repeated to `flows`
    std::string key = "TCAG";
    std::optional<std::uint32_t> claimed_reads;  // number_of_reads written; default the real count
    std::uint64_t index_offset = 0;  // written as little-endian bytes, whatever the byte order
    std::uint32_t index_length = 0;
    // An index block of `index_block_length` bytes (a ".mft" manifest, then
    // padding to a multiple of 8) before this read; reads.size() puts it after
    // the last one. Its offset and length, in the file's byte order, replace the two above.
    std::optional<std::size_t> index_block_before;
    std::uint32_t index_block_length = 37;
    std::vector<sff_fixture_read> reads;
};

struct sff_bytes {
    std::string bytes;
    std::vector<std::int64_t> record_offsets;  // where each read's record begins
    std::uint16_t header_length = 0;
};

sff_bytes build_sff(const sff_fixture& f);

// A read whose bases were called by the given flows (0-based, ascending), with
// the flow characters of "TACG" repeated; quality scores given.
sff_fixture_read read_from_flows(const std::string& name, const std::vector<int>& flows_of_bases,
                                 const std::vector<std::uint8_t>& quals, std::uint16_t n_flows);

}  // namespace pelkrin::test
