#pragma once
// Base segments for a contig that has none: consecutive ranges that cover
// the padded consensus from its first position to its last, each taken from
// one read that the AF lines place over the whole range.
#include <cstdint>
#include <string>
#include <vector>

namespace pelkrin {

struct placed_read {
    std::string name;
    std::int64_t first = 0;  // padded positions, 1-based, inclusive
    std::int64_t last = 0;
};

struct base_segment {
    std::int64_t first = 0;
    std::int64_t last = 0;
    std::string read;
};

// Greedy: each segment runs as far as the read that reaches furthest from
// its start. A stretch no read covers goes to the read that begins next.
// Never empty when there is a read.
std::vector<base_segment> cover_consensus(std::int64_t length, std::vector<placed_read> reads);

// The BS lines of the segments, each ended by a line feed.
std::string base_segment_lines(const std::vector<base_segment>& segments);

}  // namespace pelkrin
