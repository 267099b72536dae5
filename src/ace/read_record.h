#pragma once
// One read of a contig as the ACE file places it.
#include <cstdint>
#include <string>
#include <vector>

namespace pelkrin {

struct READ {
    std::string name;
    int32_t pos = 0;           // 1-based padded start; may be 0 or negative
    int16_t len = 0;           // padded length from the RD line
    std::vector<char> seq;     // padded bases, '*' kept
    int32_t uncomplemented = 0;
    int16_t align_start = 0;   // alignment clip range from the QA line
    int16_t align_end = 0;

    friend bool operator==(const READ&, const READ&) = default;
};

}  // namespace pelkrin
