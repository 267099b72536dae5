#pragma once
// Whether Pelkrin takes a file as its SFF file, judged as Pelkrin judges it
// before it reads a record: it opens the file, takes a regular file only,
// reads the 31 bytes of the common header and looks at their magic number.
// check names every SFF file Pelkrin would refuse, with Pelkrin's own message.
#include <cstdint>
#include <span>
#include <string>

#include "common/input_file.h"

namespace pelkrin::prep {

struct sff_refusal {
    std::string message;  // Pelkrin's message, without its line end; empty when Pelkrin takes the file
    std::string reason;   // why, in a few words: "it cannot be opened: No such file or directory"

    bool refused() const { return !message.empty(); }
};

// On opening `file` (opened for input_reading::by_position): Pelkrin cannot
// open it, or it is no regular file.
sff_refusal refusal_on_opening(const std::string& name, const input_file& file);

// From the file's size and first bytes as it stands (before any inflating).
sff_refusal refusal_of_contents(const std::string& name, std::uint64_t size, std::span<const std::uint8_t> first);

}  // namespace pelkrin::prep
