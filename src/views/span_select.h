#pragma once
// The reads of one print row that a span shows, shared by the span tables and
// the span renderers.
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "../ace/contig.h"

namespace pelkrin {

struct span_read {
    int32_t p = 0;                  // padded start of the read
    const std::string* name = nullptr;
    const READ* read = nullptr;
    int64_t a = 0;                  // first position of the read inside the span
    int64_t b = 0;                  // last position of the read inside the span
};

// Appends to `out` the reads of `row` shown by the span from `first` to `last`,
// in ascending start. Only starts from first - max_read_len + 1 (at least 1) to
// last - min_read_len + 1 are visited, so a read beginning within the last
// min_read_len - 1 positions of the span is left out.
void select_span_reads(const contig& c, const std::map<int32_t, std::string>& row, int64_t first, int64_t last,
                       std::vector<span_read>& out);

}  // namespace pelkrin
