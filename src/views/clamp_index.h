#pragma once
// Positions are worked out in 64 bits; the flow look-ups take 32-bit ones.
// Every negative index gives 0 and every index past the end walks down from
// the last, so clamping keeps the result.
#include <algorithm>
#include <cstdint>
#include <limits>

namespace pelkrin {

inline int32_t clamp_index(int64_t i) {
    return static_cast<int32_t>(std::clamp<int64_t>(i, -1, std::numeric_limits<int32_t>::max()));
}

}  // namespace pelkrin
