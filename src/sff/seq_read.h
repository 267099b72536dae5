#pragma once
// A decoded SFF read: its name and, for the kept (clipped) range only, the bases,
// their quality scores and the 0-based flow that called each of them.
#include <cstdint>
#include <string>
#include <vector>

#include "sff_read.h"

namespace pelkrin {

struct seqRead {
    std::string name;
    std::vector<char> bases;
    std::vector<std::int16_t> quals;
    std::vector<std::int16_t> flowIdx;

    seqRead() = default;
    explicit seqRead(const sff_read& r);
    // Rebuilds this read from `r`, reusing its storage.
    void assign(const sff_read& r);
};

}  // namespace pelkrin
