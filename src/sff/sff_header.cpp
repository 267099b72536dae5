#include "sff/sff_header.h"

#include <algorithm>
#include <cstring>

#include "sff/byte_order.h"

namespace pelkrin {
namespace {

// The header as the file lays it out, field values taken as little-endian.
void store(const sff_header_p1& h, unsigned char* raw) {
    std::memcpy(raw, h.magic_number, 4);
    std::memcpy(raw + 4, h.version, 4);
    store_le64(raw + 8, h.index_offset);
    store_le32(raw + 16, h.index_length);
    store_le32(raw + 20, h.number_of_reads);
    store_le16(raw + 24, h.header_length);
    store_le16(raw + 26, h.key_length);
    store_le16(raw + 28, h.number_of_flows_per_read);
    raw[30] = h.flowgram_format_code;
}

}  // namespace

void sff_header_p1::load(const unsigned char* raw, std::size_t delivered) {
    unsigned char image[size];
    store(*this, image);
    std::memcpy(image, raw, std::min(delivered, size));
    std::memcpy(magic_number, image, 4);
    std::memcpy(version, image + 4, 4);
    index_offset = load_le64(image + 8);
    index_length = load_le32(image + 16);
    number_of_reads = load_le32(image + 20);
    header_length = load_le16(image + 24);
    key_length = load_le16(image + 26);
    number_of_flows_per_read = load_le16(image + 28);
    flowgram_format_code = image[30];
}

void sff_header_p1::var_endian_swap() {
    index_length = reverse_bytes32(index_length);
    number_of_reads = reverse_bytes32(number_of_reads);
    header_length = reverse_bytes16(header_length);
    key_length = reverse_bytes16(key_length);
    number_of_flows_per_read = reverse_bytes16(number_of_flows_per_read);
}

std::ostream& sff_header_p1::print(std::ostream& out) const {
    out.write(reinterpret_cast<const char*>(magic_number), 4);
    out << '\t';
    for (unsigned char v : version) out << static_cast<unsigned>(v);
    out << '\t' << index_offset << '\t' << index_length << '\t' << number_of_reads << '\t'
        << header_length << '\t' << key_length << '\t' << number_of_flows_per_read << '\t'
        << static_cast<unsigned>(flowgram_format_code) << std::endl;
    return out;
}

void sff_header_p2::alloc_space(std::int16_t n_flows, std::int16_t n_key) {
    flow_chars.assign(static_cast<std::size_t>(std::max<std::int16_t>(n_flows, 0)), '\0');
    key_sequence.assign(static_cast<std::size_t>(std::max<std::int16_t>(n_key, 0)), '\0');
}

std::ostream& sff_header_p2::print(std::ostream& out, std::int16_t n_flows, std::int16_t n_key) const {
    auto shown = [](const std::vector<char>& v, std::int16_t n) {
        return static_cast<std::streamsize>(std::min<std::size_t>(v.size(), n > 0 ? static_cast<std::size_t>(n) : 0));
    };
    out.write(flow_chars.data(), shown(flow_chars, n_flows));
    out << std::endl;
    out.write(key_sequence.data(), shown(key_sequence, n_key));
    out << std::endl;
    return out;
}

}  // namespace pelkrin
