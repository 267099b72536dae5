#pragma once
// A flow count drawn as one character: '0' to '9', then 'A' for 10 on.
#include <cstdint>

namespace pelkrin {

char count_digit(int16_t n);

}  // namespace pelkrin
