#pragma once
// What the report says of a contig on the index page and over its own page.
#include <cstdint>
#include <string>
#include <vector>

#include "ace/contig.h"

namespace pelkrin {

struct contig_summary {
    std::string name;
    int64_t length = 0;           // padded consensus characters
    int64_t unpadded_length = 0;  // those other than pads (*), as assemblers count a length
    int64_t reads = 0;            // distinct read names
    double mean_depth = 0;        // read bases over the consensus, per position
    int32_t max_depth = 0;
    // Depth in bins of `bin_width` positions (the largest depth of each bin).
    std::vector<int32_t> depth_bins;
    int64_t bin_width = 1;
};

// Depth counts every read over the positions from its padded start to its end
// (start + padded length - 1), within the consensus. At most `max_bins` bins.
contig_summary summarise_contig(const contig& c, std::size_t max_bins);

// The whole assembly as the index page states it, lengths without pads.
struct assembly_totals {
    int64_t contigs = 0;
    int64_t reads = 0;  // the contigs' distinct reads, added up
    int64_t length = 0;
    int64_t n50 = 0;
};

// The length L such that the contigs of length L or more hold at least half
// of `lengths`' total; 0 when there are none or the total is 0.
int64_t n50_length(std::vector<int64_t> lengths);

assembly_totals total_up(const std::vector<contig_summary>& contigs);

}  // namespace pelkrin
