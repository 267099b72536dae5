// Reading the parts of one read record into the reader's current record.
#include <algorithm>

#include "sff/byte_order.h"
#include "sff/read_reports.h"
#include "sff/reader.h"

namespace pelkrin {

bool reader::read_record_header() {
    unsigned char raw[sff_read::header_size];
    sff_file.read(raw, sizeof raw);
    cur_read.load_header(raw, sff_file.gcount());
    return !sff_file.fail();
}

std::int64_t reader::header_padding() const {
    const auto padding = static_cast<std::int16_t>(cur_read.read_header_length - cur_read.name_length -
                                                   static_cast<int>(sff_read::header_size));
    return std::max<std::int64_t>(padding, 0);
}

namespace {

// Reads n bytes into the front of `v`; what does not fit is read and dropped, so
// the stream ends where a read of all n bytes would have left it.
template <typename T>
void read_bytes(binary_input& in, std::vector<T>& v, std::uint64_t n) {
    const std::size_t stored = static_cast<std::size_t>(std::min<std::uint64_t>(n, v.size()));
    in.read(v.data(), stored);
    if (n > stored) in.skip(n - stored);
}

}  // namespace

void reader::read_name() {
    // No array may be larger than what the rest of the file can fill.
    cur_read.set_read_space(sff_file.remaining());
    read_bytes(sff_file, cur_read.name, cur_read.name_length);
}

void reader::read_data() {
    sff_file.seekg_relative(header_padding());

    // The flowgram keeps the values of the previous record where a short read does not reach.
    const std::size_t flows = std::min<std::size_t>(cur_read.numOfFlows, cur_read.flowgram_values.size());
    std::vector<unsigned char>& raw = flowgram_bytes_;
    raw.resize(flows * 2);
    sff_file.read(raw.data(), raw.size());
    const std::size_t got = sff_file.gcount();
    for (std::size_t i = 0; i < got / 2; ++i) cur_read.flowgram_values[i] = load_le16(raw.data() + 2 * i);
    if (got % 2 == 1) {  // half a value: its first byte is the low byte in memory order
        std::uint16_t& v = cur_read.flowgram_values[got / 2];
        v = static_cast<std::uint16_t>((v & 0xFF00u) | raw[got - 1]);
    }
    if (cur_read.numOfFlows > flows) sff_file.skip((cur_read.numOfFlows - flows) * std::uint64_t{2});

    read_bytes(sff_file, cur_read.flow_index_per_base, cur_read.number_of_bases);
    read_bytes(sff_file, cur_read.bases, cur_read.number_of_bases);
    read_bytes(sff_file, cur_read.quality_scores, cur_read.number_of_bases);
}

}  // namespace pelkrin
