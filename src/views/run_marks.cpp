#include "views/run_marks.h"

namespace pelkrin {
namespace {

// toupper of the "C" locale, without a branch so that the loops below go many
// bytes a step.
inline unsigned char upper(unsigned char c) {
    const unsigned char lower = static_cast<unsigned char>(c - 'a') < 26 ? 0x20 : 0;
    return static_cast<unsigned char>(c - lower);
}

// Every test is on one byte, so that the compiler does many bytes a step.
unsigned char mark(const unsigned char* __restrict from, std::uint8_t* __restrict to, std::size_t count) {
    unsigned char n_met = 0;
    for (std::size_t k = 0; k < count; ++k) {
        const unsigned char before = upper(from[k]);
        const unsigned char ch = upper(from[k + 1]);
        const unsigned char t = ch == 'T' ? 1 : 0;
        const unsigned char a = ch == 'A' ? 2 : 0;
        const unsigned char c = ch == 'C' ? 4 : 0;
        const unsigned char g = ch == 'G' ? 8 : 0;
        const unsigned char starts = ch != before ? 0xff : 0;
        n_met |= ch == 'N' ? 1 : 0;
        to[k] = static_cast<std::uint8_t>(to[k] | ((t | a | c | g) & starts));
    }
    return n_met;
}

}  // namespace

bool mark_run_starts(const char* bases, std::uint8_t* marks, std::size_t count) {
    return mark(reinterpret_cast<const unsigned char*>(bases), marks, count) != 0;
}

}  // namespace pelkrin
