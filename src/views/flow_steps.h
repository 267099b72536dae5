#pragma once
// What the run starts at one consensus position add to the flow consensus,
// for every set of run-start letters and every last flow before them: a table,
// so that the walk over the positions takes no branch per letter.
#include <array>
#include <cstdint>

#include "fcycle.h"

namespace pelkrin {

// The last flow as an index into the flow cycle; `other_flow` for a first
// flow that is no letter of the cycle (a consensus character taken as it is).
inline constexpr int other_flow = 4;

// Eight bytes, so that a step is found with one shift.
struct alignas(8) flow_step {
    std::array<char, 4> letters{};  // the flows appended, in cycle order
    std::uint8_t count = 0;         // how many of `letters` are appended
    std::uint8_t first_offset = 0;  // the position's first flow is the last flow before it plus this
    std::uint8_t last = 0;          // the last flow after the position
};

// Every letter of the set in cycle order goes at the last flow when it is that
// flow's letter, and at a new flow otherwise; the last flow is the one on
// entering the position throughout.
constexpr flow_step make_flow_step(unsigned letters, int last) {
    flow_step step;
    step.last = static_cast<std::uint8_t>(last);
    bool first = true;
    for (int b = 0; b < 4; ++b) {
        if ((letters & (1u << b)) == 0) continue;
        const bool appended = b != last;
        if (first) step.first_offset = appended ? 1 : 0;
        first = false;
        if (!appended) continue;
        step.letters[step.count++] = fcycle[static_cast<std::size_t>(b)];
        step.last = static_cast<std::uint8_t>(b);
    }
    return step;
}

// Indexed by [last flow][set of run-start letters, one bit each as cycle_bit].
constexpr std::array<std::array<flow_step, 16>, 5> make_flow_steps() {
    std::array<std::array<flow_step, 16>, 5> steps{};
    for (int last = 0; last < 5; ++last) {
        for (unsigned letters = 0; letters < 16; ++letters) steps[last][letters] = make_flow_step(letters, last);
    }
    return steps;
}

inline constexpr std::array<std::array<flow_step, 16>, 5> flow_steps = make_flow_steps();

}  // namespace pelkrin
