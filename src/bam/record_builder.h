#pragma once
// One read of a contig made into its BAM record: its place and CIGAR on the
// unpadded consensus, its qualities and flow signals from the SFF record of
// its name, NM and MD.
#include <htslib/sam.h>

#include <cstdint>
#include <string>
#include <vector>

#include "ace/read_record.h"
#include "bam/edit_tags.h"
#include "bam/padded_reference.h"
#include "bam/sff_reads.h"

namespace pelkrin::bam {

// What the records built tell at the end of a run.
struct record_counts {
    std::uint64_t reads = 0;
    std::uint64_t unmapped = 0;
    std::uint64_t not_in_sff = 0;       // no SFF file holds the read
    std::uint64_t bases_not_found = 0;  // its record does not hold its bases, even edited
    std::uint64_t aligned = 0;          // its bases found through an alignment
};

class record_builder {
public:
    // `group_ids` gives each SFF file's read group.
    record_builder(const sff_reads& sff, const std::vector<std::string>& group_ids)
        : sff_(sff), group_ids_(group_ids) {}

    // Fills `b` with the record of `read`, named `name`, of the contig whose
    // reference is `ref` and whose header number is `tid` (-1: the contig has
    // no base, and its reads stand unplaced).
    void build(bam1_t* b, const std::string& name, const READ& read, const padded_reference& ref, std::int32_t tid,
               record_counts& n);

private:
    const sff_reads& sff_;
    const std::vector<std::string>& group_ids_;
    std::vector<std::uint16_t> flowgram_;
    edit_tags edits_;
};

}  // namespace pelkrin::bam
