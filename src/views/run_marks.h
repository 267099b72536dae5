#pragma once
// Run starts of a stretch of a read's bases, marked many bases a step: the
// part of the flow consensus that touches every base of every read.
#include <cstddef>
#include <cstdint>

namespace pelkrin {

// The bit of a letter among a position's run starts, in the order of the
// flow cycle: T 1, A 2, C 4, G 8; any other character has none.
constexpr std::uint8_t cycle_bit(char ch) {
    switch (ch) {
        case 'T': return 1;
        case 'A': return 2;
        case 'C': return 4;
        case 'G': return 8;
        default: return 0;
    }
}

// For every k below `count`: when bases[k + 1] begins a run, that is differs
// from bases[k] once both are upper-cased, the cycle bit of its upper-case
// letter is ORed into marks[k]. A pad or an 'N' marks nothing, so a stretch
// with an 'N' needs the caller's own rules: true when bases[1] to
// bases[count] hold an 'N' or 'n'. `bases` holds count + 1 characters.
bool mark_run_starts(const char* bases, std::uint8_t* marks, std::size_t count);

}  // namespace pelkrin
