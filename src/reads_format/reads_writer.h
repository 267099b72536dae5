#pragma once
// The two output files' records: a contig's header line and its location index
// line, and one read's entry.
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "../ace/contig.h"
#include "../common/output_file.h"
#include "../common/text_buffer.h"
#include "../sff/seq_read.h"
#include "../sff/sff_read.h"

namespace pelkrin {

// ">name<TAB>reads<TAB>linesPerRead" to the reads file, then the line of the
// location index with the offset where the contig's first read entry begins.
void write_contig_header(output_file& reads_out, output_file& index_out, std::string_view name, std::size_t reads,
                         std::int32_t linesPerRead);
void write_contig_header(output_file& reads_out, output_file& index_out, const contig& c, std::int32_t linesPerRead);
// The two halves of it: the reads file's line, and the index line given the
// reads file's position after that line.
void write_contig_line(text_buffer& reads_out, std::string_view name, std::size_t reads, std::int32_t linesPerRead);
void write_index_line(text_buffer& index_out, std::string_view name, std::int64_t position, std::size_t reads,
                      std::int32_t linesPerRead);

// The read's header line, its quality line and, with the flowgram, its
// flow-index line and the flowgram values of `record` (not clipped).
void write_read_entry(output_file& reads_out, std::string_view name, const seqRead& read, const sff_read& record,
                      bool flowgram);
// The same from the numbers alone.
void write_read_entry(text_buffer& reads_out, std::string_view name, std::span<const std::int16_t> quals,
                      std::span<const std::int16_t> flowIdx, std::span<const std::uint16_t> flowgram_values,
                      bool flowgram);

}  // namespace pelkrin
