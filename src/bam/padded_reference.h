#pragma once
// A contig's consensus with its pads removed, the reference its reads are
// placed on, and where each padded position falls on it.
#include <cstdint>
#include <string>
#include <vector>

namespace pelkrin::bam {

struct padded_reference {
    std::string bases;  // the consensus without its pads ('*'), as the file gives the rest; a byte no letter is N
    // For each padded position (0-based), the bases before it: the unpadded
    // position of that column when it holds a base, and of the next base when
    // it holds a pad.
    std::vector<std::int64_t> bases_before;
    std::vector<char> padded;  // the consensus as the file gives it, pads kept

    bool is_pad(std::int64_t padded_position) const { return padded[static_cast<std::size_t>(padded_position)] == '*'; }
};

padded_reference make_padded_reference(const std::vector<char>& consensus);

}  // namespace pelkrin::bam
