#include "view_tool/report/step_digits.h"

namespace pelkrin {
namespace {

// Every test is on one value, so that the compiler does many values a step. A
// value not below the one before it rises by its difference taken modulo 2^32.
unsigned steps(const std::int32_t* __restrict values, std::size_t n, char* __restrict out) {
    unsigned bad = 0;
    for (std::size_t i = 1; i < n; ++i) {
        const std::int32_t before = values[i - 1];
        const std::int32_t value = values[i];
        const unsigned rise = static_cast<unsigned>(value) - static_cast<unsigned>(before);
        bad |= (value < before ? 1u : 0u) | (rise > 9 ? 1u : 0u);
        out[i] = static_cast<char>('0' + rise);
    }
    return bad;
}

}  // namespace

bool step_digits(const std::int32_t* values, std::size_t n, char* out) {
    if (n == 0) return true;
    if (values[0] < 0 || values[0] > 9) return false;
    out[0] = static_cast<char>('0' + values[0]);
    return steps(values, n, out) == 0;
}

}  // namespace pelkrin
