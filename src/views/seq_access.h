#pragma once
// Guarded access to a read's bases: an index outside them is no character, so
// a scan that meets one stops instead of reading past the end.
#include <cstdint>
#include <optional>
#include <vector>

namespace pelkrin {

inline std::optional<char> char_at(const std::vector<char>& seq, int64_t i) {
    if (i < 0 || i >= static_cast<int64_t>(seq.size())) return std::nullopt;
    return seq[static_cast<std::size_t>(i)];
}

}  // namespace pelkrin
