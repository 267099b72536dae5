// Random access: decoding the record at a given position.
#include <algorithm>

#include "sff/reader.h"
#include "sff/record_decode.h"

namespace pelkrin {

std::span<const std::uint8_t> reader::record_bytes(std::int64_t pos, std::span<const std::uint8_t> first) {
    // A block that came up short holds all the file has from `pos` on.
    if (first.size() < record_block() || first.size() < sff_read::header_size) return first;
    const std::uint64_t extent = record_extent(first, big_endian(), cur_read.numOfFlows);
    if (extent <= first.size()) return first;
    // A longer record (or a damaged header claiming one): never more than the file holds.
    std::uint64_t want = extent;
    if (sff_file.size() >= 0) {
        want = std::min(want, static_cast<std::uint64_t>(std::max<std::int64_t>(sff_file.size() - pos, 0)));
    }
    if (want <= first.size()) return first;
    return sff_file.bytes_at(pos, static_cast<std::size_t>(want), record_);
}

const sff_read& reader::decode_at(std::int64_t pos, std::span<const std::uint8_t> bytes, seqRead& out) {
    state_ = decode_record(bytes, pos, header_p1, big_endian(), record_decoding::at_position, cur_read).after;
    out.assign(cur_read);
    return cur_read;
}

bool reader::seek_to(std::int64_t pos) {
    byte_cursor seeker(std::span<const std::uint8_t>(), 0, state_);
    seeker.seek(pos);
    state_ = seeker.state();
    return !state_.fail;
}

const sff_read& reader::get_read(const std::int64_t& pos, seqRead& out) {
    settle_cur_read();
    if (!seek_to(pos)) return cur_read;  // out and cur_read stay as they were
    return decode_at(pos, record_bytes(pos, sff_file.bytes_at(pos, record_block(), block_)), out);
}

bool reader::view_read(std::int64_t pos, record_view& out) {
    if (state_.fail || !view_record(sff_file.contents(), pos, big_endian(), cur_read.numOfFlows, out)) return false;
    // Where a stream stands after reading the whole record.
    state_ = stream_state{pos + static_cast<std::int64_t>(out.extent), false, false};
    viewed_ = pos;
    return true;
}

void reader::settle_cur_read() {
    if (viewed_ < 0) return;
    const std::int64_t pos = viewed_;
    viewed_ = -1;
    // A whole record: the stream's state is already where decoding leaves it.
    decode_record(record_bytes(pos, sff_file.bytes_at(pos, record_block(), block_)), pos, header_p1, big_endian(),
                  record_decoding::at_position, cur_read);
}

}  // namespace pelkrin
