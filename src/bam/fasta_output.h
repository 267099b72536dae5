#pragma once
// The reference written beside the BAM file: each contig's consensus without
// its pads, in the ACE file's order, sixty bases a line.
#include <string_view>

#include "common/text_buffer.h"

namespace pelkrin::bam {

void append_fasta_record(text_buffer& out, std::string_view name, std::string_view bases);

}  // namespace pelkrin::bam
