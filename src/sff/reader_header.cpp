// Opening an SFF file, reading its common header, and the reader's reports.
#include <algorithm>
#include <utility>

#include "common/fatal_error.h"
#include "sff/byte_order.h"
#include "sff/reader.h"

namespace pelkrin {
namespace {

constexpr std::uint32_t sff_magic = 0x2E736666;  // ".sff"

}  // namespace

reader::reader(std::string name, console messages) : file_name(std::move(name)), messages_(messages) {
    if (!sff_file.open(file_name)) throw fatal_error(1, "fail to open file " + file_name + "\n");
}

reader::reader(std::string name, std::span<const std::uint8_t> bytes, console messages)
    : file_name(std::move(name)), messages_(messages) {
    sff_file.use_memory(bytes);
}

reader::reader(std::string name, std::vector<std::uint8_t> bytes, console messages)
    : file_name(std::move(name)), messages_(messages) {
    sff_file.keep_memory(std::move(bytes));
}

void reader::report_short_read(std::size_t got, std::size_t block_size) {
    messages_.err << "Error ocurred while reading file " << file_name << std::endl;
    messages_.out << "Only got " << got << " bytes while " << block_size << " is need" << std::endl;
}

void reader::check_unchanged() const {
    if (sff_file.changed()) throw fatal_error(1, "Error: the SFF file " + file_name + " changed while it was read\n");
}

void reader::report_end_of_file() { messages_.err << "reach end of file while read more data" << std::endl; }

std::ostream& reader::print_file_size() {
    // Leaves the stream at the end of the file; get_header seeks to 0 itself.
    seek_to(std::max<std::int64_t>(sff_file.size(), 0));
    messages_.out << "input file size: " << (state_.fail ? -1 : state_.pos) << std::endl;
    return messages_.out;
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
    throw fatal_error(1, "The input file " + file_name + " is not a SFF file\n");
}

int reader::get_header() {
    settle_cur_read();
    // A stream that failed earlier reads nothing at all.
    const bool readable = seek_to(0);
    const auto bytes_from = [&](std::int64_t pos, std::size_t n) {
        return readable ? sff_file.bytes_at(pos, n, header_) : std::span<const std::uint8_t>();
    };
    byte_cursor fixed(bytes_from(0, sff_header_p1::size), 0, state_);
    unsigned char raw[sff_header_p1::size];
    const std::size_t got = fixed.read(raw, sizeof raw);
    header_p1.load(raw, got);
    check_unchanged();
    if (fixed.fail()) {
        report_short_read(got, sff_header_p1::size);
        fixed.clear();
        state_ = fixed.state();
        return 0;
    }
    check_magic_number();
    if (swap_bytes == 1) header_p1.var_endian_swap();
    header_p2.alloc_space(static_cast<std::int16_t>(header_p1.number_of_flows_per_read),
                          static_cast<std::int16_t>(header_p1.key_length));
    // The flow characters and the key, read at once.
    byte_cursor in(bytes_from(sff_header_p1::size, std::size_t{header_p1.number_of_flows_per_read} + header_p1.key_length),
                   sff_header_p1::size, fixed.state());
    // A count of 32768 or more got no space; its bytes are passed over all the same.
    const auto read_into = [&in](std::vector<char>& v, std::size_t n) {
        const std::size_t stored = std::min(n, v.size());
        in.read(v.data(), stored);
        if (n > stored) in.skip(n - stored);
    };
    read_into(header_p2.flow_chars, header_p1.number_of_flows_per_read);
    read_into(header_p2.key_sequence, header_p1.key_length);
    cur_read.set_numOfFlows(header_p1.number_of_flows_per_read);
    in.seek(header_p1.header_length);
    state_ = in.state();
    return 1;
}

}  // namespace pelkrin
