#include "prep/input_file.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>

#include "common/fatal_error.h"
#include "prep/gzip.h"

namespace pelkrin::prep {

input_file::input_file(std::string path, std::ostream& err) : name_(std::move(path)) {
    if (!source_.open(name_))
        throw fatal_error(1, std::string("Pelkrin-prep: ").append(name_).append(": cannot open: ")
                                 .append(std::strerror(errno)).append("\n"));
    std::span<const std::uint8_t> raw = source_.contents();
    if (source_.size() < 0) {
        // A pipe or a device: read once, kept in memory.
        std::ifstream in(name_, std::ios::binary);
        held_.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
        if (in.bad())
            throw fatal_error(1, std::string("Pelkrin-prep: ").append(name_).append(": cannot read: ")
                                     .append(std::strerror(errno)).append("\n"));
        raw = held_;
    }
    take(raw, &err);
}

input_file::input_file(std::string path, std::span<const std::uint8_t> bytes) : name_(std::move(path)) {
    take(bytes, nullptr);
}

void input_file::take(std::span<const std::uint8_t> raw, std::ostream* err) {
    if (!is_gzip(raw)) {
        bytes_ = raw;
        return;
    }
    gzipped_ = true;
    held_ = gunzip(raw, name_, err);
    bytes_ = held_;
}

}  // namespace pelkrin::prep
