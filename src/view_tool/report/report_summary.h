#pragma once
// What the report says of a contig on the index page and over its own page.
#include <cstdint>
#include <string>
#include <vector>

#include "ace/contig.h"

namespace pelkrin {

struct contig_summary {
    std::string name;
    int64_t length = 0;      // padded consensus characters
    int64_t reads = 0;       // distinct read names
    double mean_depth = 0;   // read bases over the consensus, per position
    int32_t max_depth = 0;
    // Depth in bins of `bin_width` positions (the largest depth of each bin).
    std::vector<int32_t> depth_bins;
    int64_t bin_width = 1;
};

// Depth counts every read over the positions from its padded start to its end
// (start + padded length - 1), within the consensus. At most `max_bins` bins.
contig_summary summarise_contig(const contig& c, std::size_t max_bins);

}  // namespace pelkrin
