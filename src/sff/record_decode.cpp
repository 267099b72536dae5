#include "sff/record_decode.h"

#include <algorithm>
#include <vector>

#include "sff/byte_order.h"

namespace pelkrin {
namespace {

// Reads n bytes into the front of `v`; what does not fit is passed over, so the
// cursor ends where reading all n bytes would have left it.
template <typename T>
void read_bytes(byte_cursor& in, std::vector<T>& v, std::uint64_t n) {
    const std::size_t stored = static_cast<std::size_t>(std::min<std::uint64_t>(n, v.size()));
    in.read(v.data(), stored);
    if (n > stored) in.skip(n - stored);
}

// The flowgram as the file's little-endian numbers. Values a short read does not
// reach keep what the previous record left.
void read_flowgram(byte_cursor& in, sff_read& r) {
    const std::size_t flows = std::min<std::size_t>(r.numOfFlows, r.flowgram_values.size());
    const std::span<const std::uint8_t> rest = in.rest();
    const std::size_t got = in.good() ? std::min(flows * 2, rest.size()) : 0;
    for (std::size_t i = 0; i < got / 2; ++i) r.flowgram_values[i] = load_le16(rest.data() + 2 * i);
    if (got % 2 == 1) {  // half a value: its first byte is the low byte in memory order
        std::uint16_t& v = r.flowgram_values[got / 2];
        v = static_cast<std::uint16_t>((v & 0xFF00u) | rest[got - 1]);
    }
    in.skip(flows * 2);  // moves as far as the values came, and fails as a short read does
    if (r.numOfFlows > flows) in.skip((r.numOfFlows - flows) * std::uint64_t{2});
}

}  // namespace

std::int64_t header_padding(const sff_read& r) { return header_padding(r.read_header_length, r.name_length); }

std::int64_t header_padding(std::uint16_t read_header_length, std::uint16_t name_length) {
    const auto padding =
        static_cast<std::int16_t>(read_header_length - name_length - static_cast<int>(sff_read::header_size));
    return std::max<std::int64_t>(padding, 0);
}

std::uint64_t data_padding(std::uint64_t data_length) {
    const std::uint64_t rest = data_length % 8;
    return rest == 0 ? 0 : 8 - rest;
}

std::uint64_t record_extent(std::span<const std::uint8_t> first, bool big_endian, std::uint16_t flows) {
    // The fields a short header lacks count as 0, as a fresh record's do.
    unsigned char raw[sff_read::header_size] = {};
    std::copy_n(first.data(), std::min(first.size(), sff_read::header_size), raw);
    std::uint16_t read_header_length = load_le16(raw);
    std::uint16_t name_length = load_le16(raw + 2);
    std::uint32_t number_of_bases = load_le32(raw + 4);
    if (big_endian) {
        read_header_length = reverse_bytes16(read_header_length);
        name_length = reverse_bytes16(name_length);
        number_of_bases = reverse_bytes32(number_of_bases);
    }
    return sff_read::header_size + name_length +
           static_cast<std::uint64_t>(header_padding(read_header_length, name_length)) + std::uint64_t{flows} * 2 +
           3 * std::uint64_t{number_of_bases};
}

record_outcome decode_record(std::span<const std::uint8_t> bytes, std::int64_t pos, const sff_header_p1& header,
                             bool big_endian, record_decoding how, sff_read& record) {
    byte_cursor in(bytes, pos, stream_state{pos, false, false});
    record_outcome outcome;
    unsigned char raw[sff_read::header_size];
    outcome.header_bytes = in.read(raw, sizeof raw);
    record.load_header(raw, outcome.header_bytes);  // a short read changes only what it reached
    if (how == record_decoding::sequential && in.fail()) {
        outcome.after = in.state();
        return outcome;
    }
    if (big_endian) record.var_endian_swap();

    // No array may be larger than what the rest of the file can fill.
    record.set_read_space(in.remaining());
    read_bytes(in, record.name, record.name_length);
    in.seek_relative(header_padding(record));
    read_flowgram(in, record);
    read_bytes(in, record.flow_index_per_base, record.number_of_bases);
    read_bytes(in, record.bases, record.number_of_bases);
    read_bytes(in, record.quality_scores, record.number_of_bases);

    if (how == record_decoding::sequential) {
        // The sequential walk takes flowgram values as big-endian in either byte order.
        for (std::uint16_t& v : record.flowgram_values) v = reverse_bytes16(v);
        const std::uint64_t data_length =
            std::uint64_t{record.numOfFlows} * 2 + 3 * std::uint64_t{record.number_of_bases};
        if (data_padding(data_length) != 0) in.seek_relative(static_cast<std::int64_t>(data_padding(data_length)));
    } else if (big_endian) {
        const std::size_t converted =
            std::min<std::size_t>(header.number_of_flows_per_read, record.flowgram_values.size());
        for (std::size_t i = 0; i < converted; ++i)
            record.flowgram_values[i] = reverse_bytes16(record.flowgram_values[i]);
    }
    outcome.after = in.state();
    return outcome;
}

}  // namespace pelkrin
