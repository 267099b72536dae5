#pragma once
// Values that never fall and rise in small steps, written as one digit a step.
#include <cstddef>
#include <cstdint>

namespace pelkrin {

// Writes '0' plus the step from the value before (0 before the first) for
// each of values[0] to values[n - 1] into out[0] to out[n - 1]; true when every
// step is 0 to 9, or else `out` holds nothing of use.
bool step_digits(const std::int32_t* values, std::size_t n, char* out);

}  // namespace pelkrin
