// Flow indexes by consensus position, looking back to earlier positions when
// a position has none.
#include <algorithm>

#include "ace/contig.h"
#include "views/fcycle.h"

namespace pelkrin {
namespace {

// Walks from p down to 0 and returns the value of the first of `letters`
// found at a position; 0 when none is. Positions past the end hold nothing.
int32_t flow_index_looking_back(const std::vector<std::map<char, int32_t>>& maps, int32_t p,
                                std::string_view letters) {
    if (p < 0 || maps.empty()) return 0;
    int64_t q = std::min<int64_t>(p, static_cast<int64_t>(maps.size()) - 1);
    for (; q >= 0; --q) {
        const auto& at = maps[static_cast<std::size_t>(q)];
        for (char letter : letters) {
            const auto found = at.find(letter);
            if (found != at.end()) return found->second;
        }
    }
    return 0;
}

constexpr std::string_view reversed_cycle = "GCAT";

}  // namespace

int32_t contig::getFlowIdx_start(int32_t p) const { return flow_index_looking_back(flow_index_map, p, fcycle); }

int32_t contig::getFlowIdx_end(int32_t p) const {
    return flow_index_looking_back(flow_index_map, p, reversed_cycle);
}

}  // namespace pelkrin
