#include "reads_format/reads_writer.h"

#include <algorithm>

#include "reads_format/values_line.h"

namespace pelkrin {

void write_contig_header(output_file& reads_out, output_file& index_out, const contig& c, std::int32_t linesPerRead) {
    write_contig_header(reads_out, index_out, c.name, c.reads.size(), linesPerRead);
}

void write_contig_header(output_file& reads_out, output_file& index_out, std::string_view name, std::size_t count,
                         std::int32_t linesPerRead) {
    write_contig_line(reads_out, name, count, linesPerRead);
    write_index_line(index_out, name, reads_out.tellp(), count, linesPerRead);
}

void write_contig_line(text_buffer& reads_out, std::string_view name, std::size_t count, std::int32_t linesPerRead) {
    reads_out.put('>');
    reads_out.write(name);
    reads_out.put('\t');
    reads_out.number(count);
    reads_out.put('\t');
    reads_out.number(linesPerRead);
    reads_out.put('\n');
}

void write_index_line(text_buffer& index_out, std::string_view name, std::int64_t position, std::size_t count,
                      std::int32_t linesPerRead) {
    index_out.write(name);
    index_out.put('\t');
    index_out.number(position);
    index_out.put('\t');
    index_out.number(count);
    index_out.put('\t');
    index_out.number(linesPerRead);
    index_out.put('\n');
}

void write_read_entry(output_file& reads_out, std::string_view name, const seqRead& read, const sff_read& record,
                      bool flowgram) {
    const std::size_t flows = std::min<std::size_t>(record.numOfFlows, record.flowgram_values.size());
    write_read_entry(reads_out, name, read.quals, read.flowIdx, std::span(record.flowgram_values).first(flows),
                     flowgram);
}

void write_read_entry(text_buffer& reads_out, std::string_view name, std::span<const std::int16_t> quals,
                      std::span<const std::int16_t> flowIdx, std::span<const std::uint16_t> flowgram_values,
                      bool flowgram) {
    reads_out.write(name);
    reads_out.write("\t1\n");
    append_values_line(reads_out, quals.data(), quals.size());
    if (!flowgram) return;
    append_values_line(reads_out, flowIdx.data(), flowIdx.size());
    append_values_line(reads_out, flowgram_values.data(), flowgram_values.size());
}

}  // namespace pelkrin
