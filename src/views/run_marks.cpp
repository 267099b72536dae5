#include "views/run_marks.h"

namespace pelkrin {
namespace {

// The case bit cleared: for a letter its upper case. Other characters may
// meet ('*' and a line feed, '[' and '{'), but none of them meets a letter of
// the flow cycle, and only those letters mark anything; so for what is marked
// this compares as the upper case does, in one step.
inline unsigned char fold(unsigned char c) { return static_cast<unsigned char>(c & 0xdf); }

// Every test is on one byte, so that the compiler does many bytes a step.
unsigned char mark(const unsigned char* __restrict from, std::uint8_t* __restrict to, std::size_t count) {
    unsigned char n_met = 0;
    for (std::size_t k = 0; k < count; ++k) {
        const unsigned char before = fold(from[k]);
        const unsigned char ch = fold(from[k + 1]);
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
