#pragma once
// One read as a BAM record, built in place with htslib.
#include <htslib/sam.h>

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "bam/edit_tags.h"
#include "bam/read_placement.h"

namespace pelkrin::bam {

struct record_parts {
    std::string_view name;
    std::uint16_t flag = 0;
    std::int32_t tid = -1;
    std::int64_t pos = -1;
    std::uint8_t mapq = 0;
    const std::vector<cigar_op>* cigar = nullptr;  // null or empty: *
    std::string_view seq;
    std::span<const std::uint8_t> quals;  // empty: *
    std::string_view read_group;          // empty: no RG tag
    std::span<const std::uint16_t> flowgram;  // FZ; empty: none
    std::int32_t first_flow = -1;             // ZF; -1: none
    const edit_tags* edits = nullptr;         // NM and MD; null: none
};

// Fills `b` (which it reuses) with the record; throws fatal_error naming the
// read when htslib cannot hold it.
void fill_record(bam1_t* b, const record_parts& parts);

}  // namespace pelkrin::bam
