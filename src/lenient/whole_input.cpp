#include "lenient/whole_input.h"

#include <utility>

#include "common/fatal_error.h"
#include "lenient/file_label.h"
#include "lenient/gzip.h"

namespace pelkrin {

whole_input::whole_input(std::string path, std::ostream& err, std::string_view program)
    : whole_input(path, open_input(path, input_reading::by_position, program), err, program) {}

whole_input::whole_input(std::string path, input_file file, std::ostream& err, std::string_view program)
    : name_(std::move(path)), program_(program) {
    // Mapped in place: only a regular file has positions to map.
    if (!file.regular())
        throw fatal_error(1, file_label(program_, name_).append(": ")
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
    held_ = gunzip(raw, name_, err, program_);
    bytes_ = held_;
}

}  // namespace pelkrin
