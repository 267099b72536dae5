#pragma once
// The NM and MD tags of a mapped read against the reference written beside
// the BAM file, worked out as samtools calmd works them out, so that calmd
// finds nothing to change: a base matches when both are the same base code
// and not N (or the read's base is '='), and MD names the reference's base
// in capitals.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "bam/read_placement.h"

namespace pelkrin::bam {

struct edit_tags {
    std::string md;
    std::int32_t nm = 0;
};

// `ref` is the contig's unpadded consensus, `pos` and `cigar` the read's
// place on it, `seq` its bases.
edit_tags edit_tags_of(const std::vector<cigar_op>& cigar, std::string_view seq, std::string_view ref,
                       std::int64_t pos);

}  // namespace pelkrin::bam
