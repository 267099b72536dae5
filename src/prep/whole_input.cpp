#include "prep/whole_input.h"

#include <utility>

#include "common/fatal_error.h"
#include "prep/gzip.h"

namespace pelkrin::prep {

whole_input::whole_input(std::string path, std::ostream& err)
    : whole_input(path, open_input(path, input_reading::by_position, "Pelkrin-prep"), err) {}

whole_input::whole_input(std::string path, input_file file, std::ostream& err) : name_(std::move(path)) {
    // Mapped in place: only a regular file has positions to map.
    if (!file.regular())
        throw fatal_error(1, std::string("Pelkrin-prep: ").append(name_).append(": ")
                                 .append(file.problem().empty() ? "is not a regular file" : file.problem())
                                 .append("\n"));
    source_.open(std::move(file));
    take(source_.contents(), &err);
}

whole_input::whole_input(std::string path, std::span<const std::uint8_t> bytes) : name_(std::move(path)) {
    take(bytes, nullptr);
}

void whole_input::take(std::span<const std::uint8_t> raw, std::ostream* err) {
    file_size_ = raw.size();
    if (!is_gzip(raw)) {
        bytes_ = raw;
        return;
    }
    gzipped_ = true;
    held_ = gunzip(raw, name_, err);
    bytes_ = held_;
}

}  // namespace pelkrin::prep
