#include "sff/sff_read.h"

#include <algorithm>
#include <cstring>

#include "sff/byte_order.h"

namespace pelkrin {

sff_read::sff_read() : name(1), flowgram_values(1), flow_index_per_base(1), bases(1), quality_scores(1) {}

sff_read::sff_read(std::uint16_t n)
    : numOfFlows(n), name(1), flowgram_values(n), flow_index_per_base(1), bases(1), quality_scores(1) {}

void sff_read::set_numOfFlows(std::uint16_t n) {
    numOfFlows = n;
    flowgram_values.assign(n, 0);
}

void sff_read::set_read_space(std::uint64_t available) {
    const auto bounded = [available](std::uint64_t n) {
        return static_cast<std::size_t>(std::min<std::uint64_t>(n, available));
    };
    name.assign(bounded(name_length), '\0');
    flow_index_per_base.assign(bounded(number_of_bases), 0);
    bases.assign(bounded(number_of_bases), '\0');
    quality_scores.assign(bounded(number_of_bases), 0);
}

void sff_read::free_space() {
    name = {};
    flow_index_per_base = {};
    bases = {};
    quality_scores = {};
}

void sff_read::load_header(const unsigned char* raw, std::size_t delivered) {
    unsigned char image[header_size];
    store_le16(image, read_header_length);
    store_le16(image + 2, name_length);
    store_le32(image + 4, number_of_bases);
    store_le16(image + 8, clip_qual_left);
    store_le16(image + 10, clip_qual_right);
    store_le16(image + 12, clip_adapter_left);
    store_le16(image + 14, clip_adapter_right);
    std::memcpy(image, raw, std::min(delivered, header_size));
    read_header_length = load_le16(image);
    name_length = load_le16(image + 2);
    number_of_bases = load_le32(image + 4);
    clip_qual_left = load_le16(image + 8);
    clip_qual_right = load_le16(image + 10);
    clip_adapter_left = load_le16(image + 12);
    clip_adapter_right = load_le16(image + 14);
}

void sff_read::var_endian_swap() {
    read_header_length = reverse_bytes16(read_header_length);
    name_length = reverse_bytes16(name_length);
    number_of_bases = reverse_bytes32(number_of_bases);
    clip_qual_left = reverse_bytes16(clip_qual_left);
    clip_qual_right = reverse_bytes16(clip_qual_right);
    clip_adapter_left = reverse_bytes16(clip_adapter_left);
    clip_adapter_right = reverse_bytes16(clip_adapter_right);
}

std::int16_t sff_read::get_base_start() const {
    const std::uint16_t start = std::max<std::uint16_t>({clip_qual_left, clip_adapter_left, 1});
    return static_cast<std::int16_t>(start);
}

std::int16_t sff_read::get_base_end() const {
    const std::uint32_t right_q = clip_qual_right != 0 ? clip_qual_right : number_of_bases;
    const std::uint32_t right_a = clip_adapter_right != 0 ? clip_adapter_right : number_of_bases;
    return static_cast<std::int16_t>(std::min(right_q, right_a));
}

void sff_read::map_flow_num(std::vector<std::int16_t>& flows, std::vector<std::int16_t>& counts) const {
    const std::size_t n = std::min<std::size_t>(number_of_bases, flow_index_per_base.size());
    flows.assign(n, 0);
    counts.assign(n, 0);
    std::int16_t p = -1;
    std::ptrdiff_t k = -1;
    for (std::size_t i = 0; i < n; ++i) {
        const std::uint8_t d = flow_index_per_base[i];
        if (d != 0) {
            ++k;
            p = static_cast<std::int16_t>(p + d);
            flows[static_cast<std::size_t>(k)] = p;
            counts[static_cast<std::size_t>(k)] = 1;
        } else if (k >= 0) {
            ++counts[static_cast<std::size_t>(k)];
        }
        // A 0 before any flow has called a base names no flow: that base is not counted.
    }
}

std::ostream& sff_read::print_header(std::ostream& out) const {
    out << read_header_length << '\t' << name_length << '\t' << number_of_bases << '\t' << clip_qual_left << '\t'
        << clip_qual_right << '\t' << clip_adapter_left << '\t' << clip_adapter_right << std::endl;
    return out;
}

std::ostream& sff_read::print_read(std::ostream& out) const {
    // Lines of numbers end with a tab before the line end.
    out.write(name.data(), static_cast<std::streamsize>(std::min<std::size_t>(name_length, name.size())));
    out << std::endl;
    const std::size_t flows = std::min<std::size_t>(numOfFlows, flowgram_values.size());
    for (std::size_t i = 0; i < flows; ++i) out << flowgram_values[i] << '\t';
    out << std::endl;
    const std::size_t n = std::min<std::size_t>(number_of_bases, flow_index_per_base.size());
    for (std::size_t i = 0; i < n; ++i) out << static_cast<unsigned>(flow_index_per_base[i]) << '\t';
    out << std::endl;
    out.write(bases.data(), static_cast<std::streamsize>(std::min<std::size_t>(n, bases.size())));
    out << std::endl;
    for (std::size_t i = 0; i < std::min(n, quality_scores.size()); ++i)
        out << static_cast<unsigned>(quality_scores[i]) << '\t';
    out << std::endl;
    return out;
}

}  // namespace pelkrin
