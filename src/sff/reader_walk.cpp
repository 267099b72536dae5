// The sequential walks over the read records: the index build and get_next_read.
#include <algorithm>

#include "sff/byte_order.h"
#include "sff/reader.h"
#include "sff/record_decode.h"

namespace pelkrin {

std::int64_t reader::past_index_block(std::int64_t pos) const {
    if (header_p1.index_length == 0) return pos;
    // The offset is kept as the file's bytes read little-endian; in a big-endian
    // file its value is the reverse.
    const std::uint64_t at = swap_bytes == 1 ? reverse_bytes64(header_p1.index_offset) : header_p1.index_offset;
    if (at == 0 || static_cast<std::uint64_t>(pos) != at) return pos;
    const std::uint64_t end = at + header_p1.index_length;
    return static_cast<std::int64_t>((end + 7) / 8 * 8);
}

int reader::build_read_index(read_index& index) {
    settle_cur_read();
    read_count = 0;
    walk_complete_ = false;
    get_header();
    const std::uint64_t flowgram_bytes = std::uint64_t{cur_read.numOfFlows} * 2;

    if (read_count >= header_p1.number_of_reads) {
        walk_complete_ = true;
        return 1;
    }
    if (state_.eof) {
        report_end_of_file();
        return 0;
    }
    // Only each record's header and name are read, in place: the walk passes
    // over the data sections without touching them.
    byte_cursor in(sff_file.contents(), 0, state_);
    // Room for every read the header claims, but never more than the file can hold.
    index.reserve(index.size() + static_cast<std::size_t>(std::min<std::uint64_t>(
                                     header_p1.number_of_reads, in.remaining() / sff_read::header_size)));
    int result = 1;
    std::int64_t data_end = 0;  // where the last record's data ends, before its padding
    while (true) {
        // The file's own index block may stand among the records: it is passed over.
        if (in.good()) in.seek(past_index_block(in.state().pos));
        const std::int64_t record_start = in.tell();
        unsigned char raw[sff_read::header_size];
        const std::size_t got = in.read(raw, sizeof raw);
        cur_read.load_header(raw, got);
        if (in.fail()) {
            check_unchanged();  // zeros past a new end are no short read to report
            report_short_read(got, sff_read::header_size);
            in.clear();
            result = 0;
            break;
        }
        if (swap_bytes == 1) cur_read.var_endian_swap();

        // The key is the name up to its first zero byte.
        const std::span<const std::uint8_t> rest = in.rest();
        const std::size_t name_bytes = std::min<std::size_t>(cur_read.name_length, rest.size());
        const auto name = reinterpret_cast<const char*>(rest.data());
        std::string key(name, std::find(name, name + name_bytes, '\0'));
        in.skip(cur_read.name_length);

        const std::uint64_t data_length = flowgram_bytes + 3 * std::uint64_t{cur_read.number_of_bases};
        in.seek_relative(header_padding(cur_read) + static_cast<std::int64_t>(data_length + data_padding(data_length)));
        // The next header is far from this one: its memory is asked for now,
        // so that the wait for it overlaps the indexing of this read.
        if (const std::span<const std::uint8_t> next = in.rest(); !next.empty()) __builtin_prefetch(next.data());
        index.set(std::move(key), record_start);  // a later record wins
        data_end = record_start + static_cast<std::int64_t>(sff_read::header_size + cur_read.name_length) +
                   header_padding(cur_read) + static_cast<std::int64_t>(data_length);

        ++read_count;
        if (read_count >= header_p1.number_of_reads) break;
        if (in.eof()) {
            check_unchanged();
            report_end_of_file();
            result = 0;
            break;
        }
    }
    state_ = in.state();
    // Complete when every record announced was found, the last one whole.
    walk_complete_ = result == 1 && (sff_file.size() < 0 || data_end <= sff_file.size());
    return result;
}

int reader::sequential_step(read_index* index) {
    settle_cur_read();
    if (read_count >= header_p1.number_of_reads) return 0;
    if (state_.eof) {
        report_end_of_file();
        return 0;
    }
    if (!state_.fail) state_.pos = past_index_block(state_.pos);
    const std::int64_t record_start = state_.fail ? -1 : state_.pos;
    // A failed stream reads nothing: the record comes up empty.
    const std::span<const std::uint8_t> bytes =
        state_.fail ? std::span<const std::uint8_t>()
                    : record_bytes(record_start, sff_file.bytes_at(record_start, record_block(), block_));
    const record_outcome outcome = decode_record(bytes, state_.pos, header_p1, swap_bytes == 1,
                                                 record_decoding::sequential, cur_read);
    if (outcome.header_bytes < sff_read::header_size) {
        report_short_read(outcome.header_bytes, sff_read::header_size);
        state_ = outcome.after;
        state_.eof = state_.fail = false;
        return 0;
    }
    state_ = outcome.after;
    if (index != nullptr) index->set(std::string(cur_read.name.begin(), cur_read.name.end()), record_start);
    ++read_count;
    return 1;
}

int reader::get_next_read(read_index& index) { return sequential_step(&index); }

int reader::get_next_read() { return sequential_step(nullptr); }

}  // namespace pelkrin
