#pragma once
// The bytes of an input file, whole: a regular file is mapped and read in
// place (it may be gigabytes); a gzip file (found by its first two bytes, not
// by its name) is inflated into memory; a pipe is read into memory. A folder
// or a device is refused (see common/whole_input.h).
#include <cstdint>
#include <ostream>
#include <span>
#include <string>
#include <vector>

#include "sff/sff_source.h"

namespace pelkrin::prep {

class whole_input {
public:
    // Throws fatal_error (status 1) naming the file when it cannot be opened
    // or its gzip data is damaged. `err` takes the progress of inflating.
    whole_input(std::string path, std::ostream& err);
    // Reads `bytes` (which must outlive this) as the file named `path`.
    whole_input(std::string path, std::span<const std::uint8_t> bytes);
    whole_input(const whole_input&) = delete;
    whole_input& operator=(const whole_input&) = delete;

    const std::string& name() const { return name_; }
    std::span<const std::uint8_t> bytes() const { return bytes_; }
    // The file was gzip data (bytes() are then what it inflates to).
    bool gzipped() const { return gzipped_; }
    // The descriptor of the file whose bytes bytes() are, for copying them
    // inside the kernel; -1 when they are in memory (inflated, read from a pipe, given).
    int descriptor() const { return gzipped_ || !held_.empty() ? -1 : source_.descriptor(); }

private:
    void take(std::span<const std::uint8_t> raw, std::ostream* err);

    std::string name_;
    sff_source source_;
    std::vector<std::uint8_t> held_;
    std::span<const std::uint8_t> bytes_;
    bool gzipped_ = false;
};

}  // namespace pelkrin::prep
