#include "views/run_marks.h"

namespace pelkrin {
namespace {

// toupper of the "C" locale, without a branch so that the loops below go many
// bytes a step.
inline unsigned char upper(unsigned char c) {
    const unsigned char lower = static_cast<unsigned char>(c - 'a') < 26 ? 0x20 : 0;
    return static_cast<unsigned char>(c - lower);
}

}  // namespace

void mark_run_starts(const char* bases, std::uint8_t* marks, std::size_t count) {
    const auto* __restrict from = reinterpret_cast<const unsigned char*>(bases);
    std::uint8_t* __restrict to = marks;
    for (std::size_t k = 0; k < count; ++k) {
        const unsigned char before = upper(from[k]);
        const unsigned char ch = upper(from[k + 1]);
        const std::uint8_t bit = static_cast<std::uint8_t>((ch == 'T' ? 1 : 0) | (ch == 'A' ? 2 : 0) |
                                                           (ch == 'C' ? 4 : 0) | (ch == 'G' ? 8 : 0));
        to[k] = static_cast<std::uint8_t>(to[k] | (ch != before ? bit : 0));
    }
}

bool holds_n(const char* bases, std::size_t count) {
    const auto* from = reinterpret_cast<const unsigned char*>(bases);
    unsigned char found = 0;
    for (std::size_t k = 0; k < count; ++k) found |= (from[k] | 0x20) == 'n' ? 1 : 0;
    return found != 0;
}

}  // namespace pelkrin
