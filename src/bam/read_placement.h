#pragma once
// Where a read of a contig lies on the unpadded consensus, as a BAM record
// says it: its position, its CIGAR and its bases.
//
// Over the read's aligned part (its QA line's alignment clip range), each
// column of the padded alignment gives an operation: a base over a base M, a
// base over a consensus pad I, a pad over a base D, a pad over a pad
// nothing. The read's bases outside its aligned part, and those left of the
// consensus' first column or right of its last, are soft clips; pads there
// are dropped, so the CIGAR's query length is always the length of SEQ. An
// alignment does not begin or end with a deletion (the read does not reach
// that base) nor with an insertion (a base aligned to nothing of the
// reference is a clipped base): those ends are taken off and clipped.
#include <cstdint>
#include <string>
#include <vector>

#include "ace/read_record.h"
#include "bam/padded_reference.h"

namespace pelkrin::bam {

struct cigar_op {
    char op = 'M';  // M, I, D or S
    std::uint32_t length = 0;

    friend bool operator==(const cigar_op&, const cigar_op&) = default;
};

struct placed_read {
    // False for a read with no aligned part (its clip range empty, unset, or
    // outside the consensus): written unmapped, at `pos`, so that it is kept.
    bool mapped = false;
    // 0-based on the unpadded consensus: the first base the alignment covers,
    // or for an unmapped read the base where it starts (at least 0).
    std::int64_t pos = 0;
    std::vector<cigar_op> cigar;  // empty for an unmapped read
    std::string seq;              // the read's bases without pads, in the contig's orientation
};

placed_read place_read(const READ& read, const padded_reference& ref);

// The CIGAR as text ("5S10M1I3M"; "*" when empty), for messages and tests.
std::string cigar_text(const std::vector<cigar_op>& cigar);

}  // namespace pelkrin::bam
