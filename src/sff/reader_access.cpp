// Random access: decoding the record at a given position.
#include <algorithm>

#include "sff/byte_order.h"
#include "sff/reader.h"

namespace pelkrin {

void reader::get_read(const std::int64_t& pos, seqRead& out) {
    sff_file.seekg(pos);
    if (sff_file.fail()) return;  // out and cur_read stay as they were
    sff_file.set_jump_fill(record_block());
    read_record_header();  // not checked: a short record decodes from what came
    if (swap_bytes == 1) cur_read.var_endian_swap();
    read_name();
    read_data();
    const std::size_t converted =
        std::min<std::size_t>(header_p1.number_of_flows_per_read, cur_read.flowgram_values.size());
    if (swap_bytes == 1) {
        for (std::size_t i = 0; i < converted; ++i)
            cur_read.flowgram_values[i] = reverse_bytes16(cur_read.flowgram_values[i]);
    }
    out.assign(cur_read);
}

}  // namespace pelkrin
