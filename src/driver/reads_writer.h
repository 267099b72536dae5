#pragma once
// The two output files' records: a contig's header line and its location index
// line, and one read's entry.
#include <cstdint>
#include <string>
#include <string_view>

#include "ace/contig.h"
#include "driver/output_file.h"
#include "sff/seq_read.h"
#include "sff/sff_read.h"

namespace pelkrin {

// ">name<TAB>reads<TAB>linesPerRead" to the reads file, then the line of the
// location index with the offset where the contig's first read entry begins.
void write_contig_header(output_file& reads_out, output_file& index_out, std::string_view name, std::size_t reads,
                         std::int32_t linesPerRead);
void write_contig_header(output_file& reads_out, output_file& index_out, const contig& c, std::int32_t linesPerRead);

// The read's header line, its quality line and, with the flowgram, its
// flow-index line and the flowgram values of `record` (not clipped).
void write_read_entry(output_file& reads_out, std::string_view name, const seqRead& read, const sff_read& record,
                      bool flowgram);

}  // namespace pelkrin
