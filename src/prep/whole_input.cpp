#include "prep/whole_input.h"

#include <utility>

#include "common/fatal_error.h"
#include "common/input_file.h"
#include "prep/gzip.h"

namespace pelkrin::prep {

whole_input::whole_input(std::string path, std::ostream& err) : name_(std::move(path)) {
    input_file file = open_input(name_, input_reading::front_to_back, "Pelkrin-prep");
    std::span<const std::uint8_t> raw;
    if (file.regular()) {
        source_.open(std::move(file));
        raw = source_.contents();
    } else {
        // A pipe: read once, kept in memory.
        if (!file.read_to_end(held_))
            throw fatal_error(1, std::string("Pelkrin-prep: ").append(name_).append(": ").append(file.problem())
                                     .append("\n"));
        raw = held_;
    }
    take(raw, &err);
}

whole_input::whole_input(std::string path, std::span<const std::uint8_t> bytes) : name_(std::move(path)) {
    take(bytes, nullptr);
}

void whole_input::take(std::span<const std::uint8_t> raw, std::ostream* err) {
    if (!is_gzip(raw)) {
        bytes_ = raw;
        return;
    }
    gzipped_ = true;
    held_ = gunzip(raw, name_, err);
    bytes_ = held_;
}

}  // namespace pelkrin::prep
