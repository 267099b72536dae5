// Opening an SFF file and reading its common header.
#include <iostream>
#include <utility>

#include "common/end_process.h"
#include "sff/byte_order.h"
#include "sff/read_reports.h"
#include "sff/reader.h"

namespace pelkrin {
namespace {

constexpr std::uint32_t sff_magic = 0x2E736666;  // ".sff"

}  // namespace

reader::reader(std::string name) : file_name(std::move(name)) {
    if (!sff_file.open(file_name)) {
        std::cerr << "fail to open file " << file_name << std::endl;
        end_process(1);
    }
    sff_file.set_jump_fill(walk_block);
}

std::ostream& reader::print_file_size() {
    // Leaves the stream at the end of the file; get_header seeks to 0 itself.
    sff_file.seekg(sff_file.size() < 0 ? 0 : sff_file.size());
    std::cout << "input file size: " << sff_file.tellg() << std::endl;
    return std::cout;
}

int reader::check_magic_number() {
    const unsigned char* b = header_p1.magic_number;
    const std::uint32_t value = (std::uint32_t{b[0]} << 24) | (std::uint32_t{b[1]} << 16) |
                                (std::uint32_t{b[2]} << 8) | std::uint32_t{b[3]};
    if (value == sff_magic) {
        swap_bytes = 1;
        return 1;
    }
    if (reverse_bytes32(value) == sff_magic) {
        swap_bytes = 0;
        return 1;
    }
    std::cerr << "The input file " << file_name << " is not a SFF file" << std::endl;
    end_process(1);
}

int reader::get_header() {
    sff_file.seekg(0);
    unsigned char raw[sff_header_p1::size];
    sff_file.read(raw, sizeof raw);
    header_p1.load(raw, sff_file.gcount());
    if (sff_file.fail()) {
        report_short_read(file_name, sff_file.gcount(), sff_header_p1::size);
        sff_file.clear();
        return 0;
    }
    check_magic_number();
    if (swap_bytes == 1) header_p1.var_endian_swap();
    header_p2.alloc_space(static_cast<std::int16_t>(header_p1.number_of_flows_per_read),
                          static_cast<std::int16_t>(header_p1.key_length));
    // A count of 32768 or more got no space; its bytes are passed over all the same.
    const auto read_into = [this](std::vector<char>& v, std::size_t n) {
        const std::size_t stored = std::min(n, v.size());
        sff_file.read(v.data(), stored);
        if (n > stored) sff_file.skip(n - stored);
    };
    read_into(header_p2.flow_chars, header_p1.number_of_flows_per_read);
    read_into(header_p2.key_sequence, header_p1.key_length);
    cur_read.set_numOfFlows(header_p1.number_of_flows_per_read);
    sff_file.seekg(header_p1.header_length);
    return 1;
}

}  // namespace pelkrin
