#include "driver/reads_writer.h"

#include <algorithm>
#include <span>

namespace pelkrin {
namespace {

// Values separated by single tabs, no tab at either end; an empty list is an empty line.
template <typename Value>
void write_values(output_file& out, std::span<const Value> values) {
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (i != 0) out.put('\t');
        out.number(values[i]);
    }
    out.put('\n');
}

}  // namespace

void write_contig_header(output_file& reads_out, output_file& index_out, const contig& c, std::int32_t linesPerRead) {
    const std::size_t count = c.reads.size();
    reads_out.put('>');
    reads_out.write(c.name);
    reads_out.put('\t');
    reads_out.number(count);
    reads_out.put('\t');
    reads_out.number(linesPerRead);
    reads_out.put('\n');

    index_out.write(c.name);
    index_out.put('\t');
    index_out.number(reads_out.tellp());
    index_out.put('\t');
    index_out.number(count);
    index_out.put('\t');
    index_out.number(linesPerRead);
    index_out.put('\n');
}

void write_read_entry(output_file& reads_out, const std::string& name, const seqRead& read, const sff_read& record,
                      bool flowgram) {
    reads_out.write(name);
    reads_out.write("\t1\n");
    write_values(reads_out, std::span<const std::int16_t>(read.quals));
    if (!flowgram) return;
    write_values(reads_out, std::span<const std::int16_t>(read.flowIdx));
    const std::size_t flows = std::min<std::size_t>(record.numOfFlows, record.flowgram_values.size());
    write_values(reads_out, std::span<const std::uint16_t>(record.flowgram_values.data(), flows));
}

}  // namespace pelkrin
