#include "sff/record_view.h"

#include "sff/byte_order.h"
#include "sff/record_decode.h"
#include "sff/sff_read.h"

namespace pelkrin {
namespace {

std::uint16_t field16(const std::uint8_t* p, bool big_endian) {
    const std::uint16_t v = load_le16(p);
    return big_endian ? reverse_bytes16(v) : v;
}

}  // namespace

bool view_record(std::span<const std::uint8_t> file, std::int64_t pos, bool big_endian, std::uint16_t flows,
                 record_view& out) {
    if (pos < 0 || static_cast<std::uint64_t>(pos) > file.size() ||
        file.size() - static_cast<std::uint64_t>(pos) < sff_read::header_size) {
        return false;
    }
    const std::uint8_t* at = file.data() + pos;
    const std::uint16_t read_header_length = field16(at, big_endian);
    const std::uint16_t name_length = field16(at + 2, big_endian);
    const std::uint32_t bases = big_endian ? reverse_bytes32(load_le32(at + 4)) : load_le32(at + 4);
    const std::uint64_t data_at = sff_read::header_size + name_length +
                                  static_cast<std::uint64_t>(header_padding(read_header_length, name_length));
    const std::uint64_t extent = data_at + std::uint64_t{flows} * 2 + 3 * std::uint64_t{bases};
    if (extent > file.size() - static_cast<std::uint64_t>(pos)) return false;

    out.number_of_bases = bases;
    out.clip_qual_left = field16(at + 8, big_endian);
    out.clip_qual_right = field16(at + 10, big_endian);
    out.clip_adapter_left = field16(at + 12, big_endian);
    out.clip_adapter_right = field16(at + 14, big_endian);
    out.flows = flows;
    out.big_endian = big_endian;
    out.flowgram = at + data_at;
    out.flow_index = out.flowgram + std::size_t{flows} * 2;
    out.bases = out.flow_index + bases;
    out.quality = out.bases + bases;
    out.extent = extent;
    return true;
}

}  // namespace pelkrin
