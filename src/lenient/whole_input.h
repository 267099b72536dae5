#pragma once
// The bytes of an input file, whole: a regular file is mapped and read in
// place (it may be gigabytes); a gzip file (found by its first two bytes, not
// by its name) is inflated into memory. Every input is opened the one shared
// way (common/input_file.h), for reading by position: a pipe, a FIFO, a
// folder or a device is refused naming the file, never read without end.
#include <cstdint>
#include <ostream>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "common/input_file.h"
#include "sff/sff_source.h"

namespace pelkrin {

class whole_input {
public:
    // Throws fatal_error (status 1) naming the file after `program` when it
    // cannot be opened, is no regular file, or its gzip data is damaged.
    // `err` takes the progress of inflating.
    whole_input(std::string path, std::ostream& err, std::string_view program);
    // The same for a file opened already (input_reading::by_position), for a
    // caller that looked at how the opening went first.
    whole_input(std::string path, input_file file, std::ostream& err, std::string_view program);
    // Reads `bytes` (which must outlive this) as the file named `path`.
    whole_input(std::string path, std::span<const std::uint8_t> bytes);
    whole_input(const whole_input&) = delete;
    whole_input& operator=(const whole_input&) = delete;

    const std::string& name() const { return name_; }
    std::span<const std::uint8_t> bytes() const { return bytes_; }
    // The file was gzip data (bytes() are then what it inflates to).
    bool gzipped() const { return gzipped_; }
    // The bytes of the file as it stands, before any inflating.
    std::uint64_t file_size() const { return file_size_; }
    // The descriptor of the file whose bytes bytes() are, for copying them
    // inside the kernel; -1 when they are in memory (inflated, or given).
    int descriptor() const { return gzipped_ ? -1 : source_.descriptor(); }

private:
    void take(std::span<const std::uint8_t> raw, std::ostream* err);

    std::string name_;
    std::string program_;
    sff_source source_;
    std::vector<std::uint8_t> held_;
    std::span<const std::uint8_t> bytes_;
    std::uint64_t file_size_ = 0;
    bool gzipped_ = false;
};

}  // namespace pelkrin
