// The sequential walks over the read records: the index build and get_next_read.
#include <algorithm>

#include "sff/byte_order.h"
#include "sff/read_reports.h"
#include "sff/reader.h"

namespace pelkrin {
namespace {

// Data sections are padded to a multiple of 8 bytes.
std::uint64_t data_padding(std::uint64_t data_length) {
    const std::uint64_t rest = data_length % 8;
    return rest == 0 ? 0 : 8 - rest;
}

}  // namespace

int reader::finish_walk(int result) {
    sff_file.set_forward_walk(false);
    return result;
}

int reader::build_read_index(read_index& index) {
    read_count = 0;
    get_header();
    // Only each record's header and name are read; the blocks fetched after each
    // jump are small, so the walk's cost does not grow with the flowgram length.
    sff_file.set_jump_fill(walk_block);
    sff_file.set_forward_walk(true);
    const std::uint64_t flowgram_bytes = std::uint64_t{cur_read.numOfFlows} * 2;

    if (read_count >= header_p1.number_of_reads) return finish_walk(1);
    if (sff_file.eof()) {
        report_end_of_file();
        return finish_walk(0);
    }
    // Room for every read the header claims, but never more than the file can hold.
    index.reserve(index.size() +
                  static_cast<std::size_t>(std::min<std::uint64_t>(header_p1.number_of_reads,
                                                                   sff_file.remaining() / sff_read::header_size)));
    std::vector<char> name_buffer;
    while (true) {
        const std::int64_t record_start = sff_file.tellg();
        if (!read_record_header()) {
            report_short_read(file_name, sff_file.gcount(), sff_read::header_size);
            sff_file.clear();
            return finish_walk(0);
        }
        if (swap_bytes == 1) cur_read.var_endian_swap();

        // The key is the name up to its first zero byte.
        const std::size_t name_bytes =
            static_cast<std::size_t>(std::min<std::uint64_t>(cur_read.name_length, sff_file.remaining()));
        name_buffer.assign(name_bytes, '\0');
        sff_file.read(name_buffer.data(), name_bytes);
        if (cur_read.name_length > name_bytes) sff_file.skip(cur_read.name_length - name_bytes);
        const auto key_end = std::find(name_buffer.begin(), name_buffer.end(), '\0');
        index.set(std::string(name_buffer.begin(), key_end), record_start);  // a later record of a name wins

        const std::uint64_t data_length = flowgram_bytes + 3 * std::uint64_t{cur_read.number_of_bases};
        sff_file.seekg_relative(header_padding() + static_cast<std::int64_t>(data_length + data_padding(data_length)));

        ++read_count;
        if (read_count >= header_p1.number_of_reads) return finish_walk(1);
        if (sff_file.eof()) {
            report_end_of_file();
            return finish_walk(0);
        }
    }
}

int reader::sequential_step(read_index* index) {
    if (read_count >= header_p1.number_of_reads) return 0;
    if (sff_file.eof()) {
        report_end_of_file();
        return 0;
    }
    const std::int64_t record_start = sff_file.tellg();
    if (!read_record_header()) {
        report_short_read(file_name, sff_file.gcount(), sff_read::header_size);
        sff_file.clear();
        return 0;
    }
    if (swap_bytes == 1) cur_read.var_endian_swap();
    read_name();
    if (index != nullptr) index->set(std::string(cur_read.name.begin(), cur_read.name.end()), record_start);
    read_data();
    // The sequential walk takes flowgram values as big-endian in either byte order.
    for (std::uint16_t& v : cur_read.flowgram_values) v = reverse_bytes16(v);
    const std::uint64_t data_length =
        std::uint64_t{cur_read.numOfFlows} * 2 + 3 * std::uint64_t{cur_read.number_of_bases};
    if (data_padding(data_length) != 0) sff_file.seekg_relative(static_cast<std::int64_t>(data_padding(data_length)));
    ++read_count;
    return 1;
}

int reader::get_next_read(read_index& index) { return sequential_step(&index); }

int reader::get_next_read() { return sequential_step(nullptr); }

}  // namespace pelkrin
