#pragma once
// The quality of each base of a read's SEQ, taken from its SFF record, and
// the flow that called the first of those bases.
//
// The read's bases are looked for in the record's bases as they stand, on
// either strand (the AF line's direction first) and whatever their case.
// Scores above 93, which SAM cannot write, are taken as 93.
// Where an assembler edited bases so that they are not found, the qualities
// follow an alignment of the read's bases to the record's (the whole read to
// a stretch of the record): a base aligned to a record base takes its
// quality, a base the record lacks takes the lower quality of its nearest
// neighbours that have one.
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace pelkrin::bam {

struct record_bases {
    std::span<const char> bases;             // every base of the record, unclipped
    std::span<const std::uint8_t> quals;     // one a base
    std::span<const std::uint8_t> flow_steps;  // flow_index_per_base: flows since the base before
    std::uint16_t clip_start = 0;            // 1-based first base of the record's kept range, 0 if unset
};

struct seq_qualities {
    // The read's bases were found in the record, as they stand or through an
    // alignment; false leaves QUAL unknown.
    bool found = false;
    bool aligned = false;              // found only through an alignment
    bool reverse = false;              // SEQ stands on the record's other strand
    std::vector<std::uint8_t> quals;   // one a base of SEQ, in SEQ's order
    std::int32_t first_flow = -1;      // 0-based flow of the first base, on the record's strand, of SEQ's bases
};

// `seq` is the read's bases in the contig's orientation; `complemented` the
// AF line's direction (C). The alignment is tried only while its table
// stays under `max_cells` cells.
seq_qualities qualities_of(std::string_view seq, bool complemented, const record_bases& record,
                           std::uint64_t max_cells = std::uint64_t{1} << 24);

}  // namespace pelkrin::bam
