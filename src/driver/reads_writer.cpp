#include "driver/reads_writer.h"

#include <algorithm>

namespace pelkrin {

void write_contig_header(output_file& reads_out, output_file& index_out, const contig& c, std::int32_t linesPerRead) {
    write_contig_header(reads_out, index_out, c.name, c.reads.size(), linesPerRead);
}

void write_contig_header(output_file& reads_out, output_file& index_out, std::string_view name, std::size_t count,
                         std::int32_t linesPerRead) {
    reads_out.put('>');
    reads_out.write(name);
    reads_out.put('\t');
    reads_out.number(count);
    reads_out.put('\t');
    reads_out.number(linesPerRead);
    reads_out.put('\n');

    index_out.write(name);
    index_out.put('\t');
    index_out.number(reads_out.tellp());
    index_out.put('\t');
    index_out.number(count);
    index_out.put('\t');
    index_out.number(linesPerRead);
    index_out.put('\n');
}

void write_read_entry(output_file& reads_out, std::string_view name, const seqRead& read, const sff_read& record,
                      bool flowgram) {
    reads_out.write(name);
    reads_out.write("\t1\n");
    reads_out.values_line(read.quals.data(), read.quals.size());
    if (!flowgram) return;
    reads_out.values_line(read.flowIdx.data(), read.flowIdx.size());
    const std::size_t flows = std::min<std::size_t>(record.numOfFlows, record.flowgram_values.size());
    reads_out.values_line(record.flowgram_values.data(), flows);
}

}  // namespace pelkrin
