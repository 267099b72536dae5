#include "bam/record_builder.h"

#include "bam/bam_record.h"
#include "bam/read_placement.h"
#include "bam/read_qualities.h"

namespace pelkrin::bam {

void record_builder::build(bam1_t* b, const std::string& name, const READ& read, const padded_reference& ref,
                           std::int32_t tid, record_counts& n) {
    ++n.reads;
    const placed_read placed = place_read(read, ref);
    const bool complemented = read.uncomplemented == 0;
    const bool mapped = placed.mapped && tid >= 0;
    record_parts parts;
    parts.name = name;
    parts.flag = static_cast<std::uint16_t>((complemented ? BAM_FREVERSE : 0) | (mapped ? 0 : BAM_FUNMAP));
    parts.tid = tid;
    parts.pos = tid < 0 ? -1 : placed.pos;
    parts.mapq = mapped ? 60 : 0;
    parts.seq = placed.seq;
    if (mapped) {
        parts.cigar = &placed.cigar;
        edits_ = edit_tags_of(placed.cigar, placed.seq, ref.bases, placed.pos);
        parts.edits = &edits_;
    } else {
        ++n.unmapped;
    }
    found_record record;
    seq_qualities q;
    if (sff_.find(name, record)) {
        q = qualities_of(placed.seq, complemented, record.bases());
        if (!q.found) ++n.bases_not_found;
        if (q.aligned) ++n.aligned;
        record.flowgram(flowgram_);
        parts.flowgram = flowgram_;
        parts.read_group = group_ids_[record.file];
        parts.quals = q.quals;
        parts.first_flow = q.found ? q.first_flow : -1;
    } else {
        ++n.not_in_sff;
    }
    fill_record(b, parts);
}

}  // namespace pelkrin::bam
